#include "json.h"

#include <charconv>

#include "text.h"

namespace kem::tool {

Json Number(float value) {
  const std::string digits = Shortest(value);
  double wide = value;
  std::from_chars(digits.data(), digits.data() + digits.size(), wide);
  return wide;
}

}  // namespace kem::tool
