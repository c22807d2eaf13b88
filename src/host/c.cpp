// The C face: handles around datasets and records, failures as codes and sentences.
#include "kem/c.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <optional>

#include "kem/dataset.h"
#include "load/files.h"
#include "record/tiles.h"

struct kem_dataset {
  kem::Dataset data;
  std::string file;
};
struct kem_items {
  std::vector<kem::ItemInfo> list;
};
struct kem_record {
  kem::Record record;
};

namespace {

using kem::Along;
using kem::Record;

static_assert(KEM_NOT_FOUND == static_cast<int>(kem::ErrorCode::NotFound) + 1 &&
              KEM_OUT_OF_MEMORY == static_cast<int>(kem::ErrorCode::OutOfMemory) + 1);
static_assert(KEM_F64 == static_cast<int>(kem::NumberType::F64) &&
              KEM_PHASE == static_cast<int>(kem::Part::Phase) &&
              KEM_DAMAGE == static_cast<int>(kem::Severity::Damaged));

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// ------------------------------------------------------------ failures

// A sentence that is too long ends before the character that does not fit.
void Fill(kem_error* error, kem_code code, const char* sentence) {
  if (!error) return;
  error->code = code;
  std::size_t length = std::min(std::strlen(sentence), sizeof error->sentence - 1);
  while (length > 0 && (sentence[length] & 0xC0) == 0x80) --length;
  std::memcpy(error->sentence, sentence, length);
  error->sentence[length] = '\0';
}

// What a wrong argument ends in.
struct WrongArgument {
  const char* sentence;
};

// Gives what `work` does, or `otherwise` where that fails.
template <class Result, class Work>
Result Guarded(kem_error* error, Result otherwise, Work work) try {
  Fill(error, KEM_OK, "");
  return work();
} catch (const kem::Error& failure) {
  Fill(error, static_cast<kem_code>(static_cast<int>(failure.Code()) + 1), failure.what());
  return otherwise;
} catch (const WrongArgument& wrong) {
  Fill(error, KEM_WRONG_ARGUMENT, wrong.sentence);
  return otherwise;
} catch (const std::bad_alloc&) {
  Fill(error, KEM_OUT_OF_MEMORY, "there is not enough memory");
  return otherwise;
} catch (const std::exception& failure) {
  Fill(error, KEM_WRONG_ARGUMENT, failure.what());
  return otherwise;
}

// For functions that give nothing but a code.
template <class Work>
int32_t Coded(kem_error* error, Work work) {
  kem_error here;
  kem_error& told = error ? *error : here;
  Guarded(&told, 0, [&] { return work(), 0; });
  return told.code;
}

template <class Handle, class Work>
Handle* NewHandle(kem_error* error, Work work) {
  return Guarded<Handle*>(error, nullptr, [&] { return new Handle{work()}; });
}

std::filesystem::path PathOf(const char* file) {
  if (!file) throw WrongArgument{"no file is named"};
  return kem::load::PathOf(file);
}

std::string Utf8(const std::filesystem::path& path) {
  const auto text = path.u8string();
  return {text.begin(), text.end()};
}

// Coordinates or values from C, which may be none.
std::span<const float> Floats(const float* numbers, std::size_t count) {
  return numbers ? std::span(numbers, count) : std::span<const float>();
}

// One of several, or what stands for none.
template <class All, class Get>
auto Of(const All* all, std::size_t k, Get get) {
  using Result = decltype(get((*all)[k]));
  const bool there = all && k < all->size();
  if constexpr (std::is_same_v<Result, const char*>)
    return there ? get((*all)[k]) : "";
  else
    return there ? get((*all)[k]) : Result();
}

const std::vector<kem::Axis>* Axes(const kem_dataset* d) { return d ? &d->data.axes : nullptr; }
const std::vector<kem::Parameter>* Parameters(const kem_dataset* d) { return d ? &d->data.parameters : nullptr; }
const std::vector<kem::Note>* Notes(const kem_dataset* d) { return d ? &d->data.notes : nullptr; }

// ------------------------------------------------------------ operations by name

struct Call {
  const Record& record;
  std::span<const double> arguments;
  const Record* other;

  float operator[](std::size_t k) const { return k < arguments.size() ? static_cast<float>(arguments[k]) : 0; }
  int Int(std::size_t k, int otherwise = 0) const {
    if (k >= arguments.size()) return otherwise;
    constexpr double kMost = std::numeric_limits<int>::max();
    return static_cast<int>(arguments[k] >= -kMost && arguments[k] <= kMost ? arguments[k] : 0);
  }
  Along Axis(std::size_t k) const { return Int(k) == 0 ? Along::X : Along::Y; }
  bool OfGrid() const { return arguments.size() == 4; }
};

Record Like(const Record& record, const Record& other) {
  const std::vector<float> x = other.Coordinates(Along::X);
  return record.IsGrid() ? record.Resample(x, other.Coordinates(Along::Y)) : record.Resample(x);
}

// An operation with its arguments as users read them; those in brackets may be left out.
template <class Result>
struct Named {
  std::string_view text;
  Result (*apply)(const Call&);
};

constexpr Named<Record> kOperations[] = {
    {"+ [number]", [](const Call& c) { return c.other ? c.record + *c.other : c.record + c[0]; }},
    {"- [number]", [](const Call& c) { return c.other ? c.record - *c.other : c.record - c[0]; }},
    {"* [number]", [](const Call& c) { return c.other ? c.record * *c.other : c.record * c[0]; }},
    {"/ [number]", [](const Call& c) { return c.other ? c.record / *c.other : c.record / c[0]; }},
    {"power [number]", [](const Call& c) { return c.other ? c.record.Power(*c.other) : c.record.Power(c[0]); }},
    {"exp", [](const Call& c) { return c.record.Exp(); }},
    {"log", [](const Call& c) { return c.record.Log(); }},
    {"ln", [](const Call& c) { return c.record.Ln(); }},
    {"sin", [](const Call& c) { return c.record.Sin(); }},
    {"cos", [](const Call& c) { return c.record.Cos(); }},
    {"tan", [](const Call& c) { return c.record.Tan(); }},
    {"asin", [](const Call& c) { return c.record.ASin(); }},
    {"acos", [](const Call& c) { return c.record.ACos(); }},
    {"atan", [](const Call& c) { return c.record.ATan(); }},
    {"sinh", [](const Call& c) { return c.record.SinH(); }},
    {"cosh", [](const Call& c) { return c.record.CosH(); }},
    {"tanh", [](const Call& c) { return c.record.TanH(); }},
    {"asinh", [](const Call& c) { return c.record.ASinH(); }},
    {"acosh", [](const Call& c) { return c.record.ACosH(); }},
    {"atanh", [](const Call& c) { return c.record.ATanH(); }},
    {"inv", [](const Call& c) { return c.record.Inv(); }},
    {"set number", [](const Call& c) { return c.record.Set(c[0]); }},
    {"product record", [](const Call& c) { return c.record.Product(*c.other); }},
    {"resample_like record", [](const Call& c) { return Like(c.record, *c.other); }},
    {"resample from to step", [](const Call& c) { return c.record.Resample(c[0], c[1], c[2]); }},
    {"slice axis from to [mean]",
     [](const Call& c) { return c.record.Slice(c.Axis(0), c[1], c[2], c.Int(3) != 0); }},
    {"cut x1 x2 [y1] [y2]",
     [](const Call& c) { return c.OfGrid() ? c.record.Cut(c[0], c[1], c[2], c[3]) : c.record.Cut(c[0], c[1]); }},
    {"delete_closest x y", [](const Call& c) { return c.record.DeleteClosest(c[0], c[1]); }},
    {"reduce fx [fy]", [](const Call& c) { return c.record.Reduce(c.Int(0), c.Int(1, 1)); }},
    {"sorted", [](const Call& c) { return c.record.Sorted(); }},
    {"swapped", [](const Call& c) { return c.record.Swapped(); }},
    {"median width", [](const Call& c) { return c.record.Median(c.Int(0)); }},
    {"smooth width [axis]", [](const Call& c) { return c.record.Smooth(c.Int(0), c.Axis(1)); }},
    {"diff [axis]", [](const Call& c) { return c.record.Diff(c.Axis(0)); }},
    {"integral_along axis from to", [](const Call& c) { return c.record.IntegralAlong(c.Axis(0), c[1], c[2]); }},
    {"running_integral", [](const Call& c) { return c.record.RunningIntegral(); }},
    {"baseline at1 at2 [axis]", [](const Call& c) { return c.record.Baseline(c[0], c[1], c.Axis(2)); }},
    {"slant x1 target1 x2 target2", [](const Call& c) { return c.record.Slant(c[0], c[1], c[2], c[3]); }},
};

constexpr Named<float> kMeasures[] = {
    {"at x [y]", [](const Call& c) { return c.record.At(c[0], c[1]); }},
    {"nearest x [y]", [](const Call& c) { return c.record.Nearest(c[0], c[1]); }},
    {"integral x1 x2 [y1] [y2]",
     [](const Call& c) {
       return c.OfGrid() ? c.record.Integral(c[0], c[1], c[2], c[3]) : c.record.Integral(c[0], c[1]);
     }},
    {"abs_integral x1 x2 [y1] [y2]",
     [](const Call& c) {
       return c.OfGrid() ? c.record.AbsIntegral(c[0], c[1], c[2], c[3]) : c.record.AbsIntegral(c[0], c[1]);
     }},
    {"noise_level", [](const Call& c) { return c.record.NoiseLevel(); }},
};

std::string_view NameOf(std::string_view text) { return text.substr(0, text.find(' ')); }

// Whether that many arguments go with the text. Another record takes the place of all.
bool Suits(std::string_view text, const Call& call) {
  const auto most = static_cast<std::size_t>(std::count(text.begin(), text.end(), ' '));
  const auto optional = static_cast<std::size_t>(std::count(text.begin(), text.end(), '['));
  const std::size_t count = call.arguments.size();
  if (text.ends_with(" record")) return count == 0 && call.other;
  if (text.ends_with(" [number]")) return (count == 1) != (call.other != nullptr);
  return !call.other && count >= most - optional && count <= most;
}

template <class Result, std::size_t n>
Result Apply(const Named<Result> (&named)[n], const char* name, const Call& call) {
  const auto* found = std::find_if(named, named + n, [&](const auto& one) { return NameOf(one.text) == name; });
  if (found == named + n) throw WrongArgument{"there is no such operation"};
  if (!Suits(found->text, call)) throw WrongArgument{"the operation takes other arguments"};
  return found->apply(call);
}

Call CallOf(const kem_record* record, const char* name, const double* arguments, std::size_t count,
            const kem_record* other) {
  if (!record || !name) throw WrongArgument{"there is no record, or no operation"};
  return {record->record, arguments ? std::span(arguments, count) : std::span<const double>(),
          other ? &other->record : nullptr};
}

int32_t CopyCoordinates(const kem_record* record, Along axis, float* to, kem_error* error) {
  return Coded(error, [&] {
    if (!record || !to) throw WrongArgument{"there is no record, or no place for its coordinates"};
    const std::vector<float> coordinates = record->record.Coordinates(axis);
    std::copy(coordinates.begin(), coordinates.end(), to);
  });
}

}  // namespace

// ---------------------------------------------------------------- versions

int32_t kem_c_version() { return KEM_C_VERSION; }
const char* kem_version() { return KemVersion(); }
size_t kem_error_size() { return sizeof(kem_error); }

// ---------------------------------------------------------------- datasets

kem_dataset* kem_open(const char* file, int32_t item, kem_error* error) {
  return Guarded<kem_dataset*>(error, nullptr, [&] {
    kem::Dataset data = kem::Open(PathOf(file), item);
    std::string name = Utf8(data.file);
    return new kem_dataset{std::move(data), std::move(name)};
  });
}
void kem_dataset_free(kem_dataset* dataset) { delete dataset; }

kem_items* kem_items_of(const char* file, kem_error* error) {
  return NewHandle<kem_items>(error, [&] { return kem::Items(PathOf(file)); });
}
size_t kem_items_count(const kem_items* items) { return items ? items->list.size() : 0; }
const char* kem_items_name(const kem_items* items, size_t k) {
  return Of(items ? &items->list : nullptr, k, [](const auto& item) { return item.name.c_str(); });
}
void kem_items_free(kem_items* items) { delete items; }

const char* kem_dataset_text(const kem_dataset* dataset, kem_text which) {
  if (!dataset) return "";
  const kem::Dataset& d = dataset->data;
  const std::string* texts[] = {&d.title, &d.name, &d.unit, &d.format, &dataset->file, &d.itemName};
  const auto k = static_cast<std::size_t>(which);
  return k < std::size(texts) ? texts[k]->c_str() : "";
}
int32_t kem_item(const kem_dataset* dataset) { return dataset ? dataset->data.item : 0; }
int32_t kem_item_count(const kem_dataset* dataset) { return dataset ? dataset->data.items : 0; }

const void* kem_values(const kem_dataset* dataset) {
  return dataset ? dataset->data.values.Bytes().data() : nullptr;
}
size_t kem_value_count(const kem_dataset* dataset) { return dataset ? dataset->data.values.Count() : 0; }
kem_type kem_value_type(const kem_dataset* dataset) {
  return dataset ? static_cast<kem_type>(dataset->data.values.Type()) : KEM_F64;
}
int32_t kem_is_complex(const kem_dataset* dataset) { return dataset && dataset->data.values.IsComplex() ? 1 : 0; }

size_t kem_rank(const kem_dataset* dataset) { return dataset ? dataset->data.axes.size() : 0; }
const char* kem_axis_name(const kem_dataset* dataset, size_t axis) {
  return Of(Axes(dataset), axis, [](const auto& a) { return a.name.c_str(); });
}
const char* kem_axis_unit(const kem_dataset* dataset, size_t axis) {
  return Of(Axes(dataset), axis, [](const auto& a) { return a.unit.c_str(); });
}
size_t kem_axis_count(const kem_dataset* dataset, size_t axis) {
  return Of(Axes(dataset), axis, [](const auto& a) { return a.Count(); });
}
double kem_axis_at(const kem_dataset* dataset, size_t axis, size_t k) {
  return k < kem_axis_count(dataset, axis) ? dataset->data.axes[axis][k] : kNaN;
}

size_t kem_parameter_count(const kem_dataset* dataset) { return dataset ? dataset->data.parameters.size() : 0; }
const char* kem_parameter_section(const kem_dataset* dataset, size_t k) {
  return Of(Parameters(dataset), k, [](const auto& p) { return p.section.c_str(); });
}
const char* kem_parameter_key(const kem_dataset* dataset, size_t k) {
  return Of(Parameters(dataset), k, [](const auto& p) { return p.key.c_str(); });
}
const char* kem_parameter_value(const kem_dataset* dataset, size_t k) {
  return Of(Parameters(dataset), k, [](const auto& p) { return p.text.c_str(); });
}
const char* kem_parameter_unit(const kem_dataset* dataset, size_t k) {
  return Of(Parameters(dataset), k, [](const auto& p) { return p.unit.c_str(); });
}
double kem_parameter_number(const kem_dataset* dataset, size_t k) {
  return k < kem_parameter_count(dataset) ? dataset->data.parameters[k].number.value_or(kNaN) : kNaN;
}
size_t kem_parameter_find(const kem_dataset* dataset, const char* key) {
  const kem::Parameter* found = dataset && key ? dataset->data.Find(key) : nullptr;
  return found ? static_cast<std::size_t>(found - dataset->data.parameters.data()) : kem_parameter_count(dataset);
}

size_t kem_note_count(const kem_dataset* dataset) { return dataset ? dataset->data.notes.size() : 0; }
const char* kem_note_text(const kem_dataset* dataset, size_t k) {
  return Of(Notes(dataset), k, [](const auto& note) { return note.text.c_str(); });
}
kem_severity kem_note_severity(const kem_dataset* dataset, size_t k) {
  return Of(Notes(dataset), k, [](const auto& note) { return static_cast<kem_severity>(note.severity); });
}

// ---------------------------------------------------------------- records

kem_record* kem_to_record(const kem_dataset* dataset, kem_part part, kem_error* error) {
  return NewHandle<kem_record>(error, [&] {
    if (!dataset || part < KEM_REAL || part > KEM_PHASE)
      throw WrongArgument{"there is no dataset, or no such part"};
    return dataset->data.ToRecord(static_cast<kem::Part>(part));
  });
}
kem_record* kem_load(const char* file, int32_t item, kem_error* error) {
  return NewHandle<kem_record>(error, [&] { return Record::Classic(PathOf(file), item); });
}
kem_record* kem_curve(const float* y, const float* x, size_t count, kem_error* error) {
  return NewHandle<kem_record>(error, [&] {
    if (!y) throw WrongArgument{"there are no values"};
    return Record::Curve({y, count}, Floats(x, count));
  });
}
kem_record* kem_grid(const float* z, const float* x, size_t nx, const float* y, size_t ny, kem_error* error) {
  return NewHandle<kem_record>(error, [&] {
    if (!z || !x || !y) throw WrongArgument{"there are no values, or no coordinates"};
    if (ny > 0 && nx > std::numeric_limits<std::size_t>::max() / ny) throw std::bad_alloc();
    return Record::Grid({z, nx * ny}, {x, nx}, {y, ny});
  });
}
void kem_record_free(kem_record* record) { delete record; }

int32_t kem_is_grid(const kem_record* record) { return record && record->record.IsGrid() ? 1 : 0; }
size_t kem_count_x(const kem_record* record) {
  return record ? static_cast<std::size_t>(record->record.IsGrid() ? record->record->nX : record->record->nY) : 0;
}
size_t kem_count_y(const kem_record* record) {
  return kem_is_grid(record) ? static_cast<std::size_t>(record->record->nY) : record ? 1 : 0;
}
int32_t kem_copy_x(const kem_record* record, float* to, kem_error* error) {
  return CopyCoordinates(record, Along::X, to, error);
}
int32_t kem_copy_y(const kem_record* record, float* to, kem_error* error) {
  return CopyCoordinates(record, Along::Y, to, error);
}
void kem_copy_values(const kem_record* record, float* to) {
  if (!record || !to) return;
  const PrnType& r = *record->record;
  if (r.Is3D())
    kem::record::CopyGrid(r, to);
  else
    std::copy_n(r.yArray, kem_count_x(record), to);
}

kem_record* kem_apply(const kem_record* record, const char* operation, const double* arguments, size_t count,
                      const kem_record* other, kem_error* error) {
  return NewHandle<kem_record>(
      error, [&] { return Apply(kOperations, operation, CallOf(record, operation, arguments, count, other)); });
}
double kem_measure(const kem_record* record, const char* measure, const double* arguments, size_t count,
                   kem_error* error) {
  return Guarded(error, kNaN, [&] {
    return double{Apply(kMeasures, measure, CallOf(record, measure, arguments, count, nullptr))};
  });
}
const char* kem_operations(size_t k) { return k < std::size(kOperations) ? kOperations[k].text.data() : nullptr; }
const char* kem_measures(size_t k) { return k < std::size(kMeasures) ? kMeasures[k].text.data() : nullptr; }

int32_t kem_write(const kem_record* record, const char* file, const char* extension, kem_error* error) {
  return Coded(error, [&] {
    if (!record) throw WrongArgument{"there is no record"};
    extension ? record->record.Write(PathOf(file), extension) : record->record.Write(PathOf(file));
  });
}
