// Numbers as JSON.
#pragma once

#include <nlohmann/json.hpp>

namespace kem::tool {

using Json = nlohmann::ordered_json;

// A float in as few digits as it needs; what is not finite becomes null when it is printed.
Json Number(float value);

}  // namespace kem::tool
