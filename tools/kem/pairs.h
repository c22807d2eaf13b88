// Files that belong together: formats whose data come in two files of one name, and axes beside them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kem::tool {

// Each pair once: without the partners of files that come earlier, and without the axes of a descriptor that is
// among the files too.
std::vector<std::string> EachPairOnce(const std::vector<std::string>& files);

// The name by which the library opens a file: that of the parameter file beside it where the library does not know
// the extension of a value file in this spelling.
std::string NameToOpen(const std::string& file);

// Whether a format, as the library calls it, comes in pairs.
bool IsPair(std::string_view format);

struct Partner {
  std::string file;  // as it is spelled in the folder, or as it should be when it is missing
  bool exists = false;
  bool holdsParameters = false;
};

// The other file of the pair that a file belongs to; without a name when it belongs to none.
Partner PartnerOf(const std::string& file);

}  // namespace kem::tool
