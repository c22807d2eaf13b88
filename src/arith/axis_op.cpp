// Arithmetic and functions of an axis' coordinates.
#include <algorithm>
#include <iostream>
#include <string_view>
#include <utility>

#include "analysis/axis.h"
#include "arith/kernels.h"
#include "arith/values.h"
#include "record/axis.h"

using namespace kem::arith;
using namespace kem::record;

namespace {

// What an operation does to an axis that is defined by its start and step.
enum class Defined { BecomesArray, Shifts, Flips };

struct Operation {
  std::string_view name;
  float (*apply)(float coordinate, float value);
  Defined defined = Defined::BecomesArray;
};

// A function that has no use for the value.
template <auto Kernel>
float Of(float coordinate, float) {
  return Kernel(coordinate);
}

constexpr Operation kOperations[] = {
    {"+", kAdd, Defined::Shifts},
    {"-", kSubtract, Defined::Shifts},
    {"*", kMultiply},
    {"/", kDivide},
    {"^", kPower.function},
    {"s", Of<kNegate>, Defined::Flips},
    {"inv", Of<kInv>},
    {"exp", Of<kExp>},
    {"log", Of<kLog>},
    {"ln", Of<kLn>},
    {"sin", Of<kSin>},
    {"cos", Of<kCos>},
    {"tan", Of<kTan>},
    {"asin", Of<kASin>},
    {"acos", Of<kACos>},
    {"atan", Of<kATan>},
    {"sinh", Of<kSinH>},
    {"cosh", Of<kCosH>},
    {"tanh", Of<kTanH>},
    {"asinh", Of<kASinH>},
    {"acosh", Of<kACosH>},
    {"atanh", Of<kATanH>},
};

void Complain() { std::cerr << "AxisOp called with illegal operand. Halted.\n"; }

// Leaves the coordinates alone, and says so for every one of them.
constexpr Operation kUnknown = {"", [](float coordinate, float) {
                                  Complain();
                                  return coordinate;
                                }};

const Operation& Find(std::string_view name) {
  for (const Operation& operation : kOperations)
    if (operation.name == name) return operation;
  Complain();
  return kUnknown;
}

void ChangeDefinition(PrnType& r, const AxisFields& axis, const Operation& operation, float value) {
  for (const auto field : {axis.start, axis.end}) r.*field = operation.apply(r.*field, value);
  if (operation.defined == Defined::Flips) r.*axis.step = operation.apply(r.*axis.step, value);
}

void MakeArray(PrnType& r, const AxisFields& axis) {
  const auto coordinates = kem::analysis::ValuesOf(r, axis);
  const auto count = static_cast<int>(coordinates.size());
  auto values = NewArray(count);
  std::copy_n(coordinates.data(), count, values.get());
  Own(r.*axis.values, std::move(values));
  r.*axis.count = count;
  r.allocType |= axis.bit;
}

void ChangeCoordinates(PrnType& r, const AxisFields& axis, const Operation& operation, float value) {
  float* coordinates = r.*axis.values;
  for (int k = 0; k < r.*axis.count; ++k) coordinates[k] = operation.apply(coordinates[k], value);
}

PrnType Changed(const PrnType& record, const AxisFields& axis, const Operation& operation, float value,
                bool asArray) {
  PrnType r(record);
  const bool defined = !axis.IsStoredIn(r);
  if (defined && !asArray && operation.defined != Defined::BecomesArray) {
    ChangeDefinition(r, axis, operation, value);
    return r;
  }
  if (defined) MakeArray(r, axis);
  ChangeCoordinates(r, axis, operation, value);
  r.MinMax();
  return r;
}

}  // namespace

PrnType PrnType::AxisOp(char axis, char* const operation, float value) const {
  if (!HasValues(*this)) return PrnType();
  // An unknown letter goes on as Y, also for a curve, whose values it then changes.
  const bool known = axis == 'x' || axis == 'y';
  if (!known) Complain();
  if (axis == 'y' && !IsGrid(*this)) return PrnType();
  return Changed(*this, axis == 'x' ? kX : kY, Find(operation ? operation : ""), value, !known);
}
