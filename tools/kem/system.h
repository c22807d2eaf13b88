// What differs between systems: names of files, and the terminal. kem holds names in UTF-8 everywhere.
#pragma once

#include <filesystem>
#include <memory>
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

// Lets a Windows console show UTF-8 while what it returns lives.
std::shared_ptr<void> Utf8Console();

}  // namespace kem::tool
