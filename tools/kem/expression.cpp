#include "expression.h"

#include "portable.h"

namespace kem::tool {
namespace {

using Kind = Expression::Kind;

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kQuotes = "'\"";
constexpr std::string_view kEndsOfName = "+-*/^&(),'\" \t\r\n";

// Far more than anyone writes, and few enough for every stack.
constexpr int kMostOperands = 1000;

// One pass from left to right. After a failure the rest of the text counts as read, which ends every loop.
class Parser {
 public:
  Parser(std::string_view text, std::size_t (*operandsOf)(std::string_view))
      : text_(text), operandsOf_(operandsOf) {}

  ParsedExpression Parse() {
    Expression whole = Sum();
    if (Next() != '\0') Fail("an operator is expected");
    return {std::move(whole), problem_};
  }

 private:
  Expression Sum() { return Chain("+-", &Parser::Product); }
  Expression Product() { return Chain("*/&", &Parser::Signed); }

  // Operands with operators between them, calculated from left to right.
  Expression Chain(std::string_view signs, Expression (Parser::*operand)()) {
    Expression left = (this->*operand)();
    while (Next() != '\0' && signs.find(Next()) != signs.npos) {
      Expression both = Take(Kind::Operator, 1);
      both.operands.push_back(std::move(left));
      both.operands.push_back((this->*operand)());
      left = std::move(both);
    }
    return left;
  }

  Expression Signed() {
    if (++operands_ > kMostOperands) return Fail("the expression is too long");
    if (Next() != '-') return Power();
    Expression negation = Take(Kind::Negation, 1);
    negation.operands.push_back(Signed());
    return negation;
  }

  Expression Power() {
    Expression base = Operand();
    if (Next() != '^') return base;
    Expression power = Take(Kind::Operator, 1);
    power.operands.push_back(std::move(base));
    power.operands.push_back(Signed());
    return power;
  }

  Expression Operand() {
    const char next = Next();
    if (next == '(') return Parenthesis();
    if (next != '\0' && kQuotes.find(next) != kQuotes.npos) return QuotedName();
    if ((next >= '0' && next <= '9') || next == '.')
      if (const std::size_t length = NumberLength()) return Number(length);
    const std::size_t length = NameLength();
    if (length == 0) return Fail("a file, a number, a function or ( is expected");
    Expression name = Take(Kind::File, length);
    return Next() == '(' ? Function(std::move(name)) : name;
  }

  Expression Parenthesis() {
    ++at_;
    Expression inner = Sum();
    Close();
    return inner;
  }

  Expression QuotedName() {
    const std::size_t end = text_.find(text_[at_], at_ + 1);
    if (end == text_.npos) return Fail("this quote is not closed");
    Expression name = Take(Kind::File, end + 1 - at_);
    name.text = name.text.substr(1, name.text.size() - 2);
    return name;
  }

  char CharAt(std::size_t k) const { return k < text_.size() ? text_[k] : '\0'; }

  bool NamesAt(std::size_t k) const { return k < text_.size() && kEndsOfName.find(text_[k]) == kEndsOfName.npos; }

  // A / in front of a character of a name is part of it, so that paths need no quotes.
  std::size_t NameLength() const {
    std::size_t end = at_;
    while (NamesAt(end) || (CharAt(end) == '/' && NamesAt(end + 1))) ++end;
    return end - at_;
  }

  // Length of a number that no name continues; 0 if there is none.
  std::size_t NumberLength() const {
    float number = 0;
    const char* const from = text_.data() + at_;
    const auto length =
        static_cast<std::size_t>(portable::FromChars(from, text_.data() + text_.size(), number).ptr - from);
    return NamesAt(at_ + length) ? 0 : length;
  }

  Expression Number(std::size_t length) {
    const std::string_view digits = text_.substr(at_, length);
    float number = 0;
    if (portable::FromChars(digits.data(), digits.data() + length, number).ec != std::errc())
      return Fail("this number is beyond single precision");
    Expression literal = Take(Kind::Number, length);
    literal.number = number;
    return literal;
  }

  Expression Function(Expression function) {
    function.kind = Kind::Function;
    const std::size_t count = operandsOf_(function.text);
    if (count == 0) return FailAt(function.position, "there is no function " + function.text);
    ++at_;
    function.operands.push_back(Sum());
    while (Next() == ',') {
      ++at_;
      function.operands.push_back(Sum());
    }
    Close();
    if (function.operands.size() == count) return function;
    return FailAt(function.position, function.text + " takes " + std::to_string(count) +
                                         (count == 1 ? " operand" : " operands, a file and a number"));
  }

  void Close() {
    if (Next() != ')') Fail(") is expected");
    if (problem_.empty()) ++at_;
  }

  // The next character that is no blank; NUL at the end.
  char Next() {
    at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
    return CharAt(at_);
  }

  Expression Take(Kind kind, std::size_t length) {
    Expression taken{.kind = kind, .position = at_ + 1, .text = std::string(text_.substr(at_, length))};
    at_ += length;
    return taken;
  }

  Expression Fail(std::string_view sentence) { return FailAt(at_ + 1, sentence); }

  Expression FailAt(std::size_t position, std::string_view sentence) {
    if (problem_.empty()) problem_ = At(position, sentence);
    at_ = text_.size();
    return {};
  }

  std::string_view text_;
  std::size_t (*operandsOf_)(std::string_view);
  std::size_t at_ = 0;
  int operands_ = 0;
  Problem problem_;
};

}  // namespace

ParsedExpression ParseExpression(std::string_view text, std::size_t (*operandsOf)(std::string_view)) {
  return Parser(text, operandsOf).Parse();
}

Problem At(std::size_t position, std::string_view sentence) {
  return "position " + std::to_string(position) + ": " + std::string(sentence);
}

}  // namespace kem::tool
