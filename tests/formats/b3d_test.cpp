#include <cstring>

#include "support/formats.h"
#include "support/records.h"

using namespace kem::test;

namespace {

struct Header {
  const char* tag = "[B3D]\n";
  int shape = AllocYZ;
  int nX = 2;
  int nY = 3;
  float yStep = 6;
};

Bytes File(const Header& h) {
  const auto byte = [](int value) { return static_cast<std::int8_t>(value); };
  return Bytes()
      .Text(h.tag)
      .Put(byte(h.shape & 1))
      .Put(byte(h.shape & 2))
      .Put(byte(h.shape & 4))
      .Put(byte(h.shape))
      .Put(std::int16_t{2})
      .Put(1.0f)
      .Put(2.0f)
      .Put(3.0f)
      .Put(4.0f)
      .Put(5.0f)
      .Put(h.yStep)
      .Put(static_cast<std::int16_t>(h.nX))
      .Put(static_cast<std::int16_t>(h.nY));
}

std::string GridFile() {
  Bytes file = File({});
  for (const float v : Floats{4, 4.5f, 5, 10, 11, 12, 20, 21, 22}) file.Put(v);
  return file.Text("X\nY\nZ\n\n\n");
}

// Every bit of every value.
bool Same(const Floats& a, const Floats& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

}  // namespace

TEST_CASE("b3d: the layout of a grid and of a curve") {
  PrnType grid(AllocYZ, 2, 3);
  grid.xStart = 1, grid.xEnd = 2, grid.xStep = 3, grid.yStart = 4, grid.yEnd = 5, grid.yStep = 6;
  std::ranges::copy(Floats{4, 4.5f, 5}, grid.yArray);
  for (int k = 0; k < 6; ++k) grid.zArray[k / 3][k % 3] = static_cast<float>(10 + k / 3 * 10 + k % 3);
  CHECK(Written(grid, &PrnType::WriteB3D) == GridFile());

  PrnType curve = Curve({1, 2}, {4, 5});
  curve.xStep = 3, curve.yStep = 6;
  curve.fileType = FileP3D;
  Bytes file = File({.tag = "[B2D]\n", .shape = AllocXY, .nY = 2, .yStep = 0});
  CHECK(Written(curve, &PrnType::WriteB2D) ==
        std::string(file.Put(1.0f).Put(2.0f).Put(4.0f).Put(5.0f).Text("X\nY\n\n\n")));
}

TEST_CASE("b3d: any shape comes back bit for bit; the others are refused") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  const auto anyBits = [&rng](float* values, int count) {
    for (int k = 0; k < count; ++k) values[k] = std::bit_cast<float>(static_cast<std::uint32_t>(rng()));
  };
  for (int type = AllocY; type <= AllocXYZ; ++type) {
    PrnType record = RandomRecord(rng, type);
    const bool grid = record.Is3D() != 0;
    if (!grid) anyBits(record.yArray, record.nY);
    for (int i = 0; grid && i < record.nX; ++i) anyBits(record.zArray[i], record.nY);
    std::snprintf(record.yLabel, kTextSize, "title");
    const auto writer = grid ? &PrnType::WriteB3D : &PrnType::WriteB2D;
    const Read back(Written(record, writer), grid ? &PrnType::ReadB3D : &PrnType::ReadB2D);
    const PrnType& r = back.record;
    REQUIRE(back.result == 1);
    CHECK(r.allocType == type);
    CHECK(r.fileType == (grid ? FileP3D : FileP2D));
    CHECK(r.active == 1);
    CHECK(Same(ValuesOf(r), ValuesOf(record)));
    CHECK(Same(XOf(r), XOf(record)));
    if (grid) CHECK(Same(YOf(r), YOf(record)));
    CHECK_BITS(r.yStep, grid ? record.yStep : 0);
    CHECK_BITS(r.xEnd, record.xEnd);
    CHECK(std::string(r.yLabel) == "title");
    CHECK(Written(record, grid ? &PrnType::WriteB2D : &PrnType::WriteB3D).empty());
  }
  CHECK(Written(PrnType(), &PrnType::WriteB3D).empty());
  CHECK(Written(PrnType(), &PrnType::WriteB2D).empty());
}

TEST_CASE("b3d: shapes that are not the format's, and counts that are absurd") {
  for (const int shape : {-1, 0, 1, 2, 3, 8, 12}) {
    const Read file(File({.shape = shape}), &PrnType::ReadB3D);
    CHECK(file.result == 0);
    CHECK(file.record.allocType == AllocNone);
    CHECK(file.record.nY == 3);
  }
  for (const int shape : {1, 4, 7}) CHECK(Read(File({.shape = shape}), &PrnType::ReadB2D).result == 0);
  for (const Header& h :
       {Header{.nX = -25536}, Header{.nY = -1}, Header{.shape = AllocZ, .nX = -1}, Header{.nX = 0, .nY = -1}})
    CHECK(ThrowsBadAlloc(File(h), &PrnType::ReadB3D));
  for (const Header& h : {Header{.shape = AllocY, .nX = -1}, Header{.shape = AllocXY, .nY = -1}})
    CHECK(ThrowsBadAlloc(File(h), &PrnType::ReadB2D));
  const Read uneven(File({.shape = AllocXY, .nX = 9, .nY = 1}).Put(7.0f).Put(8.0f), &PrnType::ReadB2D);
  CHECK(uneven.record.nX == 1);
  CHECK_SAME(XOf(uneven.record), Floats{7});
  CHECK_SAME(ValuesOf(uneven.record), Floats{8});
}

TEST_CASE("b3d: what a short file does not hold is 0 or as it was") {
  const std::string whole = GridFile();
  CHECK(Read(whole.substr(0, 39), &PrnType::ReadB3D).result == 0);
  const Read cut(whole.substr(0, 40 + 4 * 4 + 2), &PrnType::ReadB3D);
  REQUIRE(cut.result == 1);
  CHECK_SAME(ValuesOf(cut.record), (Floats{10, 0, 0, 0, 0, 0}));
  CHECK(std::string(cut.record.yLabel) == "Y");
  const std::string body = whole.substr(0, 40 + 9 * 4);
  const Read lines(body + "a\nb\r\nc\nd\n" + std::string(140, 'x') + "\nnot read\n", &PrnType::ReadB3D);
  CHECK(std::string(lines.record.yLabel) == "b\r");
  CHECK(std::string(lines.record.zLabel) == "c");
  CHECK(std::string(lines.record.commentLines[0]) == "d");
  CHECK(std::string(lines.record.commentLines[1]).empty());
  CHECK(std::string(lines.record.commentLines[2]).empty());
  LoadEveryPrefix("cut.b3d", whole, 200);
  LoadDamaged("hurt.b3d", whole, 100);
  LoadDamaged("hurt.b2d", File({.tag = "[B2D]\n", .shape = AllocXY}), 100);
}
