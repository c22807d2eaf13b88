// Every real file against a listing of what it holds: counts, axis ends, values to the last bit, units, some
// parameters, notes. The numbers of the listing agree with the facts that come with the files.
#include <cinttypes>
#include <cstdio>
#include <iostream>

#include "support/datasets.h"

using namespace kem;
using namespace kem::test;

namespace {

std::string Number(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

// A sum in the order of the values and a checksum of their bytes tell any change.
std::string Facts(const Dataset& d) {
  double sum = 0;
  std::uint64_t bits = 1469598103934665603u;
  for (std::size_t k = 0; k < d.values.Count(); ++k) sum += d.values.Real(k);
  for (const std::byte b : d.values.Bytes()) bits = (bits ^ std::to_integer<std::uint64_t>(b)) * 1099511628211u;
  char sign[24];
  std::snprintf(sign, sizeof sign, "%016" PRIx64, bits);
  return std::to_string(d.values.Count()) + " sum " + Number(sum) + " bits " + sign;
}

std::string Described(const std::string& path, int item) {
  const Dataset d = Open(path, item);
  std::string text = Listing(d, 2) + "  " + Facts(d) + "; " + std::to_string(d.parameters.size()) + " parameters\n";
  for (const Axis& axis : d.axes) text += "  " + Number(axis.Start()) + " to " + Number(axis.End()) + '\n';
  return text;
}

// At most three items of a file.
std::string Described(const std::string& name) {
  constexpr std::size_t kMost = 3;
  const std::string path = SampleFolder() + '/' + name;
  std::string text = "# " + name + '\n';
  const std::string refusal = Refusal([&] {
    const std::size_t items = Items(path).size();
    for (std::size_t k = 1; k <= std::min(items, kMost); ++k) text += Described(path, static_cast<int>(k));
  });
  return refusal == "nothing is wrong" ? text : text + "refused: " + refusal + '\n';
}

}  // namespace

TEST_CASE("samples: every real file holds what the listing says") {
  if (!HaveSamples()) return;
  const std::string approved = ReadLines(KEM_TESTS "/dataset/samples.txt");
  std::string listing;
  for (std::size_t at = approved.find("# "); at != approved.npos; at = approved.find("\n# ", at)) {
    at += approved[at] == '\n' ? 1 : 0;
    listing += Described(approved.substr(at + 2, approved.find('\n', at) - at - 2));
  }
  REQUIRE(!listing.empty());
  CheckApproved("dataset/samples.txt", listing);
}
