#include <cstring>

#include "support/formats.h"

using namespace kem::test;

namespace {

struct Header {
  const char* tag = "[B3D]\n";
  int shape = AllocYZ;
  int nX = 1;
  int nY = 2;
  float yStep = 6;
};

// A file of a header, values and text.
std::string File(const Header& h, const Floats& values = {}, const char* text = "") {
  Bytes file;
  file.Text(h.tag);
  for (const int flags : {h.shape & 1, h.shape & 2, h.shape & 4, h.shape})
    file.Put(static_cast<std::int8_t>(flags));
  file.Put(std::int16_t{2});
  for (const float v : {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, h.yStep}) file.Put(v);
  file.Put(static_cast<std::int16_t>(h.nX)).Put(static_cast<std::int16_t>(h.nY));
  for (const float v : values) file.Put(v);
  return file.Text(text);
}

bool SameBytes(const Floats& a, const Floats& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

}  // namespace

TEST_CASE("b3d: the layout of a grid and of a curve") {
  PrnType grid(AllocYZ, 1, 2);
  grid.xStart = 1, grid.xEnd = 2, grid.xStep = 3, grid.yStart = 4, grid.yEnd = 5, grid.yStep = 6;
  Put({4, 5}, grid.yArray);
  Put({10, 11}, grid.zArray[0]);
  CHECK(Written(grid, &PrnType::WriteB3D) == File({}, {4, 5, 10, 11}, "X\nY\nZ\n\n\n"));
  PrnType curve = Curve({1, 2}, {4, 5});
  curve.xStep = 3, curve.yStep = 6, curve.fileType = FileP3D;
  CHECK(Written(curve, &PrnType::WriteB2D) == File({"[B2D]\n", AllocXY, 2, 2, 0}, {1, 2, 4, 5}, "X\nY\n\n\n"));
}

TEST_CASE("b3d: any shape comes back bit for bit; the others are refused") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int type = AllocY; type <= AllocXYZ; ++type) {
    PrnType record = RandomRecord(rng, type);
    const bool grid = record.Is3D() != 0;
    for (int i = 0; i < (grid ? record.nX : 1); ++i)
      for (int j = 0; j < record.nY; ++j)
        (grid ? record.zArray[i] : record.yArray)[j] =
            kem::portable::bit_cast<float>(static_cast<std::uint32_t>(rng()));
    const std::string bytes = Written(record, grid ? &PrnType::WriteB3D : &PrnType::WriteB2D);
    const Read back(bytes, grid ? &PrnType::ReadB3D : &PrnType::ReadB2D);
    const PrnType& r = back.record;
    REQUIRE(r.allocType == type);
    CHECK(r.fileType == (grid ? FileP3D : FileP2D));
    CHECK(r.active == 1);
    CHECK(SameBytes(ValuesOf(r), ValuesOf(record)));
    CHECK(SameBytes(XOf(r), XOf(record)));
    if (grid) CHECK(SameBytes(YOf(r), YOf(record)));
    CHECK_BITS(r.yStep, grid ? record.yStep : 0);
    CHECK(Written(record, grid ? &PrnType::WriteB2D : &PrnType::WriteB3D).empty());
  }
  for (const auto writer : {&PrnType::WriteB2D, &PrnType::WriteB3D}) CHECK(Written(PrnType(), writer).empty());
}

TEST_CASE("b3d: shapes of other formats, absurd counts, a curve of two counts") {
  for (const int shape : {-1, 0, 1, 2, 3, 8, 12}) {
    const Read file(File({.shape = shape}), &PrnType::ReadB3D);
    CHECK((file.result == 0 && !file.record && file.record.nY == 2));
  }
  for (const int shape : {1, 4, 7}) CHECK(Read(File({.shape = shape}), &PrnType::ReadB2D).result == 0);
  for (const Header& h : {Header{.shape = AllocZ, .nX = -25536}, Header{.nX = 0, .nY = -1}})
    CHECK_THROWS_AS(Read(File(h), &PrnType::ReadB3D), std::bad_alloc);
  CHECK_THROWS_AS(Read(File({.shape = AllocY, .nX = -1}), &PrnType::ReadB2D), std::bad_alloc);
  CHECK(Facts(Read(File({.shape = AllocXY, .nX = 9, .nY = 1}, {7, 8}), &PrnType::ReadB2D).record) ==
        "12 XY 1x1 x 7 7 3: 7 y 8 8 6 = 8 | X|Y|");
}

TEST_CASE("b3d: what a file does not hold is 0 or as it was") {
  const std::string values = File({}, {4, 5, 10, 11});
  CHECK(Read(values.substr(0, 39), &PrnType::ReadB3D).result == 0);
  const Read cut(values.substr(0, values.size() - 2), &PrnType::ReadB3D);
  CHECK_SAME(ValuesOf(cut.record), (Floats{10, 0}));
  CHECK(std::string(cut.record.yLabel) == "Y");
  const Read lines(values + "a\nb\r\nc\nd\n" + std::string(140, 'x') + "\nnot read\n", &PrnType::ReadB3D);
  CHECK(std::string(lines.record.yLabel) == "b\r");
  CHECK(std::string(lines.record.commentLines[0]) == "d");
  for (const int k : {1, 2}) CHECK(std::string(lines.record.commentLines[k]).empty());
}
