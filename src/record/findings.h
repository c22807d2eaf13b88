// What loading and writing find out beside the record, and whom they tell.
#pragma once

#include <cstddef>
#include <ios>
#include <iosfwd>
#include <sstream>

namespace kem::record {

// Where an item of a series begins; at 0 for none.
struct Place {
  int item = 0;  // counted from 0
  std::streamoff at = 0;
};

// Where it goes: by default into the library's global variables and to standard output, where the hosts of the
// record look for it.
struct Findings {
  int* readNext;
  int* writeFailed;
  float* xFactor;
  float* yFactor;
  double* announced;
  double* fileBytes;
  double* missing;         // values that were announced and were not there
  const int* mostMissing;  // values that a file may announce without holding them
  Place* place;  // of the item read last, from where the next one of the same file is found; null for hosts
  std::ostream* messages;
  bool forHost;  // its hooks are called
};

// Those of this thread.
const Findings& Found();

// Values that a file announces and does not hold.
inline void Miss(std::size_t values) { *Found().missing += static_cast<double>(values); }

// While it lives, its thread leaves the library's globals, the host's hooks and standard output alone, and the
// findings are here.
class Aside {
 public:
  Aside();
  ~Aside();
  Aside(const Aside&) = delete;
  Aside& operator=(const Aside&) = delete;

  int readNext = 0;
  int writeFailed = 0;
  float xFactor = 1;
  float yFactor = 1;
  double announced = 0;
  double fileBytes = 0;
  double missing = 0;
  // What would become of more is many lines of zeros. With these a damaged file of a few bytes costs 0.1 s and 40
  // MB at most, whatever is done with it.
  static constexpr int kMostMissing = 1 << 18;
  Place place;
  std::ostringstream messages;

 private:
  Findings findings_;
  const Findings* before_;
};

}  // namespace kem::record
