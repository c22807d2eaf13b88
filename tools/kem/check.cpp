// kem check, kem identify and kem formats: what is whole, what is what, what is known.
#include <algorithm>
#include <iostream>
#include <memory>

#include "command.h"
#include "format.h"
#include "input.h"
#include "json.h"
#include "options.h"
#include "source.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

struct Options {
  FileList files;
  bool json = false;
};

void AddJson(CLI::App& app, bool& json) { app.add_flag("-j,--json", json, "Print one JSON document"); }

// ------------------------------------------------------------ check

// What an item suffers from: its notes, but not that it has neighbours.
std::vector<Note> Faults(const Dataset& d) {
  std::vector<Note> faults;
  std::copy_if(d.notes.begin(), d.notes.end(), std::back_inserter(faults),
               [](const Note& note) { return note.severity != Severity::Remark; });
  return faults;
}

struct Checked {
  Json items = Json::array();
  bool readable = true;
  bool damaged = false;
};

void PrintFaults(const std::string& file, const Input& input, const std::vector<Note>& faults) {
  const std::string item = input.IsOneOfSeveral() ? " item " + std::to_string(input.item) : "";
  for (const Note& fault : faults)
    std::cout << Printable{file} << item << ": " << NameOf(fault.severity) << ": " << Printable{fault.text} << '\n';
}

Checked Check(const std::string& file, bool print) {
  Checked checked;
  OpenItems(file, [&](const Input& input) {
    std::vector<Note> faults;
    if (input.dataset) {
      faults = Faults(*input.dataset);
    } else {
      checked.readable = false;
      NoProblem(file, input.problem);
    }
    if (print) PrintFaults(file, input, faults);
    checked.damaged |= std::any_of(faults.begin(), faults.end(),
                                   [](const Note& note) { return note.severity == Severity::Damaged; });
    Json one = {{"item", input.item}, {"name", input.name}, {"notes", ToJson(faults)}};
    if (!input.problem.empty()) one["error"] = input.problem;
    checked.items.push_back(std::move(one));
  });
  return checked;
}

int CheckFiles(const Options& options) {
  Json document = Json::array();
  bool damaged = false;
  const int status = EachFile(options.files, {}, [&](const std::string& file) {
    Checked checked = Check(file, !options.json);
    damaged |= checked.damaged;
    const char* state = !checked.readable ? "unreadable" : checked.damaged ? "damaged" : "whole";
    if (options.json)
      document.push_back({{"file", Utf8(file)}, {"state", state}, {"items", std::move(checked.items)}});
    return checked.readable;
  });
  if (options.json) std::cout << document.dump(2) << '\n';
  return status != 0 ? status : damaged ? kDamaged : 0;
}

// ------------------------------------------------------------ identify

int IdentifyFiles(const Options& options) {
  Json document = Json::array();
  const int status = EachFile(options.files, {}, [&](const std::string& file) {
    const Source source(file, Source::Names::Any);
    Identity identity;
    Problem problem = source.WhyNot();
    if (problem.empty())
      problem = Attempted(PathOf(source.Name()), [&] { identity = Identify(PathOf(source.Name())); });
    if (!NoProblem(file, problem)) return false;
    if (options.json)
      document.push_back(
          {{"file", Utf8(file)}, {"format", identity.format}, {"evidence", Utf8(identity.evidence)}});
    else
      std::cout << Printable{file} << ": " << identity.format << " (" << Printable{identity.evidence} << ")\n";
    return true;
  });
  if (options.json) std::cout << document.dump(2) << '\n';
  return status;
}

// ------------------------------------------------------------ formats

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

int PrintFormats(bool json) {
  Json read = Json::array();
  for (const FormatInfo& format : kem::Formats())
    read.push_back({{"name", format.name}, {"extensions", format.extensions}});
  Json written = Json::array();
  for (const Format& format : tool::Formats()) written.push_back({{"name", format.name}, {"what", format.what}});
  if (json) {
    std::cout << Json{{"read", read}, {"written", written}}.dump(2) << '\n';
    return 0;
  }
  std::cout << "read\n";
  for (const FormatInfo& format : kem::Formats()) {
    const std::string extensions = Joined(format.extensions);
    std::cout << "  " << format.name << (extensions.empty() ? "" : "  ") << extensions << '\n';
  }
  std::cout << "written\n";
  for (const Format& format : tool::Formats()) std::cout << "  " << format.name << "  " << format.what << '\n';
  return 0;
}

Run DefineOn(CLI::App& app, int (*run)(const Options&)) {
  auto options = std::make_shared<Options>();
  AddFiles(app, options->files);
  AddJson(app, options->json);
  return [options, run] { return run(*options); };
}

}  // namespace

Run DefineCheck(CLI::App& app) { return DefineOn(app, CheckFiles); }
Run DefineIdentify(CLI::App& app) { return DefineOn(app, IdentifyFiles); }

Run DefineFormats(CLI::App& app) {
  auto json = std::make_shared<bool>(false);
  AddJson(app, *json);
  return [json] { return PrintFormats(*json); };
}

}  // namespace kem::tool
