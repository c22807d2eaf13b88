// Files that belong together: where the other one is.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace kem::load {

// A name as the system takes it. Under Windows names are UTF-8, whatever the code page of the host, and one that
// is not UTF-8 is taken in that code page.
std::filesystem::path PathOf(std::string_view name);

// Opens a file for reading. A folder opens too, but cannot be read, and counts as no file; so does a pipe, for
// whose writer one might wait for ever. Success clears what errno says of other spellings that were tried.
bool OpenForReading(std::ifstream& in, const std::string& name);

// The name up to its last dot, or all of it.
std::string_view BaseOf(std::string_view name);

// The file that belongs to another: its name with an extension. Those made under Windows may be spelled either
// way. In this order: the extension as given, in the case of the name's own, or all in capitals; else a file of the
// folder whose name differs in case only, one that starts like the base first, then in alphabetical order; else
// the first spelling, of a file that does not exist.
std::string PartnerOf(std::string_view name, std::string_view extension);

}  // namespace kem::load
