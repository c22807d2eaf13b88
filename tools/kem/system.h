// What differs between systems: names of files, and the terminal. kem holds names in UTF-8 everywhere.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kem::tool {

// A name as the system takes it.
std::filesystem::path PathOf(const std::string& name);

// Whether a name stands for the files that match it. Only under Windows, whose shell leaves `*` and `?` to the
// programs.
bool IsPattern(const std::string& name);

// The names with every pattern replaced by the files that match it, in alphabetical order. A pattern that nothing
// matches stays.
std::vector<std::string> Expanded(const std::vector<std::string>& names);

// Lets a Windows console show UTF-8 while it lives.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned before_ = 0;
};

}  // namespace kem::tool
