// The record as a value: every operation runs aside from the library's globals and hooks.
#include <algorithm>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include "analysis/axis.h"
#include "analysis/interpolate.h"
#include "analysis/result.h"
#include "dataset/of_record.h"
#include "dataset/source.h"
#include "host/detect.h"
#include "kem/dataset.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/words.h"

namespace kem {
namespace {

using record::Aside;

constexpr std::string_view kNoGrid = "is a curve; only grids have a Y axis";

[[noreturn]] void Refuse(const PrnType& r, std::string_view problem) {
  const std::string subject(*r.fileName ? text::TextOf(r.fileName) : "the record");
  throw Error(ErrorCode::DoesNotFit, subject + ": " + std::string(problem));
}

void NeedGrid(const PrnType& r) {
  if (!r.Is3D()) Refuse(r, kNoGrid);
}

struct Operator {
  char sign;
  PrnType (PrnType::*withRecord)(const PrnType&) const;
  PrnType (PrnType::*withNumber)(const float&) const;
};

constexpr Operator kOperators[] = {
    {'+', (&PrnType::operator+), (&PrnType::operator+)}, {'-', (&PrnType::operator-), (&PrnType::operator-)},
    {'*', (&PrnType::operator*), (&PrnType::operator*)}, {'/', (&PrnType::operator/), (&PrnType::operator/)},
    {'^', (&PrnType::operator^), (&PrnType::operator^)}, {'&', (&PrnType::operator&), nullptr}};

const Operator& OperatorOf(char sign) {
  return *std::find_if(std::begin(kOperators), std::end(kOperators),
                       [sign](const Operator& o) { return o.sign == sign; });
}

// Results come by value or, to be released, by reference.
std::unique_ptr<PrnType> Owned(PrnType&& result) { return std::make_unique<PrnType>(std::move(result)); }
std::unique_ptr<PrnType> Owned(PrnType& result) { return std::unique_ptr<PrnType>(&result); }

std::unique_ptr<PrnType> NewRecord() {
  const Aside aside;
  return std::make_unique<PrnType>();
}

}  // namespace

// ------------------------------------------------------------ making

Record::Record() : record_(NewRecord()) {}
Record::Record(std::unique_ptr<PrnType> record) : record_(std::move(record)) {}
Record::Record(Record&& other) noexcept = default;

Record::~Record() {
  const Aside aside;
  record_.reset();
}

Record::Record(const Record& other) {
  const Aside aside;
  record_ = std::make_unique<PrnType>(*other);
}

Record& Record::operator=(const Record& other) { return *this = Record(other); }

Record& Record::operator=(Record&& other) noexcept {
  std::swap(record_, other.record_);
  return *this;
}

Record::Record(PrnType&& record) : record_(std::make_unique<PrnType>(std::move(record))) {}

Record Record::Curve(std::span<const float> values, std::span<const float> x) {
  Dataset d;
  if (!x.empty() && x.size() != values.size())
    throw Error(ErrorCode::DoesNotFit, std::to_string(values.size()) + " values and " + std::to_string(x.size()) +
                                           " coordinates do not make a curve");
  const double last = values.empty() ? 0 : static_cast<double>(values.size() - 1);
  d.axes = {x.empty() ? Axis::Linear("X", "", values.size(), 0, last)
                      : Axis::Stored("X", "", {x.begin(), x.end()})};
  d.name = "Y";
  d.values = Values::Of(values);
  return d.ToRecord();
}

Record Record::Grid(std::span<const float> values, std::span<const float> x, std::span<const float> y) {
  Dataset d;
  if (values.size() != x.size() * y.size())
    throw Error(ErrorCode::DoesNotFit, std::to_string(values.size()) + " values do not make a grid of " +
                                           std::to_string(x.size()) + " x " + std::to_string(y.size()));
  d.axes = {Axis::Stored("Y", "", {y.begin(), y.end()}), Axis::Stored("X", "", {x.begin(), x.end()})};
  d.name = "Z";
  d.values = Values::Of(values);
  return d.ToRecord();
}

Record Record::Classic(const std::filesystem::path& file, int item) {
  const dataset::Source source(file);  // tells why a file cannot be opened
  const std::string name = dataset::NameOf(file);
  if (name.size() >= kTextSize)
    dataset::Fail(ErrorCode::NotReadable, file,
                  "has a path of more than 131 bytes; the classic reading takes no longer one");
  Aside aside;
  const auto load = [&](int index) {
    aside.readNext = index;
    return std::make_unique<PrnType>(name.c_str(), index);
  };
  auto record = load(0);  // of most files all that they hold
  const bool several = aside.readNext != 0;
  std::vector<int> indices(!*record || several ? 0 : 1);
  if (several)
    KemItems(
        name.c_str(),
        [](const KemItem& one, void* to) { static_cast<std::vector<int>*>(to)->push_back(one.index); }, &indices);
  if (!indices.empty() && (item < 1 || static_cast<std::size_t>(item) > indices.size()))
    dataset::Fail(ErrorCode::NoSuchItem, file,
                  "holds no item " + std::to_string(item) + ", but " + std::to_string(indices.size()));
  if (several && !indices.empty()) record = load(indices[static_cast<std::size_t>(item) - 1]);
  if (!*record) {
    const std::string said(text::Trimmed(aside.messages.str()));
    const char* format = KemFormatName(name.c_str());
    if (!format) dataset::Fail(ErrorCode::UnknownFormat, file, "unknown format");
    dataset::Fail(ErrorCode::NotReadable, file,
                  std::string("recognised as ") + format +
                      (said.empty() ? ", but kem cannot read this layout" : ": " + said));
  }
  return Record(std::move(record));
}

// ------------------------------------------------------------ operations

template <class Operation>
Record Record::Made(Operation operation, std::string_view why) const {
  const Aside aside;
  auto result = Owned(operation(static_cast<const PrnType&>(*record_)));
  if (!*result) Refuse(*record_, why.empty() ? "holds no data" : why);
  return Record(std::move(result));
}

Record Record::With(char sign, const Record& other) const {
  const char* why = IsGrid() != other.IsGrid() ? "a curve and a grid do not go together"
                    : sign == '&'              ? "their counts of points differ"
                                               : "their axes do not go together";
  return Made([&](const PrnType& r) { return (r.*OperatorOf(sign).withRecord)(*other); }, why);
}

Record Record::With(char sign, float number) const {
  return Made([&](const PrnType& r) { return (r.*OperatorOf(sign).withNumber)(number); },
              number == 0 ? "a division by 0 and the power 0 are not defined" : "");
}

Record Record::operator-() const {
  return Made([](const PrnType& r) { return -r; });
}

Record Record::Exp() const { return Made(std::mem_fn(&PrnType::Exp)); }
Record Record::Log() const { return Made(std::mem_fn(&PrnType::Log)); }
Record Record::Ln() const { return Made(std::mem_fn(&PrnType::Ln)); }
Record Record::Sin() const { return Made(std::mem_fn(&PrnType::Sin)); }
Record Record::Cos() const { return Made(std::mem_fn(&PrnType::Cos)); }
Record Record::Tan() const { return Made(std::mem_fn(&PrnType::Tan)); }
Record Record::ASin() const { return Made(std::mem_fn(&PrnType::ASin)); }
Record Record::ACos() const { return Made(std::mem_fn(&PrnType::ACos)); }
Record Record::ATan() const { return Made(std::mem_fn(&PrnType::ATan)); }
Record Record::SinH() const { return Made(std::mem_fn(&PrnType::SinH)); }
Record Record::CosH() const { return Made(std::mem_fn(&PrnType::CosH)); }
Record Record::TanH() const { return Made(std::mem_fn(&PrnType::TanH)); }
Record Record::ASinH() const { return Made(std::mem_fn(&PrnType::ASinH)); }
Record Record::ACosH() const { return Made(std::mem_fn(&PrnType::ACosH)); }
Record Record::ATanH() const { return Made(std::mem_fn(&PrnType::ATanH)); }
Record Record::Inv() const { return Made(std::mem_fn(&PrnType::Inv)); }

Record Record::Set(float constant) const {
  return Made([constant](const PrnType& r) { return r.Set(constant); });
}

Record Record::AxisOp(Along axis, std::string_view operation, float value) const {
  constexpr std::string_view kKnown[] = {"+",    "-",    "*",    "/",     "^",     "s",    "inv",  "exp",
                                         "log",  "ln",   "sin",  "cos",   "tan",   "asin", "acos", "atan",
                                         "sinh", "cosh", "tanh", "asinh", "acosh", "atanh"};
  if (std::find(std::begin(kKnown), std::end(kKnown), operation) == std::end(kKnown))
    Refuse(*record_, "there is no axis operation " + std::string(operation));
  if (axis == Along::Y) NeedGrid(*record_);
  std::string name(operation);
  return Made([&](const PrnType& r) { return r.AxisOp(axis == Along::X ? 'x' : 'y', name.data(), value); });
}

// ------------------------------------------------------------ looking

std::vector<float> Record::Coordinates(Along axis) const {
  if (axis == Along::Y) NeedGrid(*record_);
  const auto values = analysis::ValuesOf(*record_, axis == Along::X ? record::kX : record::kY);
  return {values.data(), values.data() + values.size()};
}

float Record::At(float x, float y) const { return record_->At(x, y); }
float Record::Nearest(float x, float y) const { return record_->Nearest(x, y); }
bool Record::SameAxes(const Record& other) const { return record_->SameAxes(*other) != 0; }

Dataset Record::ToDataset() const {
  if (!*record_) Refuse(*record_, "holds no data");
  return dataset::OfRecord(*record_);
}

// ------------------------------------------------------------ reshaping

Record Record::Resample(std::span<const float> xs, std::span<const float> ys) const {
  if (IsGrid() == ys.empty()) Refuse(*record_, IsGrid() ? "is a grid and needs coordinates along Y" : kNoGrid);
  return Made(
      [&](const PrnType& r) -> PrnType& {
        return *(r.Is3D() ? analysis::Resampled(r, xs, ys) : analysis::Resampled(r, xs)).release();
      },
      "cannot be resampled");
}

Record Record::Resample(float from, float to, float step) const {
  if (IsGrid()) Refuse(*record_, "is a grid and needs coordinates along Y");
  return Made([&](const PrnType& r) -> PrnType& { return r.InterpolateY(from, to, step); }, "cannot be resampled");
}

Record Record::Slice(Along axis, float from, float to, bool mean) const {
  NeedGrid(*record_);
  return Made([&](const PrnType& r) -> PrnType& {
    return axis == Along::X ? r.XSlice(from, to, mean) : r.YSlice(from, to, mean);
  });
}

Record Record::Cut(float x1, float x2) const {
  if (IsGrid()) Refuse(*record_, "is a grid and needs bounds along Y");
  return Cut(x1, x2, 0, 0);
}

Record Record::Cut(float x1, float x2, float y1, float y2) const {
  return Made([&](const PrnType& r) -> PrnType& { return r.Cut(x1, x2, y1, y2); },
              "has no samples within the bounds");
}

Record Record::DeleteClosest(float x, float y) const {
  return Made([&](const PrnType& r) -> PrnType& { return r.DeleteClosest(x, y); },
              "is no curve of two points or more");
}

Record Record::Reduce(int fx, int fy) const {
  return Made([&](const PrnType& r) -> PrnType& { return r.Reduce(fx, fy); }, "has fewer samples than become one");
}

Record Record::Sorted() const {
  Record sorted(*this);
  const Aside aside;
  sorted.record_->SortAxes();
  return sorted;
}

Record Record::Swapped() const {
  const Aside aside;
  return Record(Owned(analysis::Swapped(*record_)));
}

// ------------------------------------------------------------ filters, differences, integrals

Record Record::Median(int width) const {
  return Made([&](const PrnType& r) -> PrnType& { return r.Is3D() ? r.Median3D(width) : r.Median2D(width); });
}

Record Record::Smooth(int width, Along axis) const {
  if (axis == Along::Y) NeedGrid(*record_);
  return Made([&](const PrnType& r) -> PrnType& { return axis == Along::X ? r.XSmooth(width) : r.YSmooth(width); },
              "cannot be smoothed: widths are 5, 7, 9, 13, 17 and 21, and there must be more samples than that");
}

Record Record::Diff(Along axis) const {
  if (axis == Along::Y) NeedGrid(*record_);
  return Made([&](const PrnType& r) -> PrnType& { return axis == Along::X ? r.XDiff() : r.YDiff(); },
              "has fewer than 16 samples");
}

float Record::Integral(float x1, float x2) const {
  if (IsGrid()) Refuse(*record_, "is a grid and needs bounds along Y");
  return Integral(x1, x2, 0, 0);
}

float Record::Integral(float x1, float x2, float y1, float y2) const {
  const Aside aside;
  return record_->Integral(x1, x2, y1, y2);
}

float Record::AbsIntegral(float x1, float x2) const {
  if (IsGrid()) Refuse(*record_, "is a grid and needs bounds along Y");
  return AbsIntegral(x1, x2, 0, 0);
}

float Record::AbsIntegral(float x1, float x2, float y1, float y2) const {
  const Aside aside;
  return record_->AbsIntegral(x1, x2, y1, y2);
}

Record Record::IntegralAlong(Along axis, float from, float to) const {
  NeedGrid(*record_);
  return Made(
      [&](const PrnType& r) -> PrnType& {
        return axis == Along::X ? r.IntegrateY(from, to) : r.IntegrateX(from, to);
      },
      "has no samples within the bounds");
}

Record Record::RunningIntegral() const {
  return Made([](const PrnType& r) -> PrnType& { return r.RunningIntegral(); }, "is no curve");
}

// ------------------------------------------------------------ baselines and statistics

Record Record::Baseline(float at1, float at2, Along axis) const {
  if (axis == Along::Y) NeedGrid(*record_);
  Record corrected(*this);
  const Aside aside;
  if (axis == Along::X)
    corrected.record_->SubLinBackX(at1, at2);
  else
    corrected.record_->SubLinBackY(at1, at2);
  return corrected;
}

Record Record::Slant(float x1, float target1, float x2, float target2) const {
  Record slanted(*this);
  const Aside aside;
  slanted.record_->Slant(x1, target1, x2, target2);
  return slanted;
}

float Record::NoiseLevel() const { return record_->NoiseLevel(); }

HistogramCounts Record::Histogram(int parts) const {
  HistogramCounts h;
  h.counts.resize(static_cast<std::size_t>(std::max(parts, 0)));
  record_->Histogram(parts, h.counts.data(), h.low, h.high);
  return h;
}

}  // namespace kem
