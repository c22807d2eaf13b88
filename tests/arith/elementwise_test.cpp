// Functions of values, and the same functions of coordinates.
#include <sstream>

#include "support/records.h"

using namespace kem::test;

namespace {

struct Function {
  std::string name;
  PrnType (PrnType::*member)() const;
  float (*rule)(float v);
};

const Function kFunctions[] = {
    {"Exp", &PrnType::Exp, expf},
    {"Sin", &PrnType::Sin, sinf},
    {"Cos", &PrnType::Cos, cosf},
    {"Tan", &PrnType::Tan, tanf},
    {"ATan", &PrnType::ATan, atanf},
    {"SinH", &PrnType::SinH, sinhf},
    {"CosH", &PrnType::CosH, coshf},
    {"TanH", &PrnType::TanH, tanhf},
    {"Log", &PrnType::Log, [](float v) { return v > 0 ? log10f(v) : 0; }},
    {"Ln", &PrnType::Ln, [](float v) { return v > 0 ? logf(v) : 0; }},
    {"ASin", &PrnType::ASin, [](float v) { return v >= -1 && v <= 1 ? asinf(v) : 0; }},
    {"ACos", &PrnType::ACos, [](float v) { return v >= -1 && v <= 1 ? acosf(v) : 0; }},
    {"ASinH", &PrnType::ASinH, [](float v) { return float(log(v + sqrt(double(v) * v + 1))); }},
    {"ACosH", &PrnType::ACosH, [](float v) { return v > 1 ? float(log(v + sqrt(double(v) * v - 1))) : 0; }},
    {"ATanH", &PrnType::ATanH, [](float v) { return v < 1 ? float(0.5 * log((1. + v) / (1. - v))) : 0; }},
    {"Inv", &PrnType::Inv, [](float v) { return v != 0 ? float(1. / v) : 0; }}};

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
  for (int type = AllocY; type <= AllocXYZ; ++type) {
    PrnType record = RandomRecord(rng, type, 30, 20);
    Put(odd, Rows(record).back());
    if (record.HasX()) Put(odd, record.xArray);
    for (const auto& [name, member, rule] : kFunctions) {
      const std::string function = name;
      CAPTURE(function);
      Floats values = ValuesOf(record), x = XOf(record);
      for (Floats* all : {&values, &x}) std::transform(all->begin(), all->end(), all->begin(), rule);
      const PrnType result = (record.*member)();
      CHECK_SAME(ValuesOf(result), values);
      CHECK(Name(result) == (name == "Inv" ? "1/" + Name(record) : name + '(' + record.fileName + ')'));
      std::string operation = name;
      for (char& c : operation) c = static_cast<char>(c | ' ');  // small letters
      const auto [scaled, complaints] = AxisOp(record, 'x', operation);
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
  PrnType grid(AllocZ, 3, 2);
  grid.xEnd = 2, grid.yStart = 5, grid.yEnd = 5.5f, grid.yStep = 0.5f;
  const Floats x = XOf(grid), y = YOf(grid);
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
    CHECK((r.xEnd == c.x.back() && r.yEnd == c.y.back()));
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
