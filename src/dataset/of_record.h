// Datasets of formats whose record tells all that the file does.
#pragma once

#include <algorithm>
#include <array>
#include <fstream>
#include <functional>
#include <istream>

#include "dataset/reader.h"
#include "kem.h"
#include "load/items.h"
#include "record/axis.h"
#include "text/words.h"

namespace kem::dataset {

// Reads a record from a file as its reader does; returns 0 when that refuses.
using ReadRecord = std::function<int(PrnType& record, std::ifstream& in)>;

// What reads a record finds in it. `units` are those of parameters by their names; `next` is what the reader sees
// as \ref ReadNextFlag.
Dataset OpenRecord(Source& source, const ReadRecord& read, std::span<const text::TextRow> units = {}, int next = 0);

// The coordinates of an axis of a record, stored or linear.
Axis AxisOf(const PrnType& record, const record::AxisFields& fields, int count, NamedUnit title = {});

// The dataset of a record.
Dataset OfRecord(const PrnType& record, std::span<const text::TextRow> units = {});

// A format with one item.
template <int (PrnType::*Read)(std::ifstream&), const auto& Units>
Dataset OpenOne(Source& source, int) {
  return OpenRecord(
      source, [](PrnType& record, std::ifstream& in) { return (record.*Read)(in); }, Units);
}
inline constexpr std::array<text::TextRow, 0> kNoUnits = {};

// A format of several items that the record's reader counts from `First`, and that are listed as hosts list them.
template <int (PrnType::*Read)(std::ifstream&, int&, int), void (*List)(std::istream&, load::ItemList&), int First>
struct Series {
  static std::vector<std::string> Items(Source& source) {
    int count = 0;
    const Dataset first =
        OpenRecord(source, [&](PrnType& record, std::ifstream& in) { return (record.*Read)(in, count, First); });
    KemItem item{.index = First, .allocType = AllocY, .nX = 0, .nY = 0, .title = {}};
    item.nX = item.nY = static_cast<int>(first.values.Count());
    load::ItemList items(static_cast<std::size_t>(std::max(count, 1)), item);
    for (std::size_t k = 0; k < items.size(); ++k) items[k].index += static_cast<int>(k);
    List(source.Stream(), items);
    std::vector<std::string> names;
    for (const KemItem& one : items) names.emplace_back(text::Trimmed(one.title));
    return names;
  }
  static Dataset Open(Source& source, int item) {
    int count = 0;
    return OpenRecord(
        source, [&](PrnType& record, std::ifstream& in) { return (record.*Read)(in, count, First + item - 1); });
  }
};

}  // namespace kem::dataset
