#include "record/vectors.h"
#include "support/records.h"

using namespace kem::test;

namespace {

using Result = std::unique_ptr<PrnType>;

Result Moved(PrnType r) { return std::make_unique<PrnType>(std::move(r)); }

Result MedianOfLongCurve(const PrnType& r) {
  PrnType curve(AllocY, 300);
  for (int k = 0; k < curve.nY; ++k) curve.yArray[k] = Rows(r)[0][k % r.nY];
  return Take(curve.Median2D(51));
}

constexpr Result (*kOperations[])(const PrnType&) = {
    [](const PrnType& r) { return Take(r.Median2D(5)); },
    [](const PrnType& r) { return Take(r.Median2D(33)); },
    [](const PrnType& r) { return Take(r.Median3D(3)); },
    [](const PrnType& r) { return Take(r.Median3D(9)); },
    [](const PrnType& r) { return Take(r.Reduce(2, 2)); },
    [](const PrnType& r) { return Moved(r / r.Exp()); },
    [](const PrnType& r) { return Take(r.XSmooth(5)); },
    [](const PrnType& r) { return Take(r.YSmooth(21)); },
    [](const PrnType& r) { return Moved(Sorted(r)); },
    [](const PrnType& r) { return Moved(Swapped(r)); },
    MedianOfLongCurve,
};

}  // namespace

TEST_CASE("vectors: wide ones give the bits of those that every processor has") {
  if (!kem::record::wideVectors) {
    MESSAGE("skipped: there are none");
    return;
  }
  ForRandomRecords(AllocY, [](PrnType& r, Rng& rng) {
    const float hard[] = {0.0f, -0.0f, INFINITY, -INFINITY, std::nanf(""), 1e-45f, 3e38f};
    if (rng() % 2)
      for (float* row : Rows(r)) row[rng() % r.nY] = hard[rng() % std::size(hard)];
    for (const auto operation : kOperations) {
      CAPTURE(&operation - kOperations);
      const Result wide = operation(r);
      kem::record::wideVectors = false;
      const Result plain = operation(r);
      kem::record::wideVectors = true;
      CHECK(SameData(*wide, *plain));
    }
  });
}
