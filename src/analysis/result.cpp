#include "analysis/result.h"

#include <algorithm>

#include "text/fields.h"

namespace kem::analysis {
using namespace text;
std::unique_ptr<PrnType> NewResult(const PrnType& source, int type, int count1, int count2) {
  auto result = std::make_unique<PrnType>(static_cast<AllocType>(type), count1, count2);
  result->active = 1;
  CopyText(result->fileName, TextOf(source.fileName));
  return result;
}

KeptAxis Kept(const PrnType& r, const record::AxisFields& axis) {
  const int count = r.Is3D() ? r.*axis.count : axis.bit == AllocX ? std::min(r.nX, r.nY) : r.nY;
  return {axis.IsStoredIn(r) ? r.*axis.values : nullptr, r.*axis.start, r.*axis.end, r.*axis.step, count};
}

KeptAxis Inner(const KeptAxis& axis, int margin) {
  const float width = static_cast<float>(margin) * axis.step;
  return {axis.stored ? axis.stored + margin : nullptr, axis.start + width, axis.end - width, axis.step,
          axis.count - 2 * margin};
}

void SetAxis(PrnType& r, const record::AxisFields& axis, const KeptAxis& as) {
  if (as.stored)
    std::copy_n(as.stored, as.count, r.*axis.values);
  else
    axis.Define(r, as.start, as.end, as.step);
}

std::unique_ptr<PrnType> NewProfile(const PrnType& source, const KeptAxis& axis) {
  auto profile = NewResult(source, axis.stored ? AllocXY : AllocY, axis.count);
  profile->fileType = FileCvt;
  SetAxis(*profile, record::kX, axis);
  return profile;
}

}  // namespace kem::analysis
