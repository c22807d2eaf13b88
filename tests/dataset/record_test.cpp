// Records as values: made of datasets, calculated with, written.
#include <filesystem>
#include <limits>
#include <thread>
#include <tuple>

#include "support/datasets.h"

using namespace kem;
using namespace kem::test;

namespace {

Dataset Complex() {
  Dataset d;
  d.title = "t";
  d.name = "I";
  d.unit = "V";
  d.axes = {Axis::Linear("Field", "G", 3, 10, 12)};
  d.values = Values::Of(std::vector<double>{3, 4, 0, -1, 5, 12}, true);
  return d;
}

std::string Described(const Record& r) {
  std::ostringstream text;
  text << r->xLabel << '|' << r->yLabel << '|' << r->zLabel << ' ' << r->nX << 'x' << r->nY << ':';
  for (int i = 0; i < r->nX; ++i)
    for (int j = 0; j < (r.IsGrid() ? r->nY : 1); ++j) text << ' ' << (r.IsGrid() ? r->zArray[i][j] : r->yArray[i]);
  return text.str();
}

bool Same(const Record& a, const PrnType& b) {
  return a->nX == b.nX && a->nY == b.nY &&
         std::equal(a->yArray, a->yArray + b.nY, b.yArray, [](float x, float y) { return SameBits(x, y); });
}

}  // namespace

TEST_CASE("record: what a dataset becomes, and what does not fit") {
  const std::pair<Part, const char*> parts[] = {{Part::Real, "3 0 5"},
                                                {Part::Imaginary, "4 -1 12"},
                                                {Part::Magnitude, "5 1 13"},
                                                {Part::Phase, "0.927295 -1.5708 1.17601"}};
  for (const auto& [part, values] : parts)
    CHECK(Described(Complex().ToRecord(part)) == std::string("Field (G)|I (V)|t 3x3: ") + values);
  Dataset grid = Complex();
  grid.axes = {Axis::Stored("Power", "mW", {2, 1}), Axis::Linear("X", "", 3, 0, 2)};
  grid.values = Values::Of(std::vector<float>{1, 2, 3, 4, 5, 6});
  const Record g = grid.ToRecord();
  CHECK(Described(g) == "X|Power (mW)|I (V) 3x2: 1 4 2 5 3 6");
  CHECK(g.Coordinates(Along::Y) == std::vector<float>{2, 1});
  const Dataset back = g.ToDataset();
  CHECK(Described(back.ToRecord()) == Described(g));
  CHECK(back.axes[0].Coordinates() == grid.axes[0].Coordinates());
  CHECK(back.axes[0].unit + back.unit == "mWV");
  CHECK(Refusal([] { (void)Record().ToDataset(); }) == "holds no data");
  grid.axes.push_back(Axis::Linear("", "", 1, 0, 0));
  CHECK(Refusal([&] { (void)grid.ToRecord(); }) == "has 3 dimensions; a record is a curve or a grid");
  CHECK(Refusal([] { (void)Dataset().ToRecord(); }) == "holds no points");
  const double huge = 1e300;
  Dataset d = Complex();
  d.axes = {Axis::Linear("", "", 1, 0, 0)};
  d.values = Values::Of(std::span<const double>(&huge, 1));
  CHECK(Refusal([&] { (void)d.ToRecord(); }) == "holds values that single precision cannot hold");
}

TEST_CASE("record: grids of every number type, larger than what changes sides at once") {
  const auto thereAndBack = []<class T>(T) {
    constexpr std::size_t kRows = 70;
    constexpr std::size_t kColumns = 130;
    std::vector<T> numbers(kRows * kColumns);
    for (std::size_t k = 0; k < numbers.size(); ++k) numbers[k] = static_cast<T>(k * k % 251);
    Dataset d;
    d.axes = {Axis::Linear("", "", kRows, 0, 1), Axis::Linear("", "", kColumns, 0, 1)};
    d.values = Values::Of(std::span<const T>(numbers));
    const Record r = d.ToRecord();
    const std::vector<float> floats(numbers.begin(), numbers.end());
    std::size_t same = 0;
    for (std::size_t k = 0; k < numbers.size(); ++k) same += r->zArray[k % kColumns][k / kColumns] == floats[k];
    CHECK(same == numbers.size());
    const Dataset back = r.ToDataset();
    CHECK(std::equal(floats.begin(), floats.end(), back.values.As<float>().begin()));
  };
  std::apply([&](auto... zero) { (thereAndBack(zero), ...); },
             std::tuple<std::uint8_t, std::uint16_t, std::uint32_t, std::int8_t, std::int16_t, std::int32_t, float,
                        double>());
}

TEST_CASE("record: operations are those of the record of hosts, on several threads at once") {
  const auto run = [] {
    std::vector<float> y(64);
    for (std::size_t k = 0; k < y.size(); ++k) y[k] = 0.1f * static_cast<float>(k * k % 17);
    const Record a = Record::Curve(y);
    const Record b = a.Exp();
    const std::unique_ptr<PrnType> smooth(&a->XSmooth(9));
    const std::pair<Record, PrnType> cases[] = {
        {a + b, *a + *b},           {a / b, *a / *b},        {2.0f * a, *a * 2},
        {3.0f - a, a->Set(3) - *a}, {a.Power(2), *a ^ 2},    {a.Smooth(9), *smooth},
        {a.Sin(), a->Sin()},        {a.Product(b), *a & *b}, {-a, -*a}};
    for (const auto& [value, expected] : cases) CHECK(Same(value, expected));
    CHECK_BITS(a.Integral(2, 30), a->Integral(2, 30, 0, 0));
    Record moved = a;
    moved = std::move(moved).Cut(3, 7);
    CHECK(moved->nX == 5);
    CHECK(Refusal([&] { (void)a.Smooth(4); }).starts_with("cannot be smoothed"));
    CHECK(Refusal([&] { (void)a.Slice(Along::X, 0, 1); }) == "is a curve; only grids have a Y axis");
    CHECK(Refusal([&] { (void)(a / 0.0f); }) == "a division by 0 and the power 0 are not defined");
    CHECK(Refusal([&] { (void)a.AxisOp(Along::X, "sec"); }) == "there is no axis operation sec");
    CHECK_THROWS_AS(Record::Grid(std::vector<float>(5), std::vector<float>(2), std::vector<float>(3)), Error);
  };
  std::thread other(run);
  run();
  other.join();
}

TEST_CASE("record: files") {
  const TempFolder folder;
  const Record curve = Complex().ToRecord();
  for (const char* name : {"a.p2d", "a.b2d", "a.cvt", "a.prn"}) {
    CAPTURE(name);
    curve.Write(PathOf(folder.Path(name)));
    CHECK(Same(Open(PathOf(folder.Path(name))).ToRecord().Sorted(), *curve));
    CHECK(Record::Classic(PathOf(folder.Path(name)))->nY == 3);
  }
  const std::vector<float> odd{1, 2, std::numeric_limits<float>::quiet_NaN()};
  const std::tuple<Record, const char*, const char*> refused[] = {
      {curve, "b.p3d", "p3d holds grids only, and this is a curve"},
      {Record::Curve(std::vector<float>(40000)), "b.b2d",
       "b2d holds at most 32767 points along an axis, and this has 40000"},
      {Record::Curve(odd), "b.prn", "has nan as value 3, which prn cannot hold; b2d can"},
      {Record::Curve({{1, 2, 3}}, odd), "b.dx", "has nan as X coordinate 3, which dx cannot hold; b2d can"},
      {Record::Grid(odd, {{4}}, {{5, 6, 7}}), "b.p3d", "has nan as value 1, 3, which p3d cannot hold; b3d can"},
      {Record(), "b.cvt", "holds no data"}};
  for (const auto& [record, name, why] : refused) {
    const auto file = PathOf(folder.Path(name));
    CHECK(Refusal([&, &record = record] { record.Write(file); }) == why);
    CHECK(!exists(file));
  }
  CHECK(Refusal([&] { curve.Write("a.txt"); }) == "its extension names no format that kem writes");
  CHECK(Refusal([&] { curve.Write(PathOf(folder.Path("no/such/folder/a.dx"))); }) ==
        "cannot be created: No such file or directory");
  CHECK(Refusal([&] { Record::Classic(PathOf(folder.Path("a.prn")), 2); }) == "holds no item 2, but 1");
  CHECK(Refusal([&] { Record::Classic(PathOf(folder.Write("b.txt", "no\nnumbers\n"))); }) == "unknown format");
}
