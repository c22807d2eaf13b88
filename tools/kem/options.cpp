#include "options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>

namespace kem::tool {
namespace {

bool IsWholeNumber(const std::string& text, int least, int most) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end && least <= number && number <= most;
}

void AlsoNeeded(CLI::Option* option, const CLI::Option* other) {
  option->description(option->get_description() + " (this or " + other->get_name() + " is required)");
}

}  // namespace

void RequireAny(CLI::App& app, CLI::Option* first, CLI::Option* second) {
  AlsoNeeded(first, second);
  AlsoNeeded(second, first);
  app.parse_complete_callback([first, second] {
    if (first->count() + second->count() == 0)
      throw CLI::RequiredError(first->get_name() + " or " + second->get_name());
  });
}

void RequireOne(CLI::App& app, CLI::Option* first, CLI::Option* second) {
  first->excludes(second);
  RequireAny(app, first, second);
}

CLI::Option* AddItem(CLI::App& app, int& item) {
  return app.add_option("-i,--item", item, "Item of a file that holds several, counted from 1")
      ->type_name("N")
      ->check(WholeNumber(1, 1000000));
}

float NumberIn(const std::string& text) {
  char* end = nullptr;
  const float number = std::strtof(text.c_str(), &end);
  return !text.empty() && *end == '\0' ? number : std::nanf("");
}

CLI::Validator Needed(const std::string& what, const std::function<bool(const std::string&)>& holds) {
  return {[what, holds](std::string& value) { return holds(value) ? "" : what + " is needed, not " + value; }, ""};
}

CLI::Validator WholeNumber(int least, int most) {
  return Needed("a whole number from " + std::to_string(least) + " to " + std::to_string(most),
                [=](const std::string& text) { return IsWholeNumber(text, least, most); });
}

CLI::Validator FiniteNumber() {
  return Needed("a finite number", [](const std::string& text) { return std::isfinite(NumberIn(text)); });
}

CLI::Validator BoundNumber() {
  return Needed("a number", [](const std::string& text) { return !std::isnan(NumberIn(text)); });
}

CLI::Validator OneOf(const std::vector<std::string>& words) {
  return Needed("one of " + CLI::detail::join(words, ", "),
                [words](const std::string& text) {
                  return std::find(words.begin(), words.end(), text) != words.end();
                })
      .name(CLI::detail::join(words, " "));
}

std::string TakesMore(const CLI::Option& option) {
  constexpr const char* kCounts[] = {"a value", "two numbers", "three numbers", "four numbers"};
  const int last = std::clamp(option.get_items_expected_min(), 1, static_cast<int>(std::size(kCounts))) - 1;
  return option.get_name() + " takes " + kCounts[last];
}

}  // namespace kem::tool
