#include "record/storage.h"

#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace kem::record {
namespace {

std::size_t Length(int count) {
  if (count < 0) throw std::bad_alloc();
  return static_cast<std::size_t>(count);
}

// From this size on an array is no recycled memory, but pages fresh from the system.
constexpr std::size_t kLarge = std::size_t{32} << 20;
// A row of a large grid of at least this size spans some pages.
constexpr std::size_t kLargeRow = std::size_t{16} << 10;

// Has the system put pages in place that read as 0 and take memory when they are written. Returns whether it did.
bool DropPages([[maybe_unused]] std::byte* bytes, [[maybe_unused]] std::size_t size) {
#ifdef __linux__
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* first = bytes;
  std::size_t left = size;
  if (!std::align(page, page, first, left)) return false;
  const std::size_t dropped = left / page * page;
  auto* mark = static_cast<std::byte*>(first);
  *mark = std::byte{1};  // stays in memory of a kind that keeps its content
  if (madvise(first, dropped, MADV_DONTNEED) != 0 || *mark != std::byte{0}) return false;
  std::fill(bytes, mark, std::byte{0});
  std::fill(mark + dropped, bytes + size, std::byte{0});
  return true;
#else
  return false;
#endif
}

std::unique_ptr<float[]> NewDroppedArray(int count) {
  auto array = NewArray(count);
  const std::size_t size = Length(count) * sizeof(float);
  if (!DropPages(reinterpret_cast<std::byte*>(array.get()), size)) std::fill_n(array.get(), count, 0.0f);
  return array;
}

// Asks for the memory of a whole grid at once and gives it back. A system that promises row after row would
// otherwise run dry half-way instead of saying no.
void ProbeMemory(std::size_t rows, std::size_t columns) {
  constexpr std::size_t kPerRow = 4 * sizeof(float*);  // table entry and bookkeeping
  constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
  const std::size_t perRow = columns * sizeof(float) + kPerRow;
  if (rows > kMost / perRow) throw std::bad_alloc();
  ::operator delete(::operator new(rows* perRow));
}

Grid MakeGrid(int rows, int columns, std::unique_ptr<float[]> (*newRow)(int)) {
  const int made = std::max(rows, 0);
  if (made > 0) ProbeMemory(Length(made), Length(columns));
  Grid grid(
      new float* [Length(made)] {}, GridDeleter{made});
  for (int i = 0; i < made; ++i) grid[i] = newRow(columns).release();
  return grid;
}

}  // namespace

std::unique_ptr<float[]> NewArray(int count) { return std::unique_ptr<float[]>(new float[Length(count)]); }

std::unique_ptr<float[]> NewZeroArray(int count) {
  if (Length(count) * sizeof(float) >= kLarge) return NewDroppedArray(count);
  return std::unique_ptr<float[]>(new float[Length(count)]());
}

std::unique_ptr<float[]> ArrayOf(std::span<const float> values, int count) {
  auto array = NewZeroArray(count);
  std::copy(values.begin(), values.end(), array.get());
  return array;
}

void GridDeleter::operator()(float** grid) const {
  for (int i = 0; i < rows; ++i) delete[] grid[i];
  delete[] grid;
}

Grid NewGrid(int rows, int columns) { return MakeGrid(rows, columns, NewArray); }

Grid NewZeroGrid(int rows, int columns) {
  const std::size_t row = columns > 0 ? Length(columns) * sizeof(float) : 0;
  const bool large = rows > 0 && row >= kLargeRow && Length(rows) >= kLarge / row;
  return MakeGrid(rows, columns, large ? NewDroppedArray : NewZeroArray);
}

}  // namespace kem::record
