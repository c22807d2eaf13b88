#include "record/storage.h"

#include <algorithm>
#include <limits>
#include <new>

#include "record/findings.h"
#include "record/pages.h"

namespace kem::record {
namespace {

std::size_t Length(int count) {
  if (count < 0) throw std::bad_alloc();
  return static_cast<std::size_t>(count);
}

template <class T>
std::unique_ptr<T[]> NewMemory(std::size_t count) {
  GrowHeapFor(count * sizeof(T));
  std::unique_ptr<T[]> array(new T[count]);
  PreferLargePages(std::as_writable_bytes(std::span(array.get(), count)));
  return array;
}

// From this size on an array is no recycled memory, but pages fresh from the system.
constexpr std::size_t kLarge = std::size_t{32} << 20;
// A row of a large grid of at least this size spans some pages.
constexpr std::size_t kLargeRow = std::size_t{16} << 10;

std::unique_ptr<float[]> NewDroppedArray(int count) {
  std::unique_ptr<float[]> array(new float[Length(count)]);
  const std::span values(array.get(), Length(count));
  if (!DropPages(std::as_writable_bytes(values))) std::fill(values.begin(), values.end(), 0.0f);
  return array;
}

// Asks for the memory of a whole grid at once and gives it back. A system that promises row after row would
// otherwise run dry half-way instead of saying no.
void ProbeMemory(std::size_t rows, std::size_t row) {
  constexpr std::size_t kPerRow = 4 * sizeof(float*);  // table entry and bookkeeping
  constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
  const std::size_t perRow = row + kPerRow;
  if (rows > kMost / perRow) throw std::bad_alloc();
  ::operator delete(::operator new(rows* perRow));
}

// A grid whose rows from `other` on are made in another way.
Grid MakeGrid(int rows, int columns, int other, std::unique_ptr<float[]> (*newRow)(int)) {
  const std::size_t made = Length(std::max(rows, 0));
  const std::size_t row = made > 0 ? Length(columns) * sizeof(float) : 0;
  if (made > 0) ProbeMemory(made, row);
  Grid grid(
      new float* [made] {}, GridDeleter{std::max(rows, 0)});
  GrowHeapFor(made * row);
  for (int i = 0; i < rows; ++i) grid[i] = (i < other ? NewArray : newRow)(columns).release();
  return grid;
}

// Whether the file that is read has fewer bytes than it announces values.
bool IsCutOff() { return *Found().announced > *Found().fileBytes; }

}  // namespace

std::unique_ptr<std::byte[]> NewBytes(std::size_t size) { return NewMemory<std::byte>(size); }

std::unique_ptr<float[]> NewArray(int count) { return NewMemory<float>(Length(count)); }

std::unique_ptr<float[]> NewZeroArray(int count) {
  if (Length(count) * sizeof(float) >= kLarge && IsCutOff()) return NewDroppedArray(count);
  auto array = NewArray(count);
  std::fill_n(array.get(), count, 0.0f);
  return array;
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

Grid NewGrid(int rows, int columns) { return MakeGrid(rows, columns, rows, NewArray); }

Grid NewZeroGrid(int rows, int columns, int open) {
  const std::size_t row = columns > 0 ? Length(columns) * sizeof(float) : 0;
  const bool drop = rows > 0 && row >= kLargeRow && Length(rows) >= kLarge / row && IsCutOff();
  return MakeGrid(rows, columns, open, drop ? NewDroppedArray : NewZeroArray);
}

}  // namespace kem::record
