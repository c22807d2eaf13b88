// Numbers, parameters and notes as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include "kem/dataset.h"

namespace kem::tool {

using Json = nlohmann::ordered_json;

// A number in as few digits as it needs; what is not finite becomes null when it is printed.
Json Number(float value);

Json ToJson(const std::vector<Parameter>& parameters);
Json ToJson(const std::vector<Note>& notes);

// "remark", "doubtful" or "damaged".
const char* NameOf(Severity severity);

}  // namespace kem::tool
