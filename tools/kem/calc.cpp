// kem calc: arithmetic between files and numbers.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <system_error>
#include <vector>

#include "expression.h"
#include "shape.h"
#include "system.h"
#include "text.h"
#include "transform.h"

namespace kem::tool {
namespace {

// ------------------------------------------------------------ operators and functions of the library

struct Operator {
  char sign;
  PrnType (PrnType::*withRecord)(const PrnType&) const;
  PrnType (PrnType::*withNumber)(const float&) const;
  bool commutes;
};

// The product point by point is that with a number anyway.
constexpr Operator kOperators[] = {
    {'+', &PrnType::operator+, &PrnType::operator+, true},  {'-', &PrnType::operator-, &PrnType::operator-, false},
    {'*', &PrnType::operator*, &PrnType::operator*, true},  {'/', &PrnType::operator/, &PrnType::operator/, false},
    {'^', &PrnType::operator^, &PrnType::operator^, false}, {'&', &PrnType::operator&, &PrnType::operator*, true},
};

struct Function {
  std::string_view name;
  PrnType (PrnType::*of)() const;  // null for Set
};

constexpr Function kFunctions[] = {
    {"Exp", &PrnType::Exp},     {"Log", &PrnType::Log},     {"Ln", &PrnType::Ln},       {"Sin", &PrnType::Sin},
    {"Cos", &PrnType::Cos},     {"Tan", &PrnType::Tan},     {"ASin", &PrnType::ASin},   {"ACos", &PrnType::ACos},
    {"ATan", &PrnType::ATan},   {"SinH", &PrnType::SinH},   {"CosH", &PrnType::CosH},   {"TanH", &PrnType::TanH},
    {"ASinH", &PrnType::ASinH}, {"ACosH", &PrnType::ACosH}, {"ATanH", &PrnType::ATanH}, {"Inv", &PrnType::Inv},
    {"Set", nullptr},
};

const Function* FunctionNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                   [name](const Function& f) { return f.name == name; });
  return found == std::end(kFunctions) ? nullptr : found;
}

std::size_t OperandsOf(std::string_view name) {
  const Function* function = FunctionNamed(name);
  return !function ? 0 : function->of ? 1 : 2;
}

// ------------------------------------------------------------ values

// A number is a curve of one point, so that the library calculates with it as with every other value.
struct Value {
  Record record;  // null after a problem
  bool isNumber = false;

  explicit operator bool() const { return record != nullptr; }
  float Number() const { return record->yArray[0]; }
};

Value NumberValue(float number) {
  auto point = std::make_unique<PrnType>(AllocY, 1);
  point->yArray[0] = number;
  std::snprintf(point->fileName, sizeof point->fileName, "%s", Shortest(number).c_str());
  return {std::move(point), true};
}

std::string Described(const Value& value) {
  const std::string name = value.record->fileName;
  return value.isNumber ? name : name + " (" + ShapeOf(*value.record) + ')';
}

// Takes what the library returns by value without copying it.
template <class Calculation>
Record Calculated(Calculation calculation) {
  return Record(new PrnType(calculation()));
}

// ------------------------------------------------------------ evaluation

// Operands are calculated first; the first problem ends it.
Value ValueOf(const Expression& e);

Value Failed(std::size_t position, const std::string& sentence) {
  Complain("calc: " + At(position, sentence));
  return {};
}

// A name that is no file but goes on behind the name of one may have been meant as a division.
Problem MeansDivision(const std::string& name) {
  std::error_code error;
  for (auto slash = name.find('/'); slash != name.npos; slash = name.find('/', slash + 1))
    if (std::filesystem::is_regular_file(PathOf(name.substr(0, slash)), error))
      return "; a division needs blanks, " + name.substr(0, slash) + " / " + name.substr(slash + 1);
  return {};
}

Value Loaded(const std::string& name) {
  const auto [file, item] = ItemNamed(name);
  Input input = LoadItem(file, std::max(item, 1));
  if (!input.problem.empty()) input.problem += MeansDivision(name);
  if (NoProblem(file, input.problem) && input.more && item == 0)
    Tell(file, "holds further items; calc takes the first, and " + file + "#2 is the second");
  return {std::move(input.record), false};
}

Value Negated(Value a) {
  if (!a) return {};
  return {Calculated([&] { return -*a.record; }), a.isNumber};
}

// A number in front of a record changes places with it, or becomes a record of that value.
PrnType Result(const Operator& op, const Value& a, const Value& b) {
  if (b.isNumber) return (a.record.get()->*op.withNumber)(b.Number());
  if (!a.isNumber) return (a.record.get()->*op.withRecord)(*b.record);
  if (op.commutes) return (b.record.get()->*op.withNumber)(a.Number());
  const PrnType constant = b.record->Set(a.Number());
  return (constant.*op.withRecord)(*b.record);
}

Value Refused(const Expression& e, const Value& a, const Value& b) {
  const char* reason = b.isNumber                             ? "a division by 0 and the power 0 are not defined"
                       : a.record->Is3D() != b.record->Is3D() ? "a curve and a grid do not go together"
                       : e.text == "&"                        ? "their counts of points differ"
                                                              : "their axes do not go together";
  return Failed(e.position, Described(a) + ' ' + e.text + ' ' + Described(b) + ": " + reason);
}

std::size_t CountWithin(const std::vector<float>& axis, const std::vector<float>& range) {
  if (range.empty()) return 0;
  const auto [low, high] = std::minmax_element(range.begin(), range.end());
  return static_cast<std::size_t>(std::count_if(
      axis.begin(), axis.end(), [low = *low, high = *high](float at) { return low <= at && at <= high; }));
}

// Says so when the right operand does not reach all points of the left one.
void WarnOfGaps(const PrnType& a, const PrnType& b) {
  if (a.SameAxes(b)) return;
  const auto x = XOfOperations(a);
  std::size_t points = x.size();
  std::size_t covered = CountWithin(x, XOfOperations(b));
  if (a.Is3D()) {
    const auto y = YOfOperations(a);
    points *= y.size();
    covered *= CountWithin(y, YOfOperations(b));
  }
  if (covered == points) return;
  Complain(std::string("calc: ") + b.fileName + " covers " + std::to_string(covered) + " of " +
           std::to_string(points) + " points of " + a.fileName + "; it " +
           (a.Is3D() ? "goes on along its outermost lines" : "counts as 0 at the others"));
}

Value Combined(const Expression& e) {
  Value a = ValueOf(e.operands[0]);
  if (!a) return {};
  Value b = ValueOf(e.operands[1]);
  if (!b) return {};
  const Operator& op = *std::find_if(std::begin(kOperators), std::end(kOperators),
                                     [&e](const Operator& o) { return o.sign == e.text.front(); });
  Value result{Calculated([&] { return Result(op, a, b); }), a.isNumber && b.isNumber};
  if (!*result.record) return Refused(e, a, b);
  if (!a.isNumber && !b.isNumber && op.sign != '&') WarnOfGaps(*a.record, *b.record);
  return result;
}

Value Applied(const Expression& e) {
  Value a = ValueOf(e.operands[0]);
  if (!a) return {};
  if (const Function& function = *FunctionNamed(e.text); function.of)
    return {Calculated([&] { return (*a.record.*function.of)(); }), a.isNumber};
  const Value constant = ValueOf(e.operands[1]);
  if (!constant) return {};
  if (!constant.isNumber) return Failed(e.operands[1].position, "Set takes a number here");
  return {Calculated([&] { return a.record->Set(constant.Number()); }), a.isNumber};
}

Value ValueOf(const Expression& e) {
  switch (e.kind) {
    case Expression::Kind::Number:
      return NumberValue(e.number);
    case Expression::Kind::File:
      return Loaded(e.text);
    case Expression::Kind::Negation:
      return Negated(ValueOf(e.operands[0]));
    case Expression::Kind::Operator:
      return Combined(e);
    case Expression::Kind::Function:
      return Applied(e);
  }
  return {};
}

struct CalcOptions {
  std::string expression;
  Output output;
};

int Calculate(const CLI::App& app, CalcOptions& options) {
  const Format* format = FormatOf(app, options.output);
  const ParsedExpression parsed = ParseExpression(options.expression, OperandsOf);
  if (!parsed.problem.empty()) Complain("calc: " + parsed.problem);
  if (!format || !parsed.problem.empty()) return kMisused;
  Value value = ValueOf(parsed.expression);
  if (!value) return kFailed;
  if (value.isNumber) {
    Complain("calc: the expression names no file");
    return kMisused;
  }
  Input result{.file = options.expression, .record = std::move(value.record)};
  return NoProblem("calc", Save(result, "", *format, options.output)) ? 0 : kFailed;
}

}  // namespace

Run DefineCalc(CLI::App& app) {
  auto options = std::make_shared<CalcOptions>();
  AddReading(app);
  AddUnits(app);
  app.add_option("EXPRESSION", options->expression, "What to calculate, in the quotes of the shell")
      ->type_name("")
      ->required();
  AddOutputFile(app, options->output)->required();
  return [&app, options] { return Calculate(app, *options); };
}

}  // namespace kem::tool
