// The extension module: opening files, and the errors of the library.
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>

#include "module.h"

namespace kem::python {
namespace {

// By ErrorCode.
constexpr const char* kErrors[] = {"NotFound", "PermissionDenied", "ReadFailed", "UnknownFormat", "NotReadable",
                                   "Damaged",  "NoSuchItem",       "DoesNotFit", "WriteFailed",   "OutOfMemory"};

static_assert(std::size(kErrors) == 1 + static_cast<std::size_t>(ErrorCode::OutOfMemory));

void Translate(std::exception_ptr thrown) try {
  if (thrown) std::rethrow_exception(thrown);
} catch (const Error& error) {
  const py::object type = py::module_::import("kem._errors").attr(kErrors[static_cast<int>(error.Code())]);
  PyErr_SetObject(type.ptr(), Sentence(error.what()).ptr());
} catch (const std::length_error&) {
  PyErr_NoMemory();
}

struct Documentation {
  std::string_view name;
  const char* text;
};

#include "documentation.h"

py::str Decoded(PyObject* text) {
  if (!text) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

// ------------------------------------------------------------ files

using Path = std::filesystem::path;
using Take = std::function<bool(Dataset)>;

// On threads of its own: what Python's gain on small files they lose to its lock.
std::vector<Dataset> OpenMany(const std::vector<Path>& files, int threads) {
  if (threads < 1) throw py::value_error("threads: 1 or more are needed");
  std::vector<Dataset> datasets(files.size());
  std::vector<std::exception_ptr> errors(files.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t k; (k = next++) < files.size();) {
      try {
        datasets[k] = Open(files[k]);
      } catch (...) {
        errors[k] = std::current_exception();
        next = files.size();  // those before are opened, or being opened
      }
    }
  };
  {
    std::vector<std::jthread> others;
    try {
      while (others.size() + 1 < std::min(files.size(), static_cast<std::size_t>(threads)))
        others.emplace_back(work);
    } catch (const std::system_error&) {
      // Fewer do it, too.
    }
    work();
  }
  for (const std::exception_ptr& error : errors)
    if (error) std::rethrow_exception(error);
  return datasets;
}

std::vector<std::pair<int, std::string>> ItemsOf(const Path& file) {
  std::vector<std::pair<int, std::string>> items;
  for (ItemInfo& item : Items(file)) items.emplace_back(item.number, std::move(item.name));
  return items;
}

std::pair<std::string, std::string> IdentityOf(const Path& file) {
  Identity identity = Identify(file);
  return {std::move(identity.format), std::move(identity.evidence)};
}

py::list FormatsRead() {
  py::list formats;
  for (const FormatInfo& format : Formats())
    formats.append(py::make_tuple(format.name, py::tuple(py::cast(format.extensions)), format.pair,
                                  py::tuple(py::cast(format.companions))));
  return formats;
}

// An object that __new__ alone has made holds nothing; the binding would hand on memory that nobody has filled.
void RefuseUnfilled(const py::object& type) {
  py::detail::get_type_info(reinterpret_cast<PyTypeObject*>(type.ptr()))->operator_new = [](std::size_t) -> void* {
    throw py::type_error("the object was never filled: call its class, not __new__ alone");
  };
}

}  // namespace

const char* DocumentationOf(const std::string& name) {
  const auto* found = std::find_if(std::begin(kDocumentation), std::end(kDocumentation),
                                   [&](const Documentation& d) { return d.name == name; });
  return found == std::end(kDocumentation) ? nullptr : found->text;
}

py::str Text(std::string_view text) {
  const auto size = static_cast<py::ssize_t>(text.size());
  if (PyObject* utf8 = PyUnicode_DecodeUTF8(text.data(), size, nullptr)) return Decoded(utf8);
  PyErr_Clear();
  return Decoded(PyUnicode_DecodeLatin1(text.data(), size, nullptr));
}

py::str Sentence(std::string_view text) {
  return Decoded(PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), "surrogateescape"));
}

PYBIND11_MODULE(_kem, m) {
  py::options options;
  options.disable_function_signatures();
  py::register_exception_translator(Translate);
  BindDataset(m);
  BindRecord(m);
  for (const char* name : {"Axis", "Dataset", "Record"}) RefuseUnfilled(m.attr(name));
  m.def("open", &Open, "path"_a, "item"_a = 1, Release());
  m.def("open_each", &OpenEach, "path"_a, "take"_a, Release());
  m.def("open_many", &OpenMany, "paths"_a, "threads"_a, Release());
  m.def("items", &ItemsOf, "path"_a, Release());
  m.def("identify", &IdentityOf, "path"_a, Release());
  m.def("formats", &FormatsRead);
  Def(m, "units", &Units);
  Def(m, "convert", &InUnit, "number"_a, "unit"_a, "to"_a);
  m.attr("__version__") = KemVersion();
}

}  // namespace kem::python
