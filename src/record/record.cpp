// Storage, construction and copying of a record.
#include <algorithm>
#include <cstring>
#include <utility>

#include "record/findings.h"
#include "record/headers.h"
#include "record/storage.h"
#include "text/fields.h"

using kem::text::CopyText;
using kem::text::TextOf;

void (*ExtensionCreateHook)(void** extension) = nullptr;
void (*ExtensionFreeHook)(void** extension) = nullptr;
void (*ExtensionCopyHook)(void* destination, void* source) = nullptr;
void (*ExtensionPrintHook)(void* extension) = nullptr;

namespace kem::record {
using namespace text;
namespace {

std::unique_ptr<float[]> CopyOf(const float* values, int count) {
  auto copy = NewArray(count);
  std::copy_n(values, count, copy.get());
  return copy;
}

// A curve's X array is as long as its values. Where its count says more, the last coordinate fills the copy up.
std::unique_ptr<float[]> CopyOfX(const PrnType& src) {
  const int stored = src.Is3D() ? src.nX : src.nY;
  auto copy = NewArray(std::max(src.nX, stored));
  std::copy_n(src.xArray, stored, copy.get());
  for (int k = std::max(stored, 0); k < src.nX; ++k) copy[k] = k > 0 ? copy[k - 1] : 0;
  return copy;
}

Grid CopyOf(float* const* rows, int nX, int nY) {
  Grid copy = NewGrid(nX, nY);
  for (int i = 0; i < nX; ++i) std::copy_n(rows[i], nY, copy[i]);
  return copy;
}

void ClearAxes(PrnType& record) {
  record.xStep = 1;
  record.xStart = 0;
  record.yStep = 1;
  record.yStart = 0;
  record.yEnd = 1;
  record.zMin = 0;
  record.zMax = 1;
}

void CreateExtension(PrnType& record) {
  record.extension = nullptr;
  if (ExtensionCreateHook && Found().forHost) ExtensionCreateHook(&record.extension);
}

void CopyExtension(PrnType& record, const PrnType& src) {
  CreateExtension(record);
  if (ExtensionCopyHook && Found().forHost) ExtensionCopyHook(record.extension, src.extension);
}

// What a record says about its arrays.
void CopyShape(PrnType& to, const PrnType& src) {
  to.allocType = src.allocType;
  to.xStep = src.xStep;
  to.xStart = src.xStart;
  to.xEnd = src.xEnd;
  to.yStep = src.yStep;
  to.yStart = src.yStart;
  to.yEnd = src.yEnd;
  to.zMin = src.zMin;
  to.zMax = src.zMax;
  to.nX = src.nX;
  to.nY = src.nY;
}

// What becomes of the values, a curve's Y array or a grid, when a record is copied.
enum class Values { Copied, Open };

Arrays CopyOfArrays(const PrnType& src, Values values) {
  const bool owns = OwnsArrays(src.allocType);
  const bool open = values == Values::Open;
  auto x = owns && src.HasX() ? CopyOfX(src) : nullptr;
  auto y = !owns || !src.HasY() ? nullptr : open && !src.Is3D() ? NewArray(src.nY) : CopyOf(src.yArray, src.nY);
  Grid z = !owns || !src.Is3D() ? nullptr : open ? NewGrid(src.nX, src.nY) : CopyOf(src.zArray, src.nX, src.nY);
  return {src.nX, src.nY, std::move(x), std::move(y), std::move(z)};
}

void CopyWith(PrnType& to, const PrnType& src, Arrays arrays) {
  CopyShape(to, src);
  to.nX = arrays.nX;
  to.nY = arrays.nY;
  Own(to.xArray, std::move(arrays.x));
  Own(to.yArray, std::move(arrays.y));
  Own(to.zArray, std::move(arrays.z));
}

// The arrays change hands; the source is left empty, its extension as it is.
void TakeArrays(PrnType& to, PrnType& src) {
  const bool owns = OwnsArrays(src.allocType);
  CopyShape(to, src);
  to.xArray = owns && src.HasX() ? src.xArray : nullptr;
  to.yArray = owns && src.HasY() ? src.yArray : nullptr;
  to.zArray = owns && src.Is3D() ? src.zArray : nullptr;
  src.allocType = AllocNone;
  src.nX = 0;
  src.nY = 0;
}

void CopyField(PrnType& record, const PrnType& src, const KemParameter& field) {
  const auto* from = static_cast<const char*>(field.in(src));
  auto* to = const_cast<char*>(static_cast<const char*>(field.in(record)));
  const auto count = static_cast<std::size_t>(field.count);
  switch (field.kind) {
    case KemParameterKind::Text:
      for (std::size_t k = 0; k < count; ++k) CopyText(to + k * kTextSize, TextOfField(from + k * kTextSize));
      break;
    case KemParameterKind::Int:
      std::memcpy(to, from, count * sizeof(int));
      break;
    case KemParameterKind::Float:
      std::memcpy(to, from, count * sizeof(float));
      break;
    case KemParameterKind::Bytes:
      std::memcpy(to, from, count);
      break;
  }
}

}  // namespace

EmptyOnThrow::~EmptyOnThrow() {
  if (std::uncaught_exceptions() == exceptions_) return;
  if (!record_) RestoreExtension(record_, extension_);
  record_.DeAllocate();
  record_.nX = 0;
  record_.nY = 0;
}

void RestoreExtension(PrnType& record, void* earlier) {
  if (record.extension != earlier && record.extension && ExtensionFreeHook && Found().forHost)
    ExtensionFreeHook(&record.extension);
  record.extension = earlier;
}

void Reset(PrnType& record) {
  record.xArray = nullptr;
  record.yArray = nullptr;
  record.zArray = nullptr;
  record.fileType = FileCvt;
  record.allocType = AllocNone;
  record.nX = 0;
  record.nY = 0;
  ClearAxes(record);
  CopyText(record.xLabel, "X");
  CopyText(record.yLabel, "Y");
  CreateExtension(record);
}

PrnType CopyWith(const PrnType& src, Arrays arrays) {
  PrnType copy;
  copy.active = src.active;
  CopyText(copy.fileName, TextOf(src.fileName));
  CopyWith(copy, src, std::move(arrays));
  copy.CopyHeader(src);
  if (ExtensionCopyHook && Found().forHost) ExtensionCopyHook(copy.extension, src.extension);
  return copy;
}

PrnType CopyWithoutValues(const PrnType& src) { return CopyWith(src, CopyOfArrays(src, Values::Open)); }

}  // namespace kem::record

using namespace kem::record;

PrnType::PrnType(AllocType type, int count1, int count2) { Allocate(type, count1, count2); }

PrnType::PrnType(const char* name, int index) { ReadFile(name, index); }

PrnType::PrnType(const PrnType& src) {
  const EmptyOnThrow guard(*this);
  Reset(*this);
  active = src.active;
  CopyText(fileName, TextOf(src.fileName));
  CopyData(src);
  CopyHeader(src);
  CopyExtension(*this, src);
}

PrnType::PrnType(PrnType&& src) noexcept
    : fileType(src.fileType), active(src.active), extension(std::exchange(src.extension, nullptr)) {
  std::memcpy(fileName, src.fileName, sizeof fileName);
  std::memcpy(headerArea, src.headerArea, sizeof headerArea);
  TakeArrays(*this, src);
}

PrnType::~PrnType() { DeAllocate(); }

PrnType PrnType::operator=(const PrnType& src) {
  if (this == &src) return *this;
  CopyData(src);
  const EmptyOnThrow guard(*this);
  active = src.active;
  CopyText(fileName, TextOf(src.fileName));
  CopyHeader(src);
  CopyExtension(*this, src);
  return *this;
}

PrnType PrnType::operator=(PrnType&& src) {  // NOLINT(performance-noexcept-move-constructor)
  const bool hooked = Found().forHost && (ExtensionCreateHook || ExtensionFreeHook || ExtensionCopyHook);
  if (hooked || this == &src) return *this = std::as_const(src);
  DeAllocate();
  const EmptyOnThrow guard(*this);
  active = src.active;
  CopyText(fileName, TextOf(src.fileName));
  TakeArrays(*this, src);
  CopyHeader(src);
  extension = nullptr;
  return *this;
}

int PrnType::HasX() const { return allocType & AllocX; }
int PrnType::HasY() const { return allocType & AllocY; }
int PrnType::Is3D() const { return allocType & AllocZ; }
int PrnType::operator!() const { return allocType == AllocNone; }

void PrnType::Allocate(AllocType type, int count1, int count2) {
  ClearAxes(*this);
  xArray = nullptr;
  yArray = nullptr;
  zArray = nullptr;
  extension = nullptr;
  allocType = AllocNone;  // until all arrays are there
  const EmptyOnThrow guard(*this);
  if (type == AllocNone || OwnsArrays(type)) {
    const bool grid = (type & AllocZ) != 0;
    const int columns = grid ? count2 : count1;
    auto x = type & AllocX ? NewArray(count1) : nullptr;
    auto y = type & AllocY ? NewArray(columns) : nullptr;
    Grid z = grid ? NewGrid(count1, columns) : nullptr;
    Own(xArray, std::move(x));
    Own(yArray, std::move(y));
    Own(zArray, std::move(z));
    fileType = grid ? FileP3D : type == AllocXY ? FileXY : FileCvt;
    nX = type == AllocNone ? 0 : count1;
    nY = type == AllocNone ? 0 : columns;
  }
  allocType = type;
  if (fileType == FileCvt || fileType == FileXY || fileType == FileP3D) {
    CopyText(xLabel, "X");
    CopyText(yLabel, "Y");
    if (fileType != FileCvt) CopyText(zLabel, fileType == FileP3D ? "Z" : "");
    if (fileType == FileP3D) std::memset(commentLines, 0, sizeof commentLines);
  }
  CreateExtension(*this);
}

void PrnType::DeAllocate() {
  if (allocType == AllocNone) return;
  if (OwnsArrays(allocType)) {
    if (HasX()) delete[] xArray;
    if (HasY()) delete[] yArray;
    if (Is3D()) GridDeleter{nX}(zArray);
  }
  allocType = AllocNone;
  nX = 0;
  nY = 0;
  if (!ExtensionFreeHook || !Found().forHost) return;
  ExtensionFreeHook(&extension);
  extension = nullptr;
}

void PrnType::CopyData(const PrnType& src) {
  if (this == &src) return;
  DeAllocate();
  CopyWith(*this, src, CopyOfArrays(src, Values::Copied));
}

void PrnType::CopyHeader(const PrnType& src) {
  if (this == &src) return;
  fileType = src.fileType;
  const FileTypeRow& row = RowOf(fileType);
  if (!row.copied) return;
  for (const auto fields : {row.texts, row.parameters})
    for (const KemParameter& field : fields) CopyField(*this, src, field);
}

void PrnType::__autoclassinit2(std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  std::memset(static_cast<void*>(this), 0, std::min(size, sizeof *this));
}
