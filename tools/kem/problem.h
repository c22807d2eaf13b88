// What is wrong, in words.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace kem::tool {

// What is wrong, as the end of a sentence that begins with a file's name; empty when nothing is.
using Problem = std::string;

// Runs a function; returns the sentence of an error that it throws, without the path in front of it.
Problem Attempted(const std::filesystem::path& path, const std::function<void()>& function);

}  // namespace kem::tool
