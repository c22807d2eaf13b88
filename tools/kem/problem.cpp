#include "problem.h"

#include "kem/dataset.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// The sentence of an error without the path in front of it.
Problem SentenceOf(const Error& error, const fs::path& path) {
  const std::string sentence = error.what();
  const auto name = path.u8string();
  const std::size_t front = name.size() + 2;
  return sentence.size() > front && sentence.compare(0, name.size(), {name.begin(), name.end()}) == 0
             ? sentence.substr(front)
             : sentence;
}

}  // namespace

Problem Attempted(const fs::path& path, const std::function<void()>& function) try {
  function();
  return {};
} catch (const Error& error) {
  return SentenceOf(error, path);
}

}  // namespace kem::tool
