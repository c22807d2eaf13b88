// Completion of command lines in bash, zsh and fish, made of what the commands say of their options.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace kem::tool {

const std::vector<std::string>& Shells();

// What a shell has to read to complete command lines of kem.
std::string CompletionFor(const std::string& shell, CLI::App& root);

}  // namespace kem::tool
