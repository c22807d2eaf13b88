// Lets the memory run out at every allocation of everything that kem does, one after the other.
#include "support/memory.h"

#include <cstring>
#include <iostream>
#include <utility>

#include "support/files.h"
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

// ------------------------------------------------------------ operations

using Operation = void (*)(PrnType& record);

// Curves or grids that differ from a record in their axes.
const PrnType& Other(const PrnType& r) {
  static Rng rng(kSeed);
  static const PrnType curve = RandomRecord(rng, AllocXY, 15, 15);
  static const PrnType grid = RandomRecord(rng, AllocXYZ, 15, 5);
  return r.Is3D() ? grid : curve;
}

void WriteAll(PrnType& r) {
  static const TempFolder folder;
  static std::string path = folder.Path("written");
  for (const auto write : {&PrnType::WriteXYPrn, &PrnType::WriteCvt, &PrnType::WriteDX, &PrnType::WriteP2D,
                           &PrnType::WriteB2D, &PrnType::WriteP3D, &PrnType::WriteB3D})
    (r.*write)(path.data());
}

void Report(PrnType& r) {
  char text[2000];
  r.CommentBlock(text, sizeof text);
  r.GetLabel(text);
  r.PrintLog(5);
}

float some[] = {-3, 0, 1, 7};
char times[] = "*";

constexpr Operation kOperations[] = {
    [](PrnType& r) { PrnType copy(r); },
    [](PrnType& r) { r = Other(r); },
    [](PrnType& r) { r = PrnType(Other(r)); },
    [](PrnType& r) { r.CopyData(Other(r)); },
    [](PrnType& r) {
      r.DeAllocate();
      r.Allocate(AllocXYZ, 3, 4);
    },
    [](PrnType& r) { (void)(r + r), (void)(r - 2), (void)(r & r), (void)-r; },
    [](PrnType& r) { (void)(r * Other(r)); },
    [](PrnType& r) { (void)r.Exp(), (void)r.Set(2), (void)r.Inv(); },
    [](PrnType& r) { (void)r.AxisOp('x', times, 2), (void)r.AxisOp('y', times, 2); },
    [](PrnType& r) { (void)(r.SameAxes(Other(r)) + r.XAxisEqArray(some, 4) + r.YAxisEqArray(some, 4)); },
    [](PrnType& r) {
      float* values = nullptr;
      int count = 0;
      for (const auto get : {&PrnType::ArrayFromXAxis, &PrnType::ArrayFromYAxis}) {
        (r.*get)(&values, &count);
        delete[] values;
      }
    },
    [](PrnType& r) { (void)(r.At(1, 1) + r.Nearest(1, 1)); },
    [](PrnType& r) { delete &r.InterpolateXY(some, 4), delete &r.InterpolateY(-2, 2, 0.5f); },
    [](PrnType& r) { delete &r.InterpolateXYZ(some, 4, some, 4), delete &r.InterpolateZ(-2, 2, 1, -2, 2, 1); },
    [](PrnType& r) { delete &r.InterpolateXZ(some, 4, -2, 2, 1), delete &r.InterpolateYZ(-2, 2, 1, some, 4); },
    [](PrnType& r) { delete &r.XSlice(-9, 9, 1), delete &r.YSlice(-9, 9, 0); },
    [](PrnType& r) { delete &r.Cut(-30, 30, -30, 30), delete &r.DeleteClosest(0, 0), delete &r.Reduce(2, 3); },
    [](PrnType& r) { delete &r.Median2D(5), delete &r.Median3D(5); },
    [](PrnType& r) { delete &r.XSmooth(5), delete &r.YSmooth(5); },
    [](PrnType& r) { delete &r.XDiff(), delete &r.YDiff(); },
    [](PrnType& r) { delete &r.IntegrateX(-9, 9), delete &r.IntegrateY(-9, 9), delete &r.RunningIntegral(); },
    [](PrnType& r) { (void)(r.Integral(-9, 9, -9, 9) + r.AbsIntegral(-9, 9, -9, 9) + r.NoiseLevel()); },
    [](PrnType& r) {
      float a = 0;
      float counts[9];
      r.Histogram(9, counts, a, a);
      r.MinMaxY(-9, 9, a, a, a, a);
      r.MinMaxZ(-9, 9, -9, 9, a, a, a, a, a, a);
    },
    [](PrnType& r) { r.SortAxes(); },
    [](PrnType& r) { r.SwapXY(); },
    [](PrnType& r) { r.SubLinBackX(r.xStart, r.xEnd); },
    [](PrnType& r) { r.SubLinBackY(r.yStart, r.yEnd); },
    [](PrnType& r) { r.Slant(r.xStart, 1, r.xEnd, 2); },
    WriteAll,
    Report,
};

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
