// Sliding medians of curves and grids. No span is sorted for the sake of one value: from narrow spans the values
// of many neighbours are selected side by side, a curve's wider ones move along in many places at once, and the
// widest and those of grids are sets of ranks that move along, those of neighbouring rows together.
#include <algorithm>
#include <array>
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

// Medians of a tile of the result, for spans of any size. All values that its spans reach are ranked once; then the
// spans of some rows are sets of ranks, and from one sample to the next only the values at two of their edges enter
// and leave.
class RankedTile {
 public:
  explicit RankedTile(const Field& field) : field_(field) {}

  void Run(const Area& tile, float* const* result) {
    const Span y = {field_.AroundY(tile.y.from).from, field_.AroundY(tile.y.to - 1).to};
    ranks_.Rank(field_.rows, {ReachOf(tile.x), y});
    sets_.Start(ranks_.Size());
    for (Index i = tile.x.from; i < tile.x.to; i += SpanSets::kSpans)
      Run(Span{i, std::min(i + SpanSets::kSpans, tile.x.to)}, tile.y, result);
  }

 private:
  Span ReachOf(const Span& rows) const { return {field_.AroundX(rows.from).from, field_.AroundX(rows.to - 1).to}; }

  void Run(const Span& rows, const Span& columns, float* const* result) {
    const Span reach = ReachOf(rows);
    std::array<Span, SpanSets::kSpans> spans;
    const auto count = static_cast<std::size_t>(rows.Count());
    for (std::size_t k = 0; k < count; ++k) {
      const Span x = field_.AroundX(rows.from + static_cast<Index>(k));
      spans[k] = {x.from - reach.from, x.to - reach.from};
    }
    sets_.Clear(std::span(spans).first(count), reach.Count());
    Index first = field_.AroundY(columns.from).from;
    Index behind = first;
    for (Index j = columns.from; j < columns.to; ++j) {
      const Span y = field_.AroundY(j);
      while (behind < y.to) sets_.Add(ranks_.Column(behind++, reach));
      while (first < y.from) sets_.Remove(ranks_.Column(first++, reach));
      const Ranks last = ranks_.Column(y.to - 1, reach);
      for (std::size_t k = 0; k < count; ++k)
        result[rows.from + static_cast<Index>(k)][j] =
            Median(k, spans[k].Count() * y.Count(), last[static_cast<std::size_t>(spans[k].to - 1)]);
    }
  }

  // Of a span of some values, by the rank of the one collected last.
  float Median(std::size_t span, Index collected, std::uint32_t last) {
    const Index place = field_.Place(collected);
    return ranks_.ValueAt(place == collected - 1 ? last : sets_.At(span, static_cast<std::size_t>(place), last));
  }

  Field field_;
  Ranking ranks_;
  SpanSets sets_;
};

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
  RankedTile tile(field);
  for (Index i = area.x.from; i < area.x.to; i += height)
    for (Index j = area.y.from; j < area.y.to; j += width)
      tile.Run({{i, std::min(i + height, area.x.to)}, {j, std::min(j + width, area.y.to)}}, result);
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
