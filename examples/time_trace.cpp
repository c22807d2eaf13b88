// Cuts a band of wavelengths out of a streak image and prints the decay over time and its integral.
//
//   time_trace IMAGE FROM TO
#include <kem.h>

#include <cstdlib>
#include <iostream>
#include <memory>

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: time_trace IMAGE FROM TO\n";
    return 2;
  }
  const PrnType image(argv[1], 0);
  if (!image.Is3D()) {
    std::cerr << argv[1] << ": is no image\n";
    return 1;
  }
  // The sum over the band at every time; time becomes the X axis of the trace.
  const auto from = static_cast<float>(std::atof(argv[2]));
  const auto to = static_cast<float>(std::atof(argv[3]));
  const std::unique_ptr<PrnType> trace(&image.YSlice(from, to, 0));
  float* times = nullptr;
  int count = 0;
  trace->ArrayFromXAxis(&times, &count);  // stored or defined, ours to release
  const std::unique_ptr<float[]> release(times);
  for (int k = 0; k < count; ++k) std::cout << times[k] << ' ' << trace->yArray[k] << '\n';
  std::cout << "integral " << trace->Integral(trace->xStart, trace->xEnd, 0, 0) << '\n';
  return 0;
}
