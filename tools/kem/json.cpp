#include "json.h"

#include "portable.h"
#include "text.h"

namespace kem::tool {

Json Number(float value) {
  const std::string digits = Shortest(value);
  double wide = value;
  portable::FromChars(digits.data(), digits.data() + digits.size(), wide);
  return wide;
}

}  // namespace kem::tool
