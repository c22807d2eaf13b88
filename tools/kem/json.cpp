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

const char* NameOf(Severity severity) {
  constexpr const char* kNames[] = {"remark", "doubtful", "damaged"};
  return kNames[static_cast<std::size_t>(severity)];
}

Json ToJson(const std::vector<Parameter>& parameters) {
  Json list = Json::array();
  for (const Parameter& p : parameters) {
    Json one = {{"section", p.section}, {"key", p.key}, {"text", p.text}};
    if (p.number) one["number"] = *p.number;
    if (!p.unit.empty()) one["unit"] = p.unit;
    list.push_back(std::move(one));
  }
  return list;
}

Json ToJson(const std::vector<Note>& notes) {
  Json list = Json::array();
  for (const Note& note : notes) list.push_back({{"severity", NameOf(note.severity)}, {"text", note.text}});
  return list;
}

}  // namespace kem::tool
