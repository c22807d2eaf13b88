// Sliding medians of curves and grids. A span is never sorted for the sake of one value: narrow spans are
// selected from for many values at once, wide ones are kept as a set of ranks that moves along.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

#include "analysis/result.h"
#include "record/storage.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

// Orders floats as integers: -0 comes before 0, what is not a number after all others, its sign dropped.
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

std::int32_t KeyOf(float value) {
  const auto bits = std::bit_cast<std::int32_t>(value);
  const std::int32_t magnitude = bits & kMost;
  const std::int32_t ordered = bits < 0 ? bits ^ kMost : bits;
  return magnitude > std::bit_cast<std::int32_t>(std::numeric_limits<float>::infinity()) ? magnitude : ordered;
}

float ValueOf(std::int32_t key) { return std::bit_cast<float>(key < 0 ? key ^ kMost : key); }

// Samples from <= k < to of one axis.
struct Span {
  int from;
  int to;

  int Count() const { return std::max(to - from, 0); }
};

// A rectangle of samples: rows along X, columns along Y.
struct Area {
  Span x;
  Span y;

  std::size_t Count() const { return static_cast<std::size_t>(x.Count()) * static_cast<std::size_t>(y.Count()); }
};

// The values of a grid, or of a curve as its only row, and how far a median looks around.
struct Field {
  const float* const* rows;
  int nX;
  int nY;
  int halfX;
  int halfY;
  int above;  // 0 or 1: how many places above the middle the value is taken

  Span AroundX(int i) const { return Around(i, halfX, nX); }
  Span AroundY(int j) const { return Around(j, halfY, nY); }

  // Where the value stands once all collected values but the last are sorted.
  std::size_t Place(std::size_t collected) const {
    return (collected - 1) / 2 + static_cast<std::size_t>(above);
  }

 private:
  static Span Around(int k, int half, int count) {
    const int to = std::min(count, k + half + 1);
    return {std::min(std::max(0, k - half), to), to};
  }
};

// ------------------------------------------------------------ narrow spans

constexpr int kMostSelected = 14;
constexpr int kLanes = 64;
using Lanes = std::array<std::int32_t, kLanes>;

void Exchange(Lanes& low, Lanes& high) {
  for (int k = 0; k < kLanes; ++k) {
    const std::int32_t a = low[k];
    const std::int32_t b = high[k];
    low[k] = a < b ? a : b;
    high[k] = a < b ? b : a;
  }
}

// For spans of up to kMostSelected + 1 values: a partial bubble sort, which takes the same steps for whatever
// values, so that it runs side by side for many neighbours along a row. `inner` has whole spans only.
void SelectSideBySide(const Field& field, const Area& inner, float* const* result) {
  std::array<Lanes, kMostSelected> sorted = {};
  const int collected = (2 * field.halfX + 1) * (2 * field.halfY + 1);
  const int place = static_cast<int>(field.Place(static_cast<std::size_t>(collected)));
  for (int i = inner.x.from; i < inner.x.to; ++i)
    for (int j = inner.y.from; j < inner.y.to; j += kLanes) {
      const int lanes = std::min(kLanes, inner.y.to - j);
      for (int k = 0; k < collected - 1; ++k) {
        const int side = 2 * field.halfX + 1;
        const float* values = field.rows[i - field.halfX + k % side] + j - field.halfY + k / side;
        for (int lane = 0; lane < lanes; ++lane) sorted[k][lane] = KeyOf(values[lane]);
      }
      for (int top = collected - 2; top >= place; --top)
        for (int k = 0; k < top; ++k) Exchange(sorted[k], sorted[top]);
      for (int lane = 0; lane < lanes; ++lane) result[i][j + lane] = ValueOf(sorted[place][lane]);
    }
}

// ------------------------------------------------------------ wide spans

int CountBits(std::uint64_t bits) {
  bits -= bits >> 1 & 0x5555555555555555;
  bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
  bits = (bits + (bits >> 4)) & 0x0f0f0f0f0f0f0f0f;
  return static_cast<int>(bits * 0x0101010101010101 >> 56);
}

// A set of ranks, one bit each, that remembers how many lie below the word where it was last searched. The next
// search starts there, and medians of spans that overlap are close to each other.
class RankSet {
 public:
  void Clear(std::size_t size) {
    words_.assign(size / 64 + 1, 0);
    word_ = 0;
    below_ = 0;
  }
  void Add(std::uint32_t rank) {
    words_[rank / 64] |= std::uint64_t{1} << rank % 64;
    below_ += rank / 64 < word_;
  }
  void Remove(std::uint32_t rank) {
    words_[rank / 64] &= ~(std::uint64_t{1} << rank % 64);
    below_ -= rank / 64 < word_;
  }
  // The member that has `place` members below it.
  std::uint32_t At(std::size_t place) {
    while (below_ > place) below_ -= CountBits(words_[--word_]);
    for (std::size_t here; below_ + (here = CountBits(words_[word_])) <= place; ++word_) below_ += here;
    std::uint64_t bits = words_[word_];
    for (std::size_t k = below_; k < place; ++k) bits &= bits - 1;
    return static_cast<std::uint32_t>(word_ * 64) + static_cast<std::uint32_t>(std::countr_zero(bits));
  }

 private:
  std::vector<std::uint64_t> words_;
  std::size_t word_ = 0;
  std::size_t below_ = 0;
};

// Moves a span, line by line.
template <class Add, class Remove>
void Slide(Span& span, const Span& target, Add add, Remove remove) {
  while (span.to < target.to) add(span.to++);
  while (span.from > target.from) add(--span.from);
  while (span.from < target.from) remove(span.from++);
  while (span.to > target.to) remove(--span.to);
}

// Medians of a tile of the result. All values that its spans reach are ranked once; a span is then a set of
// ranks, and from one sample to the next only the values at two of its edges enter and leave.
class RankedTile {
 public:
  void Run(const Field& field, const Area& tile, float* const* result) {
    reach_ = {{field.AroundX(tile.x.from).from, field.AroundX(tile.x.to - 1).to},
              {field.AroundY(tile.y.from).from, field.AroundY(tile.y.to - 1).to}};
    Rank(field.rows);
    set_.Clear(keys_.size());
    span_ = {{reach_.x.from, reach_.x.from}, {reach_.y.from, reach_.y.from}};
    for (int i = tile.x.from; i < tile.x.to; ++i) {
      MoveX(field.AroundX(i));
      const bool back = (i - tile.x.from) % 2 != 0;  // to and fro, so that the set is never filled anew
      for (int k = 0; k < tile.y.Count(); ++k) {
        const int j = back ? tile.y.to - 1 - k : tile.y.from + k;
        MoveY(field.AroundY(j));
        result[i][j] = Take(field, field.rows[i][j]);
      }
    }
  }

 private:
  // By columns, so that what enters and leaves along a row lies side by side.
  std::size_t IndexOf(int i, int j) const {
    return static_cast<std::size_t>(j - reach_.y.from) * static_cast<std::size_t>(reach_.x.Count()) +
           static_cast<std::size_t>(i - reach_.x.from);
  }

  void Rank(const float* const* rows) {
    keys_.resize(reach_.Count());
    order_.resize(keys_.size());
    ranks_.resize(keys_.size());
    for (int i = reach_.x.from; i < reach_.x.to; ++i)
      for (int j = reach_.y.from; j < reach_.y.to; ++j) keys_[IndexOf(i, j)] = KeyOf(rows[i][j]);
    std::iota(order_.begin(), order_.end(), 0u);
    for (int byte = 0; byte < 4; ++byte) {
      SortByByte(byte);
      order_.swap(ranks_);
    }
    for (std::size_t rank = 0; rank < order_.size(); ++rank) ranks_[order_[rank]] = static_cast<std::uint32_t>(rank);
  }

  // One pass of a radix sort, from order_ to ranks_.
  void SortByByte(int byte) {
    const auto digit = [byte](std::int32_t key) {
      return (static_cast<std::uint32_t>(key) ^ 0x80000000) >> (8 * byte) & 0xff;
    };
    std::array<std::uint32_t, 257> start = {};
    for (const std::int32_t key : keys_) ++start[digit(key) + 1];
    std::partial_sum(start.begin(), start.end(), start.begin());
    for (const std::uint32_t index : order_) ranks_[start[digit(keys_[index])]++] = index;
  }

  void MoveX(const Span& x) {
    const auto each = [this](int i, auto change) {
      for (int j = span_.y.from; j < span_.y.to; ++j) change(ranks_[IndexOf(i, j)]);
    };
    Slide(
        span_.x, x, [&](int i) { each(i, [this](std::uint32_t rank) { set_.Add(rank); }); },
        [&](int i) { each(i, [this](std::uint32_t rank) { set_.Remove(rank); }); });
  }

  void MoveY(const Span& y) {
    const auto each = [this](int j, auto change) {
      const std::uint32_t* column = &ranks_[IndexOf(span_.x.from, j)];
      for (int k = 0; k < span_.x.Count(); ++k) change(column[k]);
    };
    Slide(
        span_.y, y, [&](int j) { each(j, [this](std::uint32_t rank) { set_.Add(rank); }); },
        [&](int j) { each(j, [this](std::uint32_t rank) { set_.Remove(rank); }); });
  }

  float Take(const Field& field, float centre) {
    const std::size_t collected = span_.Count();
    if (collected == 0) return centre;
    const std::uint32_t last = ranks_[IndexOf(span_.x.to - 1, span_.y.to - 1)];
    const std::size_t place = field.Place(collected);
    if (place >= collected - 1) return ValueOf(keys_[order_[last]]);
    set_.Remove(last);
    const std::uint32_t rank = set_.At(place);
    set_.Add(last);
    return ValueOf(keys_[order_[rank]]);
  }

  Area reach_ = {};
  Area span_ = {};
  std::vector<std::int32_t> keys_;
  std::vector<std::uint32_t> order_;
  std::vector<std::uint32_t> ranks_;
  RankSet set_;
};

void SelectByRank(const Field& field, const Area& area, float* const* result) {
  constexpr int kLeast = 32;
  constexpr int kTile = 2048;
  RankedTile tile;
  const int height = std::min(std::max(kLeast, 4 * field.halfX), field.nX);
  const int width = std::max({kLeast, 4 * field.halfY, kTile / height});
  for (int i = area.x.from; i < area.x.to; i += height)
    for (int j = area.y.from; j < area.y.to; j += width)
      tile.Run(field, {{i, std::min(i + height, area.x.to)}, {j, std::min(j + width, area.y.to)}}, result);
}

// ------------------------------------------------------------ both

void Median(const Field& field, int columns, float* const* result) {
  const Area all = {{0, field.nX}, {0, columns}};
  const Area inner = {{field.halfX, field.nX - field.halfX}, {field.halfY, field.nY - field.halfY}};
  const int largest = kMostSelected + 1;
  if (inner.Count() == 0 || 2 * field.halfY >= largest || (2 * field.halfX + 1) * (2 * field.halfY + 1) > largest)
    return SelectByRank(field, all, result);
  if (field.halfY > 0) SelectSideBySide(field, inner, result);
  SelectByRank(field, {all.x, {0, inner.y.from}}, result);
  SelectByRank(field, {all.x, {inner.y.to, columns}}, result);
  SelectByRank(field, {{0, inner.x.from}, inner.y}, result);
  SelectByRank(field, {{inner.x.to, field.nX}, inner.y}, result);
}

int HalfOf(int width) { return std::max(width, 0) / 2; }

}  // namespace

PrnType& PrnType::Median2D(int w) const {
  if (!OwnsArrays(allocType) || Is3D()) return *new PrnType;
  auto result = NewResult(*this, allocType, nY);
  if (HasX()) std::copy_n(xArray, nY, result->xArray);
  result->xStart = xStart;
  result->xEnd = xEnd;
  result->xStep = xStep;
  result->yStart = yStart;
  result->yEnd = yEnd;
  result->CopyHeader(*this);
  const int half = std::min(HalfOf(w), std::max(nY, 0));
  Median({&yArray, 1, std::min(nX, nY), 0, half, 0}, nY, &result->yArray);
  return *result.release();
}

PrnType& PrnType::Median3D(int w) const {
  if (!OwnsArrays(allocType) || !Is3D()) return *new PrnType;
  auto result = NewResult(*this, allocType, nX, nY);
  SetX(*result, KeptX(*this));
  SetY(*result, KeptY(*this));
  result->xStep = xStep;
  result->xStart = xStart;
  result->xEnd = xEnd;
  result->yStep = yStep;
  result->yStart = yStart;
  result->yEnd = yEnd;
  result->zMin = zMin;
  result->zMax = zMax;
  result->CopyHeader(*this);
  const int half = std::min(HalfOf(w), std::max(nX, nY));
  Median({zArray, nX, nY, half, half, 1}, nY, result->zArray);
  return *result.release();
}
