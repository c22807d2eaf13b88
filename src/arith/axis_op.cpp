// Arithmetic and functions of an axis' coordinates.
#include <iostream>
#include <string_view>

#include "arith/kernels.h"
#include "arith/values.h"

using namespace kem::arith;

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
    {"^", kPower},
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

// The fields of a record that describe an axis.
struct Axis {
  AllocType bit;
  float* PrnType::*array;
  int PrnType::*count;
  float PrnType::*start;
  float PrnType::*end;
  float PrnType::*step;
  void (PrnType::*coordinates)(float** values, int* count) const;
};

constexpr Axis kX = {AllocX,          &PrnType::xArray,        &PrnType::nX, &PrnType::xStart, &PrnType::xEnd,
                     &PrnType::xStep, &PrnType::ArrayFromXAxis};
constexpr Axis kY = {AllocY,          &PrnType::yArray,        &PrnType::nY, &PrnType::yStart, &PrnType::yEnd,
                     &PrnType::yStep, &PrnType::ArrayFromYAxis};

void ChangeDefinition(PrnType& r, const Axis& axis, const Operation& operation, float value) {
  for (const auto field : {axis.start, axis.end}) r.*field = operation.apply(r.*field, value);
  if (operation.defined == Defined::Flips) r.*axis.step = operation.apply(r.*axis.step, value);
}

void MakeArray(PrnType& r, const Axis& axis) {
  float* coordinates = nullptr;
  int count = 0;
  (r.*axis.coordinates)(&coordinates, &count);
  r.*axis.array = coordinates;
  r.*axis.count = count;
  r.allocType |= axis.bit;
}

void ChangeCoordinates(PrnType& r, const Axis& axis, const Operation& operation, float value) {
  float* coordinates = r.*axis.array;
  for (int k = 0; k < r.*axis.count; ++k) coordinates[k] = operation.apply(coordinates[k], value);
}

PrnType Changed(const PrnType& record, const Axis& axis, const Operation& operation, float value, bool asArray) {
  PrnType r(record);
  const bool defined = (r.allocType & axis.bit) == 0;
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
