// The door of the full reading: which format a file has, its items, and what every dataset is checked for.
#include <algorithm>

#include "dataset/foreign.h"
#include "dataset/reader.h"
#include "record/finite.h"
#include "record/pages.h"
#include "text/words.h"

namespace kem {
namespace dataset {
using namespace text;
namespace {

// The first one that recognises a file reads it.
constexpr const Reader* kReaders[] = {&kBES3TReader, &kBrukerReader,      &kHPDTAReader,     &kJcampReader,
                                      &kCaryReader,  &kHamaReader,        &kIccdImageReader, &kIccdCurveReader,
                                      &kAT1Reader,   &kOMAReader,         &kP3DReader,       &kP2DReader,
                                      &kB3DReader,   &kB2DReader,         &kCvtReader,       &kNPicoReader,
                                      &kDilorReader, &kDilorSeriesReader, &kColumnsReader};

struct Recognised {
  const Reader* reader;
  std::string evidence;
};

// Why a file that nothing recognises is not what its name says.
std::string Unknown(Source& source) {
  if (source.Size() == 0) return "is empty";
  if (source.HasExtension(".spc") && !source.Companion(".par"))
    return "its parameters, a file of the same name with .par, are missing";
  for (const char* extension : {".par", ".spc"})
    if (source.HasExtension(extension))
      return "is not a Bruker ESR file: its parameters hold none of JSS, DOS, GST and JEX";
  if (source.HasExtension(".DSC")) return "is not a Bruker BES3T file: there is no #DESC";
  if (source.HasExtension(".DTA")) return "its descriptor, a file of the same name with .DSC and #DESC, is missing";
  return "unknown format";
}

Recognised Recognise(Source& source) {
  for (const Reader* reader : kReaders)
    if (std::string evidence = reader->recognise(source); !evidence.empty()) return {reader, std::move(evidence)};
  Fail(ErrorCode::UnknownFormat, source.Path(), Unknown(source));
}

void RefuseForeign(Source& source) {
  if (const auto foreign = ForeignFormat(source)) Fail(ErrorCode::NotReadable, source.Path(), foreign->refusal);
}

// ------------------------------------------------------------ checks

bool RepeatsOrTurns(const Axis& axis) {
  const auto x = axis.StoredCoordinates();
  if (x.size() < 2) return false;
  const bool rises = x[1] > x[0];
  for (std::size_t k = 1; k < x.size(); ++k)
    if (rises ? !(x[k] > x[k - 1]) : !(x[k] < x[k - 1])) return true;
  return false;
}

void Check(Dataset& d) {
  const auto note = [&d](Severity severity, std::string text) { d.notes.push_back({severity, std::move(text)}); };
  if (d.values.Count() == 0) note(Severity::Damaged, "holds no points");
  const std::size_t odd = record::NotFinite(d.values.As<float>()) + record::NotFinite(d.values.As<double>());
  if (odd > 0) note(Severity::Doubtful, "values that are not finite: " + std::to_string(odd));
  for (const Axis& axis : d.axes)
    if (RepeatsOrTurns(axis))
      note(Severity::Remark, (axis.name.empty() ? "an axis" : "axis " + axis.name) + " repeats or turns round");
  if (d.items > 1) {
    const std::string more = std::to_string(d.items - 1);
    note(Severity::Remark, "holds " + more + (d.items == 2 ? " more item" : " more items"));
  }
}

void ToUtf8(Dataset& d) {
  for (std::string* text : {&d.title, &d.name, &d.unit, &d.itemName}) *text = Utf8(*text);
  for (Axis& axis : d.axes) {
    axis.name = Utf8(axis.name);
    axis.unit = Utf8(axis.unit);
  }
}

std::string HoldsNo(int item, std::size_t items) {
  return "holds no item " + std::to_string(item) + ", but " + std::to_string(items);
}

// A file with its reader and the names of its items.
struct Opened {
  Source source;
  const Reader& reader;
  std::vector<std::string> names;

  explicit Opened(const std::filesystem::path& file)
      : source(file), reader((RefuseForeign(source), *Recognise(source).reader)), names(reader.items(source)) {}

  Dataset Item(std::size_t number) {
    record::GrowHeapFor(static_cast<std::size_t>(source.Size()) / names.size());  // as much as it is about to keep
    Dataset dataset = reader.open(source, static_cast<int>(number));
    dataset.format = reader.format;
    dataset.file = source.Path();
    dataset.item = static_cast<int>(number);
    dataset.items = static_cast<int>(names.size());
    dataset.itemName = names[number - 1];
    ToUtf8(dataset);
    Check(dataset);
    return dataset;
  }
};

// Memory that runs out is told like whatever else goes wrong with a file.
template <class Work>
auto Told(const std::filesystem::path& file, Work work) try {
  return work();
} catch (const std::bad_alloc&) {
  Fail(ErrorCode::OutOfMemory, file, "there is not enough memory for it");
}

}  // namespace
}  // namespace dataset

using namespace dataset;

Dataset Open(const std::filesystem::path& file, int item) {
  return Told(file, [&] {
    Opened opened(file);
    const std::size_t items = opened.names.size();
    if (item < 1 || static_cast<std::size_t>(item) > items) Fail(ErrorCode::NoSuchItem, file, HoldsNo(item, items));
    return opened.Item(static_cast<std::size_t>(item));
  });
}

void OpenEach(const std::filesystem::path& file, const std::function<bool(Dataset item)>& take) {
  Opened opened = Told(file, [&] { return Opened(file); });
  for (std::size_t k = 1; k <= opened.names.size(); ++k)
    if (!take(Told(file, [&] { return opened.Item(k); }))) return;
}

std::vector<ItemInfo> Items(const std::filesystem::path& file) {
  return Told(file, [&] {
    std::vector<ItemInfo> items;
    for (const std::string& name : Opened(file).names)
      items.push_back({static_cast<int>(items.size()) + 1, Utf8(name)});
    return items;
  });
}

Identity Identify(const std::filesystem::path& file) {
  return Told(file, [&]() -> Identity {
    Source source(file);
    if (auto foreign = ForeignFormat(source)) return {std::move(foreign->format), std::move(foreign->evidence)};
    Recognised found = Recognise(source);
    return {found.reader->format, std::move(found.evidence)};
  });
}

std::vector<FormatInfo> Formats() {
  std::vector<FormatInfo> formats;
  const auto list = [](const char* words) { return *words ? SplitList(words, ' ') : std::vector<std::string>(); };
  for (const Reader* r : kReaders)
    formats.push_back({r->format, list(r->extensions), r->pair, list(r->companions)});
  return formats;
}

}  // namespace kem
