#include "document.h"

#include "classic_info.h"
#include "describe.h"
#include "text.h"

namespace kem::tool {
namespace {

Json ToJson(const Axis& axis) {
  Json json = {{"name", axis.name},          {"unit", axis.unit},     {"points", axis.Count()},
               {"stored", !axis.IsLinear()}, {"first", axis.Start()}, {"last", axis.End()}};
  if (axis.IsLinear()) json["step"] = axis.Step();
  return json;
}

}  // namespace

Json Describe(const Input& input) {
  if (!input.dataset) return DescribeRecord(input);
  const Dataset& d = *input.dataset;
  const Range range(d.values);
  Json json = {{"file", Utf8(input.file)}, {"format", d.format},     {"item", d.item},
               {"items", d.items},         {"itemName", d.itemName}, {"title", d.title}};
  json["companions"] = Json::array();
  for (const auto& companion : d.companions) json["companions"].push_back(Utf8(companion.string()));
  json["axes"] = Json::array();
  for (const Axis& axis : d.axes) json["axes"].push_back(ToJson(axis));
  json["values"] = {{"name", d.name},
                    {"unit", d.unit},
                    {"type", kem::NameOf(d.values.Type())},
                    {"complex", d.values.IsComplex()},
                    {"count", d.values.Count()},
                    {"min", range.min},
                    {"max", range.max}};
  json["parameters"] = tool::ToJson(d.parameters);
  json["notes"] = tool::ToJson(d.notes);
  return json;
}

}  // namespace kem::tool
