// Subtracts a background from a spectrum and smooths the difference. The background may have another axis: it is
// resampled onto that of the spectrum.
//
//   subtract_background SPECTRUM BACKGROUND OUT.dx
#include <kem.h>

#include <iostream>
#include <memory>

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: subtract_background SPECTRUM BACKGROUND OUT.dx\n";
    return 2;
  }
  PrnType spectrum(argv[1], -1);
  const PrnType background(argv[2], -1);
  if (!spectrum || !background) {
    std::cerr << (!spectrum ? argv[1] : argv[2]) << ": cannot be loaded\n";
    return 1;
  }
  const PrnType difference = spectrum - background;
  const std::unique_ptr<PrnType> smooth(&difference.XSmooth(7));
  if (!*smooth) {
    std::cerr << "nothing is left: both files must hold curves of more than seven points\n";
    return 1;
  }
  if (!smooth->WriteDX(argv[3]) || WriteFailedFlag) {
    std::cerr << argv[3] << ": cannot be written\n";
    return 1;
  }
  smooth->PrintLog(2);
  return 0;
}
