#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <tuple>

#include "support/loads.h"

using namespace kem::test;

namespace {

// Numbers every value of a record differently.
void Number(PrnType& r, float first = 1) {
  const int xCount = r.Is3D() ? r.nX : r.nY;
  if (r.xArray)
    for (int k = 0; k < xCount; ++k) r.xArray[k] = first++;
  if (r.yArray)
    for (int k = 0; k < r.nY; ++k) r.yArray[k] = first++;
  if (r.zArray)
    for (int i = 0; i < r.nX; ++i)
      for (int j = 0; j < r.nY; ++j) r.zArray[i][j] = first++;
}

// The rule of the ranges, value by value.
void LiteralRange(const std::vector<float>& values, float& low, float& high) {
  low = high = values.empty() ? 0 : values[0];
  for (const float v : values) {
    if (v < low) low = v;
    if (v > high) high = v;
  }
}

// What the hooks of a host were called for: an extension made (+), freed (-), or copied into another (>).
std::string calls;
std::string NumberOf(void* extension) { return std::to_string(reinterpret_cast<std::intptr_t>(extension)); }

std::string Calls() { return std::exchange(calls, ""); }

}  // namespace

static_assert(offsetof(PrnType, yLabel) == offsetof(PrnType, xLabel) + 132);
static_assert(offsetof(PrnType, hama) == offsetof(PrnType, xLabel));
static_assert(offsetof(PrnType, bruker) == offsetof(PrnType, xLabel));
static_assert(offsetof(PrnType, dsw) == offsetof(PrnType, xLabel));
static_assert(offsetof(PrnType, iccdCurve) == offsetof(PrnType, zLabel));
static_assert(offsetof(PrnType, commentLines) == offsetof(PrnType, zLabel) + 132);
static_assert(offsetof(PrnType, bes3t) == offsetof(PrnType, commentLines));
static_assert(offsetof(PrnType, bes3t.bes3tSptp) == offsetof(PrnType, commentLines) + 4 * 132);
static_assert(offsetof(PrnType, oma) == offsetof(PrnType, commentLines));
static_assert(offsetof(PrnType, iccdImage) == offsetof(PrnType, commentLines));
static_assert(offsetof(PrnType, extension) >= offsetof(PrnType, xLabel) + 15 * 132);

TEST_CASE("record: every shape is made, copied and released") {
  for (const int type : {AllocNone, AllocY, AllocXY, AllocZ, AllocXZ, AllocYZ, AllocXYZ}) {
    CAPTURE(type);
    PrnType r(static_cast<AllocType>(type), 2, 3);
    Number(r);
    r.active = 1;
    std::strcpy(r.fileName, "name");
    std::strcpy(r.commentLines[11], "last");
    const char* const kFacts[] = {"none",
                                  "",
                                  "0 Y 2x2 x 0 0 1 y 0 1 1 z 0 1 = 1 2 | X|Y|",
                                  "1 XY 2x2 x 0 0 1: 1 2 y 0 1 1 z 0 1 = 3 4 | X|Y|",
                                  "2 Z 2x3 x 0 0 1 y 0 1 1 z 0 1 = 1 2 3 / 4 5 6 | X|Y|Z",
                                  "2 XZ 2x3 x 0 0 1: 1 2 y 0 1 1 z 0 1 = 3 4 5 / 6 7 8 | X|Y|Z",
                                  "2 YZ 2x3 x 0 0 1 y 0 1 1: 1 2 3 z 0 1 = 4 5 6 / 7 8 9 | X|Y|Z",
                                  "2 XYZ 2x3 x 0 0 1: 1 2 y 0 1 1: 3 4 5 z 0 1 = 6 7 8 / 9 10 11 | X|Y|Z"};
    const std::string facts = kFacts[type];
    CHECK(Facts(r) == facts);
    PrnType copy(r);
    PrnType assigned(AllocXYZ, 2, 2);
    const PrnType returned = (assigned = r);
    PrnType taken(AllocXYZ, 2, 2);
    PrnType given = (taken = PrnType(r));
    const PrnType moved(std::move(given));
    for (const PrnType* c : std::initializer_list<const PrnType*>{&copy, &assigned, &returned, &taken, &moved}) {
      CHECK(Facts(*c).starts_with(facts));  // a curve has no title along Z
      CHECK((c->active == 1 && c->nY == r.nY && c->fileType == r.fileType && std::string(c->fileName) == "name"));
      CHECK(std::string(c->commentLines[11]) == (r.Is3D() ? "last" : ""));
      if (r.Is3D()) CHECK(c->zArray[0] != r.zArray[0]);
    }
    r = copy = r;  // chained, and onto a record of the same shape
    CHECK(Facts(r) == facts);
    r.DeAllocate();
    CHECK((!r && r.nX == 0 && r.nY == 0));
  }
}

TEST_CASE("record: shapes that store nothing own nothing") {
  PrnType r(AllocXY, 2);
  r.DeAllocate();
  r.fileType = FileOMA;
  r.nX = 9;
  r.Allocate(AllocX, 5, 5);
  CHECK((r.HasX() && !r.xArray && r.nX == 9 && r.fileType == FileOMA));
  r.MinMax();
  PrnType copy(r);
  CHECK(copy.allocType == AllocX);
  r.DeAllocate();
  r.Allocate(static_cast<AllocType>(15), 2, 2);
  CHECK(r.Is3D() != 0);
  copy = PrnType(AllocXYZ, 2, 2);
  copy = r;
  CHECK(copy.allocType == 15);
  for (const void* left : {static_cast<void*>(copy.xArray), static_cast<void*>(copy.zArray)})
    CHECK(left == nullptr);
  copy.MinMax();
  copy = PrnType(AllocY, 1);  // releases no pointer that the shape only names
  CHECK(copy.nY == 1);
}

TEST_CASE("record: lengths that cannot be had end in bad_alloc, and grids of no rows exist") {
  for (const AllocType type : {AllocY, AllocXY, AllocXZ, AllocXYZ})
    CHECK_THROWS_AS(PrnType(type, -1, 3), std::bad_alloc);
  CHECK_THROWS_AS(PrnType(AllocYZ, 2, -1), std::bad_alloc);
  CHECK_THROWS_AS(PrnType(AllocZ, 2, -1), std::bad_alloc);
  PrnType r;
  CHECK_THROWS_AS(r.Allocate(AllocXYZ, 2, -1), std::bad_alloc);
  CHECK(!r);
  PrnType none(AllocZ, -2, 3);
  none.MinMax();
  CHECK((none.nX == -2 && PrnType(none).nX == -2));
  CHECK(PrnType(AllocZ, 0, -5).Is3D() != 0);
}

TEST_CASE("record: ranges follow the rule bit for bit") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  const float special[] = {0.0f, -0.0f, std::nanf(""), std::numeric_limits<float>::infinity(), -1e-45f, 1e-45f};
  for (int round = 0; round < 400; ++round) {
    CAPTURE(round);
    PrnType r(AllocXYZ, 1 + static_cast<int>(rng() % 5), 1 + static_cast<int>(rng() % 150));
    const auto value = [&] {
      if (round % 4 == 0) return rng() % 200 > 0 ? 1.0f : special[rng() % 2];  // zeros are rare
      const auto kind = rng() % 8;
      return kind < 6 ? special[kind % (1 + rng() % 6)] : static_cast<float>(static_cast<int>(rng() % 9) - 4);
    };
    std::vector<float> x, y, z;
    for (int i = 0; i < r.nX; ++i) x.push_back(r.xArray[i] = value());
    for (int j = 0; j < r.nY; ++j) y.push_back(r.yArray[j] = value());
    for (int j = 0; j < r.nY; ++j)
      for (int i = 0; i < r.nX; ++i) z.push_back(r.zArray[i][j] = value());
    r.MinMax();
    for (const auto& [values, start, end] :
         {std::tuple{x, r.xStart, r.xEnd}, std::tuple{y, r.yStart, r.yEnd}, std::tuple{z, r.zMin, r.zMax}}) {
      float low = 0, high = 0;
      LiteralRange(values, low, high);
      CHECK_BITS(start, low);
      CHECK_BITS(end, high);
    }
  }
}

TEST_CASE("record: ranges of defined axes stay, those of nothing become 0") {
  PrnType curve(AllocY, 2);
  curve.xStart = 5;
  curve.zMax = 8;
  Number(curve);
  curve.MinMax();
  CHECK((curve.xStart == 5 && curve.zMax == 0));
  PrnType uneven(AllocXY, 3);
  Number(uneven);
  uneven.nY = 2;  // each array by its own count; a copy has as many
  uneven.MinMax();
  CHECK_BITS(uneven.xEnd, 3);
  CHECK_BITS((uneven + 1).xEnd, 2);
  PrnType empty(AllocXYZ, 0, 4);
  Number(empty);
  empty.MinMax();
  CHECK((empty.xEnd == 0 && empty.zMax == 0 && empty.yEnd == 4));
}

TEST_CASE("record: a host's extension is created, copied and freed") {
  ExtensionCreateHook = [](void** e) {
    static std::intptr_t made = 0;
    *e = reinterpret_cast<void*>(++made);
    calls += "+" + NumberOf(*e);
  };
  ExtensionFreeHook = [](void** e) { calls += "-" + NumberOf(*e); };
  ExtensionCopyHook = [](void* to, void* from) { calls += " " + NumberOf(from) + ">" + NumberOf(to); };
  {
    PrnType r(AllocY, 1);
    CHECK(Calls() == "+1");
    PrnType copy(r);
    CHECK(Calls() == "+2+3 1>3");
    copy.DeAllocate();
    copy.DeAllocate();  // an empty record frees nothing
    CHECK(Calls() == "-3");
    copy = PrnType(AllocY, 1);  // two copies, each created twice, beside the temporary
    CHECK(Calls() == "+4+5 4>5+6+7 5>7-7-4");
    copy = r;
    CHECK(Calls() == "-5+8 1>8+9+10 8>10-10");
    r = PrnType(std::move(copy));
    CHECK(Calls() == "-1+11 8>11+12+13 11>13-13-8");
    CHECK((!copy && !copy.extension));
  }
  CHECK(Calls() == "-11");
  ExtensionCreateHook = nullptr;
  ExtensionFreeHook = nullptr;
  ExtensionCopyHook = nullptr;
  PrnType to(AllocY, 1), from(AllocY, 1);
  to.extension = from.extension = &calls;
  to = from;  // an extension that no hook copies stays with its record
  CHECK((to.extension == nullptr && from.extension == &calls));
  to.extension = &calls;
  to = PrnType(from);
  CHECK(to.extension == nullptr);
}
