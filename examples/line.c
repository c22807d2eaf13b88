/* Prints the integral of a line of a spectrum, smoothed before.
 *
 *   line SPECTRUM FROM TO
 */
#include <kem/c.h>

#include <stdio.h>
#include <stdlib.h>

int main(int argc, char** argv) {
  kem_error error;
  if (argc != 4) {
    fprintf(stderr, "usage: line SPECTRUM FROM TO\n");
    return 2;
  }
  if (kem_c_version() < KEM_C_VERSION || kem_error_size() != sizeof error) {
    fprintf(stderr, "this libkem is another one than the program was built with\n");
    return 1;
  }
  const double width[] = {9};
  const double bounds[] = {atof(argv[2]), atof(argv[3])};
  kem_dataset* spectrum = kem_open(argv[1], 1, &error);
  kem_record* record = spectrum ? kem_to_record(spectrum, KEM_REAL, &error) : NULL;
  kem_record* smooth = record ? kem_apply(record, "smooth", width, 1, NULL, &error) : NULL;
  const double integral = smooth ? kem_measure(smooth, "integral", bounds, 2, &error) : 0;
  const int failed = error.code != KEM_OK;
  if (failed)
    fprintf(stderr, "%s\n", error.sentence);
  else
    printf("%s, %g to %g %s: %.6g\n", kem_axis_name(spectrum, 0), bounds[0], bounds[1], kem_axis_unit(spectrum, 0),
           integral);
  kem_record_free(smooth);
  kem_record_free(record);
  kem_dataset_free(spectrum);
  return failed;
}
