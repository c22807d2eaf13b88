#include "support/records.h"

using namespace kem::test;

namespace {

struct Operator {
  std::string sign;
  PrnType (PrnType::*record)(const PrnType&) const;
  PrnType (PrnType::*number)(const float&) const;
  float (*rule)(float, float);
};

const Operator kOperators[] = {
    {"+", &PrnType::operator+, &PrnType::operator+, [](float a, float b) { return a + b; }},
    {"-", &PrnType::operator-, &PrnType::operator-, [](float a, float b) { return a - b; }},
    {"*", &PrnType::operator*, &PrnType::operator*, [](float a, float b) { return a * b; }},
    {"/", &PrnType::operator/, &PrnType::operator/, [](float a, float b) { return b == 0 ? 0 : a / b; }},
    {"^", &PrnType::operator^, &PrnType::operator^,
     [](float a, float b) { return a >= 0 ? powf(a, b) : powf(a, std::floor(b)); }},
};

// A record at the coordinates of another.
PrnType& OnAxesOf(const PrnType& a, const PrnType& b) {
  Floats x = XOf(a), y = YOf(a);
  return a.Is3D() ? b.InterpolateXYZ(x.data(), a.nX, y.data(), a.nY) : b.InterpolateXY(x.data(), a.nX);
}

// The rule written out: copy both, bring the second onto the first one's axes, combine element by element.
PrnType Literal(PrnType a, const PrnType& b, const Operator& op) {
  const std::unique_ptr<PrnType> s(a.SameAxes(b) ? new PrnType(b) : &OnAxesOf(a, b));
  const auto rows = Rows(a), others = Rows(*s);
  for (std::size_t i = 0; i < std::min(rows.size(), others.size()); ++i)
    for (int j = 0; j < std::min(a.nY, s->nY); ++j) rows[i][j] = op.rule(rows[i][j], others[i][j]);
  a.MinMax();
  return a;
}

// All that arithmetic can change, but for the name.
bool Same(const PrnType& a, const PrnType& b) {
  return SameData(a, b) && SameFloats({a.xStep, a.yStep, a.zMax}, {b.xStep, b.yStep, b.zMax}) &&
         a.fileType == b.fileType && a.active == b.active;
}

}  // namespace

TEST_CASE("operators: every shape agrees bit for bit with the rule, on the same axes and on others") {
  Rng rng(kSeed);
  const float odd[] = {0, -0.0f, NAN, INFINITY, -INFINITY, 1e38f, 1e-40f};
  for (int round = 0; round < 300; ++round) {
    PrnType a = RandomRecord(rng, 2 + round % 6);
    const int otherType = a.Is3D() ? 4 + static_cast<int>(rng() % 4) : 2 + static_cast<int>(rng() % 2);
    PrnType b = rng() % 2 ? -a : RandomRecord(rng, otherType);
    for (float& v : std::span(Rows(b)[0], b.nY)) v = rng() % 2 ? v : odd[rng() % std::size(odd)];
    const PrnType beforeA(a), beforeB(b);
    for (const Operator& o : kOperators) {
      INFO(kSeed, ", round ", round, ": ", o.sign);
      const PrnType sum = (a.*o.record)(b);
      CHECK(Same(sum, Literal(a, b, o)));
      CHECK(Name(sum) == a.fileName + o.sign + b.fileName);
      const float number = round % 2 ? -2.5f : 1e10f;
      const PrnType withNumber = (b.*o.number)(number);
      CHECK_SAME(ValuesOf(withNumber), ValuesOf(Literal(b, b.Set(number), o)));
      CHECK(withNumber.fileName == b.fileName + o.sign + (round % 2 ? "-2.5" : "1e+10"));
    }
    CHECK_SAME(ValuesOf(-(-b)), ValuesOf(b));
    CHECK(Name(-(-b)) == "__" + Name(b));
    CHECK((Same(a, beforeA) && Same(b, beforeB)));
  }
}

TEST_CASE("operators: what does not combine gives an empty record") {
  PrnType curve = Curve(0, 1, {1, 2}), grid(AllocZ, 2, 2), empty, xOnly(AllocX), noStep = Curve(0, 0, {1, 2});
  curve.fileName[0] = 'c', empty.fileName[0] = 'e';
  const std::tuple<PrnType&, PrnType&, const char*> cases[] = {
      {curve, grid, ""},     {grid, curve, ""},     {empty, grid, ""},     {grid, empty, ""},
      {empty, curve, "e+c"}, {curve, empty, "c+e"}, {empty, empty, "e+e"}, {xOnly, curve, "+c"},
      {curve, xOnly, "c+"},  {noStep, curve, "+c"}};
  for (const auto& [a, b, name] : cases) {
    PrnType r = a + b;
    r.MinMax();
    CHECK((!r && r.zMax == 0 && Name(r) == name));
  }
  for (PrnType* none : {&empty, &xOnly}) CHECK((!(*none + 1) && !-*none && !(*none & curve) && !(curve & *none)));
  CHECK((!(curve & grid) && !(curve & Curve(0, 1, {1})) && !(grid & PrnType(AllocZ, 3, 2))));
  CHECK((!(curve / 0) && !(curve ^ 0)));
}

TEST_CASE("operators: counts that do not match what is stored, short right operands, long names") {
  PrnType a = Curve(0, 1, {1, 2, 3, -4});
  CHECK_SAME(ValuesOf(a & Curve(5, 3, {2, 2, 2, 2})), (Floats{2, 4, 6, -8}));  // axes do not matter
  CHECK_BITS((a ^ 0.5f).yArray[3], 1);                                         // -4 to the power 0
  PrnType signs = Curve(0, 1, {0, -0.0f, NAN});
  CHECK(std::signbit((-signs).yArray[2]) != std::signbit(signs.yArray[2]));
  CHECK_SAME(ValuesOf(-signs), (Floats{-0.0f, 0, NAN}));
  a.nX = 3;
  CHECK_SAME(ValuesOf(a + 10), (Floats{11, 12, 13, -4}));
  CHECK_SAME(ValuesOf(a & a), (Floats{1, 4, 9, 16}));
  PrnType wide = Curve({0, 1, 2}, {1, 2, 3}), distant = Curve(0, 1, {1, 2, 3}), shorter = Curve(0, 1, {10, 20});
  wide.nX = 9;
  CHECK_SAME(ValuesOf(wide + wide), (Floats{2, 4, 6}));
  CHECK_SAME(ValuesOf(wide + Curve(0, 1, {5, 5, 5})), (Floats{6, 7, 8}));
  distant.xEnd = 1e9f;  // an axis that says more than its samples costs nothing
  CHECK_SAME(ValuesOf(distant * Curve({1, 3}, {5, 7})), (Floats{0, 10, 18}));
  CHECK((Curve({}, {}) + distant).allocType == AllocXY);
  shorter.xEnd = a.xEnd;  // the axes are defined alike, so nothing is resampled
  CHECK_SAME(ValuesOf(a - shorter), (Floats{-9, -18, 3, -4}));
  std::fill_n(a.fileName, kTextSize - 1, 'n');
  CHECK(Name(a + a) == std::string(kTextSize - 1, 'n'));
}
