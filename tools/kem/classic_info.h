// The report and the JSON document of a record in the classic reading.
#pragma once

#include "input.h"
#include "json.h"

namespace kem::tool {

// The library's report, see PrnType::PrintLog, with control characters escaped.
void PrintRecord(const PrnType& record, int level);
Json DescribeRecord(const Input& input);
// Returns whether all items that the file announces are there.
bool PrintClassicItems(const std::string& file);

}  // namespace kem::tool
