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

TEST_CASE("vectors: sums side by side have the bits of those one after the other") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  const bool wide = kem::record::wideVectors;
  for (int round = 0; round < 2000; ++round) {
    CAPTURE(round);
    const float hard[] = {0.0f, -0.0f, 1e-45f, 1e38f, rng() % 20 ? 1.0f : INFINITY};
    Floats values(2 + rng() % 3000);
    // Of one size and number of bits for a while.
    for (int exponent = 0, bits = 24; float& v : values) {
      if (rng() % 400 == 0) exponent = static_cast<int>(rng() % 50) - 25, bits = static_cast<int>(2 + rng() % 23);
      v = std::ldexp(std::trunc(std::ldexp(Uniform(rng, -1, 1), bits)), exponent - bits);
    }
    for (std::size_t k = rng() % 900; k < values.size(); k += 1 + rng() % 900) values[k] = hard[rng() % 5];
    // What is rounded shows when all else cancels out.
    for (std::size_t k = 0, count = values.size(); k < count; ++k) values.push_back(-values[k]);
    double sum = 0, absolute = 0;
    for (std::size_t k = 1; k < values.size(); ++k) {
      const double piece = 0.5 * static_cast<double>(values[k - 1] + values[k]);
      sum += piece, absolute += std::fabs(piece);
    }
    const PrnType curve = Curve(0, 1, values);
    const auto end = static_cast<float>(values.size() - 1);
    kem::record::wideVectors = wide && round % 2;
    CHECK_BITS(curve.Integral(0, end, 0, 0), static_cast<float>(sum));
    CHECK_BITS(curve.AbsIntegral(0, end, 0, 0), static_cast<float>(absolute));
  }
  kem::record::wideVectors = wide;
}
