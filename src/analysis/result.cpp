#include "analysis/result.h"

#include <algorithm>

#include "text/fields.h"

namespace kem::analysis {
using namespace text;
namespace {

void Set(const KeptAxis& axis, float* stored, float& start, float& end, float& step) {
  if (axis.stored) {
    std::copy_n(axis.stored, axis.count, stored);
  } else {
    start = axis.start;
    end = axis.end;
    step = axis.step;
  }
}

}  // namespace

std::unique_ptr<PrnType> NewResult(const PrnType& source, int type, int count1, int count2) {
  auto result = std::make_unique<PrnType>(static_cast<AllocType>(type), count1, count2);
  result->active = 1;
  kem::text::CopyText(result->fileName, kem::text::TextOf(source.fileName));
  return result;
}

KeptAxis KeptX(const PrnType& r) {
  return {r.HasX() ? r.xArray : nullptr, r.xStart, r.xEnd, r.xStep, r.Is3D() ? r.nX : std::min(r.nX, r.nY)};
}
KeptAxis KeptY(const PrnType& r) { return {r.HasY() ? r.yArray : nullptr, r.yStart, r.yEnd, r.yStep, r.nY}; }

KeptAxis Inner(const KeptAxis& axis, int margin) {
  const float width = static_cast<float>(margin) * axis.step;
  return {axis.stored ? axis.stored + margin : nullptr, axis.start + width, axis.end - width, axis.step,
          axis.count - 2 * margin};
}

void SetX(PrnType& r, const KeptAxis& axis) { Set(axis, r.xArray, r.xStart, r.xEnd, r.xStep); }
void SetY(PrnType& r, const KeptAxis& axis) { Set(axis, r.yArray, r.yStart, r.yEnd, r.yStep); }

std::unique_ptr<PrnType> NewProfile(const PrnType& source, const KeptAxis& axis) {
  auto profile = NewResult(source, axis.stored ? AllocXY : AllocY, axis.count);
  profile->fileType = FileCvt;
  SetX(*profile, axis);
  return profile;
}

}  // namespace kem::analysis
