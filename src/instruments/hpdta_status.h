// The status text of HPDTA images, which the record and the dataset are made from.
#pragma once

#include <functional>
#include <string_view>

namespace kem {

// Fields of the list that goes by position; free text follows them.
inline constexpr int kHPDTAStatusFields = 83;

// Visits the keys of a status text that names them: "[Section],Key=value,Key="quoted value",[Section] ...".
void WalkHPDTAStatus(
    std::string_view text,
    const std::function<void(std::string_view section, std::string_view key, std::string_view value)>& visit);

}  // namespace kem
