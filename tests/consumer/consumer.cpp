// A host program as a user writes it: loads a spectrum with the installed library and prints its report.
#include <kem.h>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const PrnType spectrum(argv[1], 0);
  if (!spectrum) return 1;
  spectrum.PrintLog(1);
  return 0;
}
