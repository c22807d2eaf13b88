#include "format.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>

#include "csv.h"
#include "kem/dataset.h"
#include "shape.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

constexpr Format kFormats[] = {
    {"prn", "XY columns of text", true, false, 0, true},
    {"csv", "comma-separated values", true, true, 0, false},
    {"cvt", "text with a defined or stored X axis", true, false, 0, true},
    {"dx", "JCAMP-DX", true, false, 0, true},
    {"p2d", "text with comment lines", true, false, 0, true},
    {"p3d", "text with comment lines", false, true, 0, true},
    {"b2d", "binary", true, false, kMostBinaryPoints, false},
    {"b3d", "binary", false, true, kMostBinaryPoints, false},
};

bool IsCsv(const Format& format) { return std::string_view(format.name) == "csv"; }
std::string ExtensionOf(const Format& format) { return std::string(".") + format.name; }

// What the reader makes of the file.
std::string ShapeInFile(const std::string& name) {
  std::string shape = "nothing";
  const fs::path path = PathOf(name);
  (void)Attempted(path, [&] { shape = ShapeOf(*Open(path).ToRecord()); });
  return shape;
}

Problem WriteOther(PrnType& record, const Format& format, const std::string& name) {
  kem::Record owner(std::move(record));
  const fs::path path = PathOf(name);
  Problem problem = Attempted(path, [&] { owner.Write(path, ExtensionOf(format)); });
  record = std::move(*owner.Release());
  return problem;
}

}  // namespace

std::span<const Format> Formats() { return kFormats; }

const Format* FormatNamed(const std::string& name) {
  const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [small = LowerCase(name)](const Format& f) { return small == f.name; });
  return found == std::end(kFormats) ? nullptr : found;
}

std::string FormatNames() {
  std::string names;
  for (const Format& format : kFormats) names += std::string(names.empty() ? "" : ", ") + format.name;
  return names;
}

Problem CannotHold(const Format& format, const PrnType& record) {
  return IsCsv(format) ? "" : WhyNotWritten(record, ExtensionOf(format));
}

void NameByTitle(PrnType& record, const Format& format, std::string title) {
  if (std::string_view(format.name) != "prn") return;
  const auto breaks = [](char c) { return c == '\n' || c == '\r'; };
  std::replace_if(title.begin(), title.end(), breaks, ' ');
  std::snprintf(record.fileName, sizeof record.fileName, "%s", title.c_str());
}

Problem WriteRecord(PrnType& record, const Format& format, const std::string& name) {
  if (IsCsv(format)) return WriteCsv(record, name.c_str()) ? "" : "cannot be written completely";
  if (Problem problem = WriteOther(record, format, name); !problem.empty() || !format.checked) return problem;
  const std::string shape = ShapeInFile(name);
  return shape == ShapeOf(record) ? "" : "would read back as " + shape + " instead of " + ShapeOf(record);
}

}  // namespace kem::tool
