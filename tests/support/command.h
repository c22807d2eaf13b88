// Runs the built command as a process.
#pragma once

#include <cstdlib>
#include <set>

#include "support/support.h"

namespace kem::test {

namespace fs = std::filesystem;

struct Result {
  int status = 0;
  std::string out;
  std::string err;
};

inline std::string Text(const std::string& path) {
  std::string text = ReadBytes(path);
  std::erase(text, '\r');
  return text;
}

// Runs the command line behind a shell's `before`.
inline Result Kem(const std::string& arguments, const std::string& before = "") {
  const TempFolder folder;
  const std::string out = folder.Path("out");
  const std::string err = folder.Path("err");
  const std::string program = fs::absolute(KEM_COMMAND).make_preferred().string();
  std::string line = before + '"' + program + "\" " + arguments + " >\"" + out + "\" 2>\"" + err + '"';
#ifdef _WIN32
  line = '"' + line + '"';  // its shell takes the outermost quotes away
  int status = std::system(line.c_str());
  // Under Wine on a busy machine a program now and then cannot be started: kem itself has no such status.
  for (int again = 0; again < 3 && (status == -1 || status == 9009); ++again) status = std::system(line.c_str());
#else
  const int status = WEXITSTATUS(std::system(line.c_str()));
#endif
  return {status, Text(out), Text(err)};
}

inline std::string Quoted(const std::string& path) { return '"' + path + "\" "; }

inline std::string Example(const char* name) { return std::string(KEM_EXAMPLES) + '/' + name; }

inline std::set<std::string> Names(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
  return names;
}

}  // namespace kem::test
