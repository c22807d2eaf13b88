// Functions of every value of a record.
#include "arith/kernels.h"
#include "arith/values.h"
#include "text/number_text.h"

using namespace kem::arith;

PrnType PrnType::Exp() const { return Mapped(*this, "Exp(", ")", kExp); }
PrnType PrnType::Log() const { return Mapped(*this, "Log(", ")", kLog); }
PrnType PrnType::Ln() const { return Mapped(*this, "Ln(", ")", kLn); }
PrnType PrnType::Sin() const { return Mapped(*this, "Sin(", ")", kSin); }
PrnType PrnType::Cos() const { return Mapped(*this, "Cos(", ")", kCos); }
PrnType PrnType::Tan() const { return Mapped(*this, "Tan(", ")", kTan); }
PrnType PrnType::ASin() const { return Mapped(*this, "ASin(", ")", kASin); }
PrnType PrnType::ACos() const { return Mapped(*this, "ACos(", ")", kACos); }
PrnType PrnType::ATan() const { return Mapped(*this, "ATan(", ")", kATan); }
PrnType PrnType::SinH() const { return Mapped(*this, "SinH(", ")", kSinH); }
PrnType PrnType::CosH() const { return Mapped(*this, "CosH(", ")", kCosH); }
PrnType PrnType::TanH() const { return Mapped(*this, "TanH(", ")", kTanH); }
PrnType PrnType::ASinH() const { return Mapped(*this, "ASinH(", ")", kASinH); }
PrnType PrnType::ACosH() const { return Mapped(*this, "ACosH(", ")", kACosH); }
PrnType PrnType::ATanH() const { return Mapped(*this, "ATanH(", ")", kATanH); }
PrnType PrnType::Inv() const { return Mapped(*this, "1/", "", kInv); }

PrnType PrnType::Set(const float& constant) const {
  std::string after = ",";
  kem::text::AppendNumber(after, constant);
  return Mapped(*this, "Set(", after + ")", [c = constant](float) { return c; });
}
