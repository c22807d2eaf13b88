// Files that belong together: where the other one is.
#pragma once

#include <string>
#include <string_view>

namespace kem::load {

// Whether a file can be opened for reading.
bool IsReadable(const std::string& name);

// The name itself when it can be opened; else a name in its folder that differs from it in case only, the
// first in alphabetical order; else the name itself. Descriptor and value files made under Windows may be
// spelled either way.
std::string AnyCase(const std::string& name);

// The name up to its last dot, or all of it.
std::string_view BaseOf(std::string_view name);

}  // namespace kem::load
