#include "load/announced.h"

#include <algorithm>
#include <limits>
#include <new>

#include "record/findings.h"

namespace kem::load {
namespace {

void Check(std::istream& in, double values, double rows) {
  constexpr double kPerRow = 10;
  const auto bytes = static_cast<double>(FileSize(in));
  *record::Found().announced = values;
  *record::Found().fileBytes = bytes;
  const double most = *record::Found().mostMissing + 16 * bytes;
  if (!(values >= 0 && values <= most && rows * kPerRow <= most)) throw std::bad_alloc();
}

}  // namespace

std::streamoff FileSize(std::istream& in) {
  std::streambuf& bytes = *in.rdbuf();
  const auto here = bytes.pubseekoff(0, std::ios::cur, std::ios::in);
  const auto size = bytes.pubseekoff(0, std::ios::end, std::ios::in);
  bytes.pubseekpos(here, std::ios::in);
  return size;
}

int CheckedCount(std::istream& in, double count) {
  Check(in, count, 0);
  // The largest int is what a longer count is clamped to when it is scanned.
  if (count >= std::numeric_limits<int>::max()) throw std::bad_alloc();
  return static_cast<int>(count);
}

void CheckGrid(std::istream& in, int& rows, int& columns) {
  const int least = std::min(rows, columns);
  if (least == 0) rows = columns = 0;
  Check(in, least < 0 ? least : static_cast<double>(rows) * columns, rows);
}

}  // namespace kem::load
