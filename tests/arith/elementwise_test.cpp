// Functions of values, and the same functions of coordinates.
#include <sstream>

#include "support/records.h"

using namespace kem::test;

namespace {

std::string Name(const PrnType& r) { return r.fileName; }

struct Function {
  PrnType (PrnType::*member)() const;
  std::string operation;
  float (*rule)(float v);
  std::string before;
  std::string after = ")";
};

const Function kFunctions[] = {
    {&PrnType::Exp, "exp", [](float v) { return expf(v); }, "Exp("},
    {&PrnType::Log, "log", [](float v) { return v > 0 ? log10f(v) : 0; }, "Log("},
    {&PrnType::Ln, "ln", [](float v) { return v > 0 ? logf(v) : 0; }, "Ln("},
    {&PrnType::Sin, "sin", [](float v) { return sinf(v); }, "Sin("},
    {&PrnType::Cos, "cos", [](float v) { return cosf(v); }, "Cos("},
    {&PrnType::Tan, "tan", [](float v) { return tanf(v); }, "Tan("},
    {&PrnType::ASin, "asin", [](float v) { return v >= -1 && v <= 1 ? asinf(v) : 0; }, "ASin("},
    {&PrnType::ACos, "acos", [](float v) { return v >= -1 && v <= 1 ? acosf(v) : 0; }, "ACos("},
    {&PrnType::ATan, "atan", [](float v) { return atanf(v); }, "ATan("},
    {&PrnType::SinH, "sinh", [](float v) { return sinhf(v); }, "SinH("},
    {&PrnType::CosH, "cosh", [](float v) { return coshf(v); }, "CosH("},
    {&PrnType::TanH, "tanh", [](float v) { return tanhf(v); }, "TanH("},
    {&PrnType::ASinH, "asinh", [](float v) { return float(log(v + sqrt(double(v) * v + 1))); }, "ASinH("},
    {&PrnType::ACosH, "acosh", [](float v) { return v > 1 ? float(log(v + sqrt(double(v) * v - 1))) : 0; },
     "ACosH("},
    {&PrnType::ATanH, "atanh", [](float v) { return v < 1 ? float(0.5 * log((1. + v) / (1. - v))) : 0; }, "ATanH("},
    {&PrnType::Inv, "inv", [](float v) { return v != 0 ? float(1. / v) : 0; }, "1/", ""},
};

// The result of an axis operation and how often it complained.
std::pair<PrnType, int> AxisOp(const PrnType& record, char axis, std::string operation, float value = 0) {
  std::unique_ptr<PrnType> result;
  const auto run = [&] { result = std::make_unique<PrnType>(record.AxisOp(axis, operation.data(), value)); };
  std::istringstream lines(Printed(run, stderr));
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count)
    CHECK(line == "AxisOp called with illegal operand. Halted.");
  return {*result, count};
}

}  // namespace

TEST_CASE("elementwise: functions of the values and coordinates of every shape") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  const Floats odd = {0,      -0.0f, 1,        -1,        1.0000001f,  -1.0000001f, 0.5f,   NAN,
                      1e-40f, 1e38f, INFINITY, -INFINITY, 0.99999994f, 4,           -1e-3f, 100};
  for (int type = 2; type < 8; ++type) {
    PrnType record = RandomRecord(rng, type, 30, 20);
    Put(odd, record.Is3D() ? record.zArray[7] : record.yArray);
    if (record.HasX()) Put(odd, record.xArray);
    for (const Function& f : kFunctions) {
      CAPTURE(f.operation);
      Floats values = ValuesOf(record);
      Floats x = XOf(record);
      for (Floats* all : {&values, &x}) std::transform(all->begin(), all->end(), all->begin(), f.rule);
      const PrnType result = (record.*f.member)();
      CHECK_SAME(ValuesOf(result), values);
      CHECK(Name(result) == f.before + record.fileName + f.after);
      const auto [scaled, complaints] = AxisOp(record, 'x', f.operation);
      CHECK_SAME(XOf(scaled), x);
      CHECK_SAME(ValuesOf(scaled), ValuesOf(record));
      CHECK((Name(scaled) == Name(record) && scaled.allocType == (record.allocType | AllocX) && complaints == 0));
    }
  }
  PrnType partly = Curve(0, 1, {1, 2, 3});
  partly.nX = 2;  // the count of a curve
  CHECK_SAME(ValuesOf(partly.Set(2.5f)), (Floats{2.5f, 2.5f, 3}));
  CHECK(Name(partly.Set(2.5f)) == "Set(,2.5)");
  CHECK((!PrnType().Sin() && !PrnType(AllocX).Set(1)));
}

TEST_CASE("axis operations: numbers, defined and stored axes, illegal operands") {
  PrnType grid = PrnType(AllocZ, 3, 2).Set(1);
  grid.xEnd = 2;
  grid.yStart = 5;
  grid.yEnd = 5.5f;
  grid.yStep = 0.5f;
  const Floats x = {0, 1, 2};
  const Floats y = {5, 5.5f};
  struct Case {
    char axis;
    int type;  // of the result
    std::string operation;
    float value;
    int complaints;
    Floats x, y;
  } const cases[] = {
      {'x', AllocZ, "+", 10, 0, {10, 11, 12}, y},   {'y', AllocZ, "-", 10, 0, x, {-5, -4.5f}},
      {'x', AllocZ, "s", 0, 0, {-0.0f, -1, -2}, y}, {'y', AllocZ, "s", 0, 0, x, {-5, -5.5f}},
      {'x', AllocXZ, "*", 2, 0, {0, 2, 4}, y},      {'y', AllocYZ, "/", 2, 0, x, {2.5f, 2.75f}},
      {'y', AllocYZ, "/", 0, 0, x, {0, 0}},         {'x', AllocXZ, "^", 0.5f, 0, {0, 1, sqrtf(2)}, y},
      {'x', AllocXZ, "LOG", 0, 1 + 3, x, y},        {'q', AllocYZ, "+", 1, 1, x, {6, 6.5f}},
      {'Y', AllocYZ, "", 0, 1 + 1 + 2, x, y},
  };
  for (const Case& c : cases) {
    CAPTURE(c.operation);
    const auto [r, complaints] = AxisOp(grid, c.axis, c.operation, c.value);
    CHECK((r.allocType == c.type && complaints == c.complaints));
    CHECK_SAME(XOf(r), c.x);
    CHECK_SAME(YOf(r), c.y);
    CHECK_SAME((Floats{r.xEnd, r.yEnd}), (Floats{c.x.back(), c.y.back()}));
  }
  PrnType curve = Curve({1, -4}, {3, 4});
  CHECK_SAME(XOf(AxisOp(curve, 'x', "^", 2.5f).first), (Floats{1, 16}));
  CHECK_SAME(XOf(AxisOp(curve, 'x', "s").first), (Floats{-1, 4}));
  CHECK_SAME(ValuesOf(AxisOp(curve, 'q', "-", 1).first), (Floats{2, 3}));
  CHECK(!AxisOp(curve, 'y', "+", 1).first);
  CHECK(AxisOp(curve, 'y', "?").second + AxisOp(PrnType(), 'q', "?").second == 0);
  curve.nX = 9;
  CHECK_BITS(AxisOp(curve, 'x', "*", 2).first.xEnd, 2);
}
