// Where the library finds a file that the user named.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kem.h"
#include "temporary_file.h"

namespace kem::tool {

// Stands for standard input, and as an output for standard output.
inline constexpr std::string_view kStandard = "-";

// The library takes names of up to 131 characters. A file with a longer one has a short one while this lives, and
// so have its neighbours that differ in their extension only. Standard input is read once, to its end, and kept.
class Source {
 public:
  // Whether longer names will do as they are.
  enum class Names { Short, Any };
  explicit Source(const std::string& typed, Names names = Names::Short);

  // Why the library should not be asked for it.
  const Problem& WhyNot() const { return problem_; }
  // What to ask the library for.
  const std::string& Name() const { return name_; }
  // Gives a loaded record the name that was typed, or as much of its end as a record holds.
  void Restore(PrnType& record) const;

 private:
  void Link();

  std::string typed_;
  std::string name_;
  Problem problem_;
  Removed folder_;
  std::vector<Removed> links_;
};

}  // namespace kem::tool
