#include "dataset/of_record.h"

#include <cmath>
#include <new>
#include <string>

#include "record/findings.h"
#include "record/storage.h"
#include "record/tiles.h"
#include "text/fields.h"
#include "text/number_text.h"

namespace kem::dataset {
using namespace text;
namespace {

// ------------------------------------------------------------ values

Values GridValues(const PrnType& r) {
  const std::size_t count = static_cast<std::size_t>(r.nX) * static_cast<std::size_t>(r.nY);
  auto bytes = record::NewBytes(count * sizeof(float));
  record::CopyGrid(r, reinterpret_cast<float*>(bytes.get()));
  return {NumberType::F32, false, count, std::move(bytes)};
}

// ------------------------------------------------------------ parameters

// "hamaDispersion" is Dispersion: the names of a block begin with that of its instrument.
std::string_view KeyOf(std::string_view name) {
  const auto capital = std::find_if(name.begin(), name.end(), IsUpper);
  return name.substr(static_cast<std::size_t>(capital - name.begin()));
}

template <class T>
std::string Number(const void* values, int k) {
  std::string text;
  AppendNumber(text, static_cast<const T*>(values)[k]);
  return text;
}

std::string TextOf(const KemParameter& parameter, const void* values, int k) {
  switch (parameter.kind) {
    case KemParameterKind::Text:
      return std::string(Trimmed(TextOfField(static_cast<const char*>(values) + std::ptrdiff_t{k} * kTextSize)));
    case KemParameterKind::Int:
      return Number<int>(values, k);
    case KemParameterKind::Float:
      return Number<float>(values, k);
    default:
      return std::to_string(static_cast<const unsigned char*>(values)[k]);
  }
}

void AddParameters(Dataset& d, const PrnType& r, std::span<const TextRow> units) {
  for (const KemParameter& parameter : KemParameters(r.fileType)) {
    const std::string_view key = KeyOf(parameter.name);
    const std::string_view unit = text::TextOf(units, key);
    std::string numbers;
    for (int k = 0; k < parameter.count; ++k) {
      const std::string text = TextOf(parameter, parameter.in(r), k);
      if (parameter.kind == KemParameterKind::Text)
        AddParameter(d, {}, key, text, unit);
      else
        numbers += (k == 0 ? "" : ", ") + text;
    }
    if (!numbers.empty()) AddParameter(d, {}, key, numbers, unit);
  }
}

// Comment lines of these are free, and the first one is the title where kem writes them.
bool HasPlainComments(const PrnType& r) { return r.fileType == FileP3D || r.fileType == FileP2D; }

// Comment lines of the exchange formats, and of the instruments whose labels are no titles: "Setup  : text".
void AddComments(Dataset& d, const PrnType& r) {
  const bool plain = HasPlainComments(r);
  if (!plain && r.fileType != FileAT1 && r.fileType != FileOMA) return;
  std::string block(sizeof r.headerArea, '\0');
  if (plain)
    for (const auto& line : r.commentLines) block.append(text::TextOf(line)) += '\n';
  else
    r.CommentBlock(block.data(), static_cast<int>(block.size()));
  std::erase(block, '\0');
  Lines lines(block);
  for (std::string_view line; lines.Next(line);) {
    const auto colon = plain ? line.npos : line.find(" : ");
    const auto key = colon == line.npos ? "Comment" : Trimmed(line.substr(0, colon));
    const auto comment = Trimmed(line.substr(colon == line.npos ? 0 : colon + 3));
    if (!comment.empty()) AddParameter(d, {}, key, comment);
  }
}

// The titles of camera files are in the record, but hosts see "X" and "Y".
void TitlesOf(const PrnType& r, Text (&titles)[3]) {
  r.LabelAxes(titles[0], titles[1], titles[2]);
  if (r.fileType != FileIccdCurve && r.fileType != FileIccdImage) return;
  CopyText(titles[0], text::TextOf(r.xLabel));
  CopyText(titles[1], text::TextOf(r.yLabel));
}

// ------------------------------------------------------------ reading

std::string Whole(double number) {
  std::string text = std::to_string(number);
  return text.substr(0, text.find('.'));
}

[[noreturn]] void Refuse(const Source& source, const record::Aside& aside) {
  std::string problem(Trimmed(aside.messages.str()));
  Fail(ErrorCode::Damaged, source.Path(),
       problem.empty() ? "its layout is not the one that its beginning tells" : problem);
}

}  // namespace

// The end of a record's axis is the last coordinate, one step behind it, or was never set.
Axis AxisOf(const PrnType& r, const record::AxisFields& fields, int count, NamedUnit title) {
  const float* stored = r.*fields.values;
  if (fields.IsStoredIn(r) && count > 0)
    return Axis::Stored(std::move(title.name), std::move(title.unit), {stored, stored + count});
  const float start = r.*fields.start;
  const float end = r.*fields.end;
  const float step = r.*fields.step;
  const double last = start + (count - 1.0) * step;
  return Axis::Linear(std::move(title.name), std::move(title.unit), static_cast<std::size_t>(std::max(count, 0)),
                      start, std::fabs(end - last) < std::fabs(step) / 4.0 ? end : last);
}

Dataset OfRecord(const PrnType& r, std::span<const TextRow> units) {
  Text titles[3] = {};
  TitlesOf(r, titles);
  const bool grid = r.Is3D() != 0;
  const NamedUnit of = SplitTitle(titles[grid ? 2 : 1]);
  Dataset d;
  d.name = of.name;
  d.unit = of.unit;
  if (grid)
    d.axes = {AxisOf(r, record::kY, r.nY, SplitTitle(titles[1])),
              AxisOf(r, record::kX, r.nX, SplitTitle(titles[0]))};
  else
    d.axes = {AxisOf(r, record::kX, r.nY, SplitTitle(titles[0]))};
  d.values = grid ? GridValues(r) : Values::Of(std::span<const float>(r.yArray, static_cast<std::size_t>(r.nY)));
  AddParameters(d, r, units);
  AddComments(d, r);
  if (HasPlainComments(r)) d.title = Trimmed(text::TextOf(r.commentLines[0]));
  return d;
}

Dataset OpenRecord(Source& source, const ReadRecord& read, std::span<const TextRow> units, int next) {
  record::Aside aside;
  aside.readNext = next;
  aside.place = source.place;
  PrnType r;
  try {
    if (read(r, source.Stream()) == 0 || !r) Refuse(source, aside);
  } catch (const std::bad_alloc&) {
    if (aside.announced >= 0 && aside.announced <= aside.fileBytes) throw;
    Fail(ErrorCode::Damaged, source.Path(),
         "announces " + Whole(aside.announced) + " values, the file has " + Whole(aside.fileBytes) + " bytes");
  }
  source.place = aside.place;
  Dataset d = OfRecord(r, units);
  if (aside.missing > 0)
    d.notes.push_back({Severity::Damaged, "numbers that are missing and are 0: " + Whole(aside.missing)});
  return d;
}

}  // namespace kem::dataset
