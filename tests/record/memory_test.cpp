// Lets the memory run out at every allocation of everything that kem does, one after the other.
#include "support/memory.h"

#include <cstring>
#include <iostream>
#include <optional>
#include <utility>

#include "kem/dataset.h"
#include "support/files.h"
#include "support/operations.h"
#ifdef KEM_FAILING_MEMORY
#include "support/command.h"
#endif

using namespace kem::test;

namespace {

// Reports and messages of readers go nowhere.
class Silence : public std::streambuf {
 public:
  ~Silence() override { std::cout.rdbuf(before_); }

 private:
  int overflow(int c) override { return c; }
  std::streambuf* before_ = std::cout.rdbuf(this);
};

bool failed = false;  // whether an allocation did in the last run

// Runs with the n-th allocation failing. Returns whether that ended in bad_alloc.
template <class Run>
bool Throws(long n, Run run) {
  const Silence silence;
  memory.left = n;
  bool thrown = false;
  try {
    run();
  } catch (const std::bad_alloc&) {
    thrown = true;
  }
  failed = std::exchange(memory.left, -1) < 0;
  return thrown;
}

// Tries with the first allocation failing, then with the second and so on, until there are no more. A trial tells
// whether it came out well; whatever it took, it must have released.
template <class Trial>
void FailEach(Trial trial) {
  failed = true;
  for (long n = 0; failed; ++n) {
    const long live = memory.live;
    const bool well = trial(n);
    const long lost = memory.live - live;
    CAPTURE(n);
    CHECK(well);
    CHECK(lost == 0);
  }
}

bool IsEmpty(const PrnType& r) { return !r && r.nX == 0 && r.nY == 0; }

bool Same(const PrnType& a, const PrnType& b) {
  return SameData(a, b) && std::memcmp(a.headerArea, b.headerArea, sizeof a.headerArea) == 0 &&
         std::string_view(a.fileName) == b.fileName;
}

}  // namespace

TEST_CASE("memory: an operation that it runs out for leaves its record as it was, or empty") {
  Rng rng(kSeed);
  for (const int type : {AllocY, AllocXY, AllocZ, AllocXZ, AllocYZ, AllocXYZ}) {
    const PrnType source = RandomRecord(rng, type, 20, 17);
    for (const Operation& operation : kOperations) {
      CAPTURE(type);
      CAPTURE(&operation - kOperations);
      PrnType first(source);
      Throws(-1, [&] { operation(first); });  // makes what stays until the end of the program
      FailEach([&](long n) {
        PrnType record(source);
        const bool thrown = Throws(n, [&] { operation(record); });
        return !thrown || Same(record, source) || IsEmpty(record);
      });
    }
  }
}

TEST_CASE("memory: constructors that it runs out for leave nothing") {
  for (const int type : {AllocY, AllocXY, AllocZ, AllocXZ, AllocYZ, AllocXYZ})
    FailEach([type](long n) {
      Throws(n, [type] { const PrnType record(static_cast<AllocType>(type), 3, 4); });
      return true;
    });
}

// What a file holds as a dataset; nothing where that is refused.
std::optional<std::string> BytesOf(const std::string& path) try {
  const kem::Dataset dataset = kem::Open(path);
  const auto bytes = dataset.values.Bytes();
  return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
} catch (const kem::Error&) {
  return {};
}

TEST_CASE("memory: a dataset that it runs out for is refused") {
  const TempFolder folder;
  for (const SmallFile& file : SmallFiles()) {
    CAPTURE(file.name);
    const std::string path = folder.Write(file.name, file.bytes);
    if (!file.partner.empty()) folder.Write(file.partner, file.partnerBytes);
    const auto whole = BytesOf(path);
    FailEach([&](long n) {
      std::optional<std::string> opened;
      return Throws(n, [&] { opened = BytesOf(path); }) || !opened || opened == whole;
    });
  }
}

TEST_CASE("memory: a load that it runs out for leaves an empty record") {
  const TempFolder folder;
  for (const SmallFile& file : SmallFiles()) {
    CAPTURE(file.name);
    std::string path = folder.Write(file.name, file.bytes);
    if (!file.partner.empty()) folder.Write(file.partner, file.partnerBytes);
    const auto reset = [] { ReadNextFlag = 0; };
    reset();
    PrnType whole;
    Throws(-1, [&] { whole.ReadFile(path.c_str(), 0); });
    REQUIRE(whole.allocType != AllocNone);
    // Columns of text and DSW files are refused when there is no memory for a working buffer.
    const bool refuses = file.name == "a.prn" || file.name == "a.nxy" || file.name == "a.dsw";
    const auto settled = [&](bool thrown, const PrnType& record) {
      reset();
      return thrown ? IsEmpty(record) : Same(record, whole) || (refuses && !record);
    };
    FailEach([&](long n) {
      PrnType record;
      const bool thrown = Throws(n, [&] { record.ReadFile(path.c_str(), 0); });
      return settled(thrown, record);
    });
    FailEach([&](long n) {
      Throws(n, [&] { const PrnType record(path.c_str(), 0); });
      reset();
      return true;
    });
    FailEach([&](long n) {
      const bool thrown = Throws(n, [&] { KemOpenFile(path.data(), 0); });
      const bool well = prn && settled(thrown, *prn);
      if (prn) prn->DeAllocate();
      return well;
    });
    FailEach([&](long n) {
      PrnType record;
      const bool thrown = Throws(n, [&] {
        (void)KemFormatName(path.c_str());
        std::ifstream in(path, std::ios::binary);
        int count = 0;
        // Readers that take memory while the record has its arrays already.
        if (file.name == "a.DSC") record.ReadBES3T(path.c_str(), count, 0);
        if (file.name == "a.dat") record.ReadOMA(in, count, 0);
        if (file.name == "a.dx") record.ReadDX(in);
      });
      reset();
      return !thrown || IsEmpty(record);
    });
  }
}

#ifdef KEM_FAILING_MEMORY
TEST_CASE("memory: the command that it runs out for says so and leaves no file") {
  for (const std::string arguments : {"convert raman.prn -o out.b2d", "info --json raman.prn streak.p3d",
                                      "calc \"raman.prn - raman_background.prn\" -o out.dx"}) {
    CAPTURE(arguments);
    const TempFolder folder;
    const TempFolder elsewhere;
    const std::string left = elsewhere.Path("left");
    for (const char* name : {"raman.prn", "raman_background.prn", "streak.p3d"})
      fs::copy(Example(name), folder.Path(name));
    const auto inputs = Names(folder.Path(""));
    const auto run = [&](long n) {
      return Kem(arguments, "cd \"" + folder.Path("") + "\" && KEM_ALLOCATIONS=" + std::to_string(n) +
                                " KEM_ALLOCATIONS_LEFT=\"" + left + "\" LD_PRELOAD=\"" + KEM_FAILING_MEMORY +
                                "\" ");
    };
    constexpr long kEnough = 100'000'000;
    const Result whole = run(kEnough);
    REQUIRE(whole.status == 0);
    const long count = kEnough - std::stol(ReadBytes(left));
    const auto made = Names(folder.Path(""));
    // Most allocations build the help, so all those of the work itself are tried, at the end, and some before.
    for (long n = 0; n<count; n += n> count - 200 ? 1 : std::max(count / 50, 1L)) {
      CAPTURE(n);
      for (const std::string& name : made)
        if (!inputs.contains(name)) fs::remove(folder.Path(name));
      const Result result = run(n);
      CAPTURE(result.err);
      if (result.status == 0) {
        CHECK(Names(folder.Path("")) == made);
        CHECK(result.out == whole.out);
      } else {
        CHECK(result.status == 1);
        CHECK(std::count(result.err.begin(), result.err.end(), '\n') == 1);
        CHECK(result.err.starts_with("kem: "));
        CHECK(Names(folder.Path("")) == inputs);
      }
    }
  }
}
#endif
