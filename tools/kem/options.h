// Options that commands share, and checks of what stands behind an option.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace kem::tool {

CLI::Option* AddItem(CLI::App& app, int& item);

// Make one of two options required; the second refuses both together.
void RequireAny(CLI::App& app, CLI::Option* first, CLI::Option* second);
void RequireOne(CLI::App& app, CLI::Option* first, CLI::Option* second);

// Not a number unless the whole text is one.
float NumberIn(const std::string& text);

// Checks with sentences of one kind: "a whole number from 1 to 5 is needed, not 9".
CLI::Validator Needed(const std::string& what, const std::function<bool(const std::string&)>& holds);
CLI::Validator WholeNumber(int least, int most);
CLI::Validator FiniteNumber();
CLI::Validator BoundNumber();  // infinite where an axis is to have no bound
// Its name has the words, for completion.
CLI::Validator OneOf(const std::vector<std::string>& words);

// What to say about an option that has too few values.
std::string TakesMore(const CLI::Option& option);

}  // namespace kem::tool
