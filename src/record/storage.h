// Memory of a record's arrays, the two ways to start a record, and how readers finish one.
#pragma once

#include <cstddef>
#include <exception>
#include <istream>
#include <memory>
#include <span>

#include "kem.h"
#include "record/ranges.h"

namespace kem::record {

// The values of a dataset, not initialised.
std::unique_ptr<std::byte[]> NewBytes(std::size_t size);

// Arrays of a record, not initialised or all 0. Where a file is cut off, a large one of zeros takes memory only
// where it is written. A length that is negative or cannot be had ends in std::bad_alloc.
std::unique_ptr<float[]> NewArray(int count);
std::unique_ptr<float[]> NewZeroArray(int count);

// An array of these values and, behind them, of zeros.
std::unique_ptr<float[]> ArrayOf(std::span<const float> values, int count);

// The rows of a grid and their table, each an allocation of its own.
struct GridDeleter {
  int rows = 0;
  void operator()(float** grid) const;
};
using Grid = std::unique_ptr<float*[], GridDeleter>;

// No rows are made when their count is 0 or below. Zeros are had as for arrays; the first `open` rows are not
// initialised.
Grid NewGrid(int rows, int columns);
Grid NewZeroGrid(int rows, int columns, int open = 0);

// The shapes that own anything; the others only store their number.
inline bool OwnsArrays(int allocType) { return allocType >= AllocY && allocType <= AllocXYZ; }

// While it lives, an exception leaves the record empty: the arrays that it owns by then and the extension that the
// host made meanwhile are released.
class EmptyOnThrow {
 public:
  explicit EmptyOnThrow(PrnType& record) : record_(record), extension_(record.extension) {}
  ~EmptyOnThrow();
  EmptyOnThrow(const EmptyOnThrow&) = delete;
  EmptyOnThrow& operator=(const EmptyOnThrow&) = delete;

 private:
  PrnType& record_;
  void* extension_;
  int exceptions_ = std::uncaught_exceptions();
};

// Lets the host free an extension that has taken the place of an earlier one, and puts that one back.
void RestoreExtension(PrnType& record, void* earlier);

// Makes a record fresh without releasing anything: no arrays, defined axes, titles "X" and "Y". Leaves xEnd,
// zLabel, fileName and active as they are.
void Reset(PrnType& record);

// Ends the reading of a record that has its data; the range of its values may be known. Returns 1, or 0 for a
// record emptied again when reading one of its streams failed: what is missing then is not the end of a file.
template <class... Streams>
int Finish(PrnType& record, const RunningRange& range, const Streams&... sources) {
  if ((sources.bad() || ...)) {
    record.DeAllocate();
    record.extension = nullptr;
    return 0;
  }
  record.active = 1;
  SetRanges(record, range);
  return 1;
}

template <class... Streams>
int Finish(PrnType& record, const Streams&... sources) {
  return Finish(record, RunningRange::Of(record), sources...);
}

// What a record keeps its data in, as its shape asks for it.
struct Arrays {
  int nX;
  int nY;
  std::unique_ptr<float[]> x;
  std::unique_ptr<float[]> y;
  Grid z;
};

// A copy of a record with other arrays.
PrnType CopyWith(const PrnType& src, Arrays arrays);

// A copy of a record whose values, a curve's Y array or a grid, are not initialised.
PrnType CopyWithoutValues(const PrnType& src);

// Hands arrays over to a record that owns none.
inline void Own(float*& member, std::unique_ptr<float[]> array) { member = array.release(); }
inline void Own(float**& member, Grid grid) { member = grid.release(); }

}  // namespace kem::record
