// Sliding medians of curves and grids. No span is sorted for the sake of one value: from narrow spans the values
// of many neighbours are selected side by side, a curve's wider ones move along in many places at once, and the
// widest and those of grids are sets of ranks that move along.
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "analysis/rank_sets.h"
#include "analysis/ranking.h"
#include "analysis/result.h"
#include "analysis/selection.h"
#include "analysis/stretches.h"
#include "record/storage.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

// The values of a grid, or of a curve as a grid of one row, and the medians asked for.
struct Field {
  const float* const* rows;
  Index nX;
  Index nY;
  Index halfX;  // how far a span reaches to either side
  Index halfY;
  Index above;  // how many places above the middle the value is taken

  Span AroundX(Index i) const { return {std::max<Index>(0, i - halfX), std::min(nX, i + halfX + 1)}; }
  Span AroundY(Index j) const { return {std::max<Index>(0, j - halfY), std::min(nY, j + halfY + 1)}; }

  // A span is collected column by column and all but its last value sorted; this is where its median then is.
  // In a grid's spans of two or three values that is the last value itself.
  Index Place(Index collected) const { return std::min((collected - 1) / 2 + above, collected - 1); }
};

// ------------------------------------------------------------ narrow spans

using Selection = void (*)(const float* const* rows, Index count, Index length, float* const* result);

// By the reach of a span, beginning with 1: those that are faster than ranks are.
template <std::size_t... reach>
constexpr std::array<Selection, sizeof...(reach)> SelectionsAlong(std::index_sequence<reach...>) {
  return {SelectNarrow<1, 2 * reach + 3, reach + 1>...};
}
constexpr auto kOfCurves = SelectionsAlong(std::make_index_sequence<16>());
constexpr std::array<Selection, 4> kOfGrids = {SelectNarrow<3, 3, 5>, SelectNarrow<5, 5, 13>,
                                               SelectNarrow<7, 7, 25>, SelectNarrow<9, 9, 41>};

Selection NarrowSelection(const Field& field) {
  const std::span<const Selection> all = field.halfX == 0 ? std::span<const Selection>(kOfCurves) : kOfGrids;
  return field.halfY <= std::ssize(all) ? all[static_cast<std::size_t>(field.halfY) - 1] : nullptr;
}

// ------------------------------------------------------------ wide spans

// Medians of a tile of the result, for spans of any size. All values that its spans reach are ranked once; then a
// span is a set of ranks, and from one sample to the next only the values at two of its edges enter and leave.
template <class RankSet>
class RankedTile {
 public:
  explicit RankedTile(const Field& field) : field_(field) {}

  void Run(const Area& tile, float* const* result) {
    const Area reach = {{field_.AroundX(tile.x.from).from, field_.AroundX(tile.x.to - 1).to},
                        {field_.AroundY(tile.y.from).from, field_.AroundY(tile.y.to - 1).to}};
    ranks_.Rank(field_.rows, reach);
    set_.Clear(ranks_.Size());
    span_ = {{reach.x.from, reach.x.from}, {reach.y.from, reach.y.from}};
    for (Index i = tile.x.from; i < tile.x.to; ++i) {
      MoveX(field_.AroundX(i));
      const bool back = (i - tile.x.from) % 2 != 0;  // to and fro, so that the set is never filled anew
      for (Index k = 0; k < tile.y.Count(); ++k) {
        const Index j = back ? tile.y.to - 1 - k : tile.y.from + k;
        MoveY(field_.AroundY(j));
        result[i][j] = Median();
      }
    }
  }

 private:
  void MoveX(const Span& x) {
    Slide(span_.x, x, [this](Index i, auto change) {
      for (Index j = span_.y.from; j < span_.y.to; ++j) change(ranks_.Column(j, {i, i + 1}));
    });
  }

  void MoveY(const Span& y) {
    Slide(span_.y, y, [this](Index j, auto change) { change(ranks_.Column(j, span_.x)); });
  }

  // `visit(k, change)` changes the set by all ranks of line k.
  template <class Visit>
  void Slide(Span& span, const Span& target, Visit visit) {
    const auto add = [this](Ranks ranks) { set_.Add(ranks); };
    const auto remove = [this](Ranks ranks) { set_.Remove(ranks); };
    while (span.to < target.to) visit(span.to++, add);
    while (span.from > target.from) visit(--span.from, add);
    while (span.from < target.from) visit(span.from++, remove);
    while (span.to > target.to) visit(--span.to, remove);
  }

  float Median() {
    const Index collected = span_.Count();
    const Index place = field_.Place(collected);
    const Ranks last = ranks_.Column(span_.y.to - 1, {span_.x.to - 1, span_.x.to});
    if (place == collected - 1) return ranks_.ValueAt(last[0]);
    set_.Remove(last);
    const std::size_t rank = set_.At(static_cast<std::size_t>(place));
    set_.Add(last);
    return ranks_.ValueAt(rank);
  }

  Field field_;
  Area span_ = {};
  Ranking ranks_;
  RankSet set_;
};

template <class RankSet>
void SelectByTiles(const Field& field, const Area& area, Index height, Index width, float* const* result) {
  RankedTile<RankSet> tile(field);
  for (Index i = area.x.from; i < area.x.to; i += height)
    for (Index j = area.y.from; j < area.y.to; j += width)
      tile.Run({{i, std::min(i + height, area.x.to)}, {j, std::min(j + width, area.y.to)}}, result);
}

// Tiles are several spans wide, so that few values are ranked twice, and else small enough for the fastest memory,
// or, in grids of wide spans, not too large for the next.
Index SideOf(Index half, bool grid) {
  constexpr Index kLeast = 32;
  constexpr Index kWide = 96;
  return std::max(kLeast, grid ? std::min(4 * half, std::max(kWide, 2 * half)) : 4 * half);
}

void SelectByRank(const Field& field, const Area& area, float* const* result) {
  constexpr Index kLeastSize = 2048;
  const bool grid = field.halfX > 0;
  const Index side = std::min(SideOf(field.halfX, grid), field.nX);
  const Index width = std::max(SideOf(field.halfY, grid), kLeastSize / std::max<Index>(side, 1));
  // Margins are narrow: higher tiles have as many samples.
  const Index height = std::max(side, kLeastSize / std::clamp<Index>(area.y.Count(), 1, width));
  const bool large = side * std::min(width, field.nY) > (grid ? 1 << 14 : 1 << 12);
  (large ? SelectByTiles<LargeSet> : SelectByTiles<ByteSet>)(field, area, height, width, result);
}

// ------------------------------------------------------------ both

// Where spans are whole, if there is a fast way. Returns whether there was.
bool SelectInside(const Field& field, const Area& whole, float* const* result) {
  if (whole.x.Count() == 0) return false;
  if (const Selection select = NarrowSelection(field); select && whole.y.Count() >= Index{kNeighbours}) {
    select(field.rows, field.nX, field.nY, result);
    return true;
  }
  return field.nX == 1 && (SelectStretches<StretchLooks>(field.rows[0], field.nY, field.halfY, result[0]) ||
                           SelectStretches<StretchSets>(field.rows[0], field.nY, field.halfY, result[0]));
}

void Medians(const Field& field, float* const* result) {
  const Area all = {{0, field.nX}, {0, field.nY}};
  const Area whole = {{field.halfX, field.nX - field.halfX}, {field.halfY, field.nY - field.halfY}};
  if (field.halfY == 0) {
    for (Index i = 0; i < field.nX; ++i) std::copy_n(field.rows[i], field.nY, result[i]);
    return;
  }
  if (!SelectInside(field, whole, result)) return SelectByRank(field, all, result);
  SelectByRank(field, {{0, whole.x.from}, all.y}, result);
  SelectByRank(field, {{whole.x.to, field.nX}, all.y}, result);
  SelectByRank(field, {whole.x, {0, whole.y.from}}, result);
  SelectByRank(field, {whole.x, {whole.y.to, field.nY}}, result);
}

// An even width counts as the next odd one, a negative one as 1.
Index HalfOf(int width) { return std::max(width, 0) / 2; }

}  // namespace

PrnType& PrnType::Median2D(int w) const {
  if (!OwnsArrays(allocType) || Is3D()) return *new PrnType;
  const KeptAxis x = Kept(*this, kX);
  auto result = NewResult(*this, allocType, x.count);
  SetAxis(*result, kX, x);
  result->CopyHeader(*this);
  result->xStart = xStart;
  result->xEnd = xEnd;
  result->xStep = xStep;
  result->yStart = yStart;
  result->yEnd = yEnd;
  Medians({&yArray, 1, x.count, 0, HalfOf(w), 0}, &result->yArray);
  return *result.release();
}

PrnType& PrnType::Median3D(int w) const {
  if (!OwnsArrays(allocType) || !Is3D()) return *new PrnType;
  auto result = NewResult(*this, allocType, nX, nY);
  SetAxis(*result, kX, Kept(*this, kX));
  SetAxis(*result, kY, Kept(*this, kY));
  result->CopyHeader(*this);
  result->xStep = xStep;
  result->xStart = xStart;
  result->xEnd = xEnd;
  result->yStep = yStep;
  result->yStart = yStart;
  result->yEnd = yEnd;
  result->zMin = zMin;
  result->zMax = zMax;
  Medians({zArray, nX, nY, HalfOf(w), HalfOf(w), 1}, result->zArray);
  return *result.release();
}
