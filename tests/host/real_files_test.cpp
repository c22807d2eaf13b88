// Real files of instruments, read into records, against a listing of what they hold. The numbers of the listing
// agree with the facts that come with the files.
#include "support/loads.h"

using namespace kem::test;

namespace {

double SumOf(const PrnType& r) {
  if (!r.Is3D()) return Sum({r.yArray, static_cast<std::size_t>(r.nY)});
  double sum = 0;
  for (int i = 0; i < r.nX; ++i) sum += Sum({r.zArray[i], static_cast<std::size_t>(r.nY)});
  return sum;
}

// "esp/winepr.spc 0": a file and the index of an item.
std::string Described(const std::string& file) {
  const auto blank = file.rfind(' ');
  PrnType r;
  const std::string messages = Printed(
      [&] { r.ReadFile((SampleFolder() + '/' + file.substr(0, blank)).c_str(), std::stoi(file.substr(blank))); });
  std::ostringstream text;
  text.precision(15);
  text << "# " << file << '\n' << messages << Facts(r);
  if (!!r)
    text << " sum " << SumOf(r) << " factors" << Numbers(std::array{ReadXFactor, ReadYFactor}) << '\n'
         << HeaderOf(r);
  return text.str() + '\n';
}

}  // namespace

TEST_CASE("real files: records hold what the listing says") {
  if (!HaveSamples()) return;
  std::istringstream approved(ReadLines(std::string(KEM_TESTS) + "/host/real_files.txt"));
  std::string listing;
  for (std::string line; std::getline(approved, line);)
    if (line.starts_with("# ")) listing += Described(line.substr(2));
  REQUIRE(!listing.empty());
  CheckApproved("host/real_files.txt", listing);
}
