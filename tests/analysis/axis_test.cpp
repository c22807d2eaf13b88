#include "support/support.h"

using namespace kem::test;

namespace {

std::vector<float> Axis(const PrnType& record, void (PrnType::*arrayFrom)(float**, int*) const) {
  float* values = nullptr;
  int count = -1;
  (record.*arrayFrom)(&values, &count);
  std::vector<float> axis(values, values + count);
  delete[] values;
  return axis;
}

}  // namespace

TEST_CASE("axis: a stored axis is copied, a defined one accumulates in single precision") {
  PrnType grid(AllocYZ, 1000, 2);
  grid.xStart = 1;
  grid.xStep = 0.1f;
  grid.yArray[0] = 7;
  grid.yArray[1] = -3;
  float last = 1;
  for (int k = 0; k < 999; ++k) last += 0.1f;
  const auto x = Axis(grid, &PrnType::ArrayFromXAxis);
  REQUIRE(x.size() == 1000);
  CHECK_BITS(x[999], last);
  CHECK(Axis(grid, &PrnType::ArrayFromYAxis) == std::vector<float>{7, -3});
}

TEST_CASE("axis: the count is that of the arrays, and none without arrays") {
  struct {
    AllocType type;
    int nX, nY;
    std::size_t x, y;
  } const cases[] = {
      {AllocY, 2, 5, 5, 5}, {AllocXY, 9, 5, 5, 5},   {AllocXY, 3, 5, 3, 5},  {AllocXYZ, 5, 4, 5, 4},
      {AllocX, 5, 5, 0, 0}, {AllocNone, 5, 5, 0, 0}, {AllocY, -1, -1, 0, 0},
  };
  for (const auto& c : cases) {
    CAPTURE(c.type);
    PrnType record(c.type, 5, c.nY);
    record.nX = c.nX;
    record.nY = c.nY;
    CHECK(Axis(record, &PrnType::ArrayFromXAxis).size() == c.x);
    CHECK(Axis(record, &PrnType::ArrayFromYAxis).size() == c.y);
  }
}
