#include "output.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <random>
#include <system_error>

#include "csv.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// ------------------------------------------------------------ formats

// The library's writers tell whether they wrote, and apart from that whether all of it could be stored.
template <int (PrnType::*Member)(char* const) const>
bool Write(const PrnType& record, char* const name) {
  return (record.*Member)(name) != 0 && WriteFailedFlag == 0;
}

// Counts of the binary formats are signed 16-bit numbers.
constexpr int kMostBinaryPoints = 32767;

constexpr Format kFormats[] = {
    {"prn", "XY columns of text", true, false, 0, Write<&PrnType::WriteXYPrn>},
    {"csv", "comma-separated values", true, true, 0, WriteCsv},
    {"cvt", "text with a defined or stored X axis", true, false, 0, Write<&PrnType::WriteCvt>},
    {"dx", "JCAMP-DX", true, false, 0, Write<&PrnType::WriteDX>},
    {"p2d", "text with comment lines", true, false, 0, Write<&PrnType::WriteP2D>},
    {"p3d", "text with comment lines", false, true, 0, Write<&PrnType::WriteP3D>},
    {"b2d", "binary", true, false, kMostBinaryPoints, Write<&PrnType::WriteB2D>},
    {"b3d", "binary", false, true, kMostBinaryPoints, Write<&PrnType::WriteB3D>},
};

const Format* FormatNamed(std::string name) {
  for (char& c : name)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  const auto* found =
      std::find_if(std::begin(kFormats), std::end(kFormats), [&name](const Format& f) { return name == f.name; });
  return found == std::end(kFormats) ? nullptr : found;
}

std::string FormatNames() {
  std::string names;
  for (const Format& format : kFormats) names += std::string(names.empty() ? "" : ", ") + format.name;
  return names;
}

// Why a format cannot hold a record.
Problem CannotHold(const Format& format, const PrnType& record) {
  const std::string name = format.name;
  const std::string size = std::to_string(record.nX) + " x " + std::to_string(record.nY) + " points";
  if (record.Is3D() && !format.grids) return name + " holds curves only, and this is a grid of " + size;
  if (!record.Is3D() && !format.curves) return name + " holds grids only, and this is a curve";
  const int points = record.Is3D() ? std::max(record.nX, record.nY) : record.nY;
  if (format.mostPoints > 0 && points > format.mostPoints)
    return name + " holds at most " + std::to_string(format.mostPoints) + " points along an axis, and this has " +
           std::to_string(points);
  return {};
}

// ------------------------------------------------------------ files that are still being written

// Path of the unfinished file, for the interrupt; empty when there is none.
char unfinished[4096];

void RemoveUnfinished(int signal) {
  if (unfinished[0]) unlink(unfinished);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// A file under a name of its own in the folder of its target. It gets the target's name when it is complete, and
// goes otherwise.
class PendingFile {
 public:
  explicit PendingFile(const fs::path& target) : target_(target) {
    std::random_device random;
    do {
      char name[32];
      std::snprintf(name, sizeof name, ".kem-%08x.tmp", static_cast<unsigned>(random()));
      path_ = fs::path(target).replace_filename(name).string();
      std::FILE* file = std::fopen(path_.c_str(), "wbx");
      created_ = file && std::fclose(file) == 0;
    } while (!created_ && errno == EEXIST);
    if (created_ && path_.size() < sizeof unfinished) std::memcpy(unfinished, path_.c_str(), path_.size() + 1);
  }

  ~PendingFile() {
    if (created_) unlink(path_.c_str());
    unfinished[0] = '\0';
  }

  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  // Writes and renames it.
  Problem Complete(const PrnType& record, const Format& format) {
    const std::string target = target_.string();
    if (!created_) return target + " cannot be created: " + std::generic_category().message(errno);
    if (!format.write(record, path_.data())) return target + " cannot be written completely";
    std::error_code error;
    fs::rename(path_, target_, error);
    created_ = static_cast<bool>(error);
    return error ? target + " cannot be written: " + error.message() : "";
  }

 private:
  fs::path target_;
  std::string path_;
  bool created_ = false;
};

// ------------------------------------------------------------ targets

std::string Numbered(const fs::path& name, int number) {
  const std::string digits = std::to_string(number);
  return name.stem().string() + (digits.size() < 2 ? "_0" : "_") + digits + name.extension().string();
}

fs::path TargetOf(const Output& output, const std::string& source, int number, const Format& format) {
  fs::path target = output.file;
  if (output.file.empty()) {
    target = source;
    if (!output.folder.empty()) target = output.folder / target.filename();
    target.replace_extension(format.name);
  }
  if (number > 0) target.replace_filename(Numbered(target.filename(), number));
  return target;
}

// The file behind a link, by its full path.
fs::path Resolved(const fs::path& target) {
  std::error_code error;
  fs::path resolved = fs::weakly_canonical(target, error);
  return error ? target : resolved;
}

// Why nothing may be written there.
Problem CannotReplace(const fs::path& target, const Output& output) {
  const auto earlier = output.written.find(Resolved(target));
  if (earlier != output.written.end()) return target.string() + " has just been made from " + earlier->second;
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (!fs::exists(status)) return {};
  if (!fs::is_regular_file(status)) return target.string() + " is no ordinary file";
  return output.force ? "" : target.string() + " exists already; --force overwrites it";
}

}  // namespace

std::span<const Format> Formats() { return kFormats; }

CLI::Option* AddOutputFile(CLI::App& app, Output& output) {
  CLI::Option* file = app.add_option("-o,--output", output.file, "Write to this file")->type_name("FILE");
  app.add_option("-t,--to", output.format, "Format, if the extension of the output does not tell: " + FormatNames())
      ->type_name("FORMAT")
      ->check([](const std::string& name) {
        return FormatNamed(name) ? "" : "no format " + name + ", but there are " + FormatNames();
      });
  app.add_flag("-f,--force", output.force, "Overwrite existing files");
  return file;
}

void AddOutput(CLI::App& app, Output& output) {
  CLI::Option* file = AddOutputFile(app, output);
  app.add_option("-d,--dir", output.folder, "Write into this folder, which is made if need be")
      ->type_name("DIR")
      ->excludes(file);
}

const Format* FormatOf(const CLI::App& app, const Output& output) {
  const std::string extension = fs::path(output.file).extension().string();
  const std::string name = !output.format.empty() ? output.format : extension.substr(extension.empty() ? 0 : 1);
  const Format* format = FormatNamed(name);
  if (!format) Complain(app.get_name() + ": name a format by --to or by the extension of the output");
  return format;
}

Problem Save(const PrnType& record, const std::string& source, int number, const Format& format, Output& output) {
  if (Problem problem = CannotHold(format, record); !problem.empty()) return problem;
  std::error_code error;
  if (!output.folder.empty()) fs::create_directories(output.folder, error);
  fs::path target = TargetOf(output, source, number, format);
  if (Problem problem = CannotReplace(target, output); !problem.empty()) return problem;
  target = Resolved(target);
  decltype(output.written) made = {{target, source}};  // memory runs out here, not when the file is there
  Problem problem = PendingFile(target).Complete(record, format);
  if (problem.empty()) output.written.merge(made);
  return problem;
}

void HandleInterrupts() {
  for (const int signal : {SIGINT, SIGTERM})
    if (std::signal(signal, SIG_IGN) != SIG_IGN) std::signal(signal, RemoveUnfinished);
}

}  // namespace kem::tool
