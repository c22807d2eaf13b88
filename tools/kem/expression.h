// The expressions of kem calc.
//
//   sum     = product { ("+" | "-") product }
//   product = signed { ("*" | "/" | "&") signed }
//   signed  = "-" signed | power
//   power   = operand [ "^" signed ]                       so that -a^2 is -(a^2) and a^b^c is a^(b^c)
//   operand = number | file | "(" sum ")" | function "(" sum { "," sum } ")"
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "each_file.h"

namespace kem::tool {

struct Expression {
  enum class Kind { Number, File, Negation, Operator, Function };

  Kind kind = Kind::Number;
  std::size_t position = 0;  // in the text, counted from 1
  std::string text = {};     // name of the file or the function, sign of the operator
  float number = 0;
  std::vector<Expression> operands = {};
};

struct ParsedExpression {
  Expression expression;
  Problem problem;  // a sentence that begins with a position
};

// Parses an expression. `operandsOf` tells how many operands a function takes, 0 for names that are none.
ParsedExpression ParseExpression(std::string_view text, std::size_t (*operandsOf)(std::string_view function));

// "position 9: " and a sentence.
Problem At(std::size_t position, std::string_view sentence);

}  // namespace kem::tool
