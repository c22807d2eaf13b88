// Files and folders that must not outlive the program, however it ends.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "each_file.h"

namespace kem::tool {

// Cleans up when a signal ends the program.
void HandleInterrupts();

// While it lives and is asked to, the first Ctrl-C is only noted, so that what has been begun can be finished.
class InterruptsWait {
 public:
  explicit InterruptsWait(bool wait);
  ~InterruptsWait();
  InterruptsWait(const InterruptsWait&) = delete;
  InterruptsWait& operator=(const InterruptsWait&) = delete;
};
bool Interrupted();

// A file or an empty folder that is removed with its owner, or by a signal.
struct Removal {
  void operator()(char* path) const;
};
using Removed = std::unique_ptr<char, Removal>;
Removed RemovedLater(const std::filesystem::path& path);

// Where temporary files of the program belong, and a new folder in there that is closed to other users; null and
// the reason when there is none.
std::filesystem::path TemporaryFolder();
Removed NewTemporaryFolder(Problem& problem);

// A new file in a folder, under a name of its own and closed to other users. It is opened once, and whoever takes a
// name is given one of the open file: another file that comes to stand under its path is never touched.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& folder);
  ~TemporaryFile() { Close(); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Why there is no such file.
  const Problem& WhyNot() const { return problem_; }
  // A name that opens the file.
  std::string Name() const;
  // Makes it the file `target`. One that is there already is replaced, and its mode kept, or it is left alone.
  Problem MoveTo(const std::filesystem::path& target, bool replace);

 private:
  void Close();

  int file_ = -1;
  Problem problem_;
  Removed path_;
};

// Keeps the system from translating line ends.
void SetBinary(std::FILE* stream);

}  // namespace kem::tool
