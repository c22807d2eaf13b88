// What a file holds, as a JSON document.
#pragma once

#include "input.h"
#include "json.h"

namespace kem::tool {

// The document of kem info.
Json Describe(const Input& input);

}  // namespace kem::tool
