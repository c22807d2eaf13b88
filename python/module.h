// What the sources of the extension module share.
#pragma once

#include <pybind11/complex.h>
#include <pybind11/functional.h>
#include <pybind11/iostream.h>
#include <pybind11/numpy.h>
#include <pybind11/operators.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kem/dataset.h"

namespace kem::python {

namespace py = pybind11;
using namespace py::literals;

// Long calls let other threads of Python run.
using Release = py::call_guard<py::gil_scoped_release>;

// Numbers that a caller gives, of any type that NumPy turns into T.
template <class T>
using Numbers = py::array_t<T, py::array::c_style | py::array::forcecast>;

template <class T>
std::span<const T> SpanOf(const Numbers<T>& numbers) {
  return {numbers.data(), static_cast<std::size_t>(numbers.size())};
}

inline py::array ArrayOf(const py::object& values) {
  if (auto array = py::array::ensure(values)) return array;
  throw py::type_error("values must be an array of numbers");
}

// An array that nobody writes to: a view of what `owner` holds, or a copy when there is none.
inline py::array ReadOnly(const py::dtype& type, std::vector<py::ssize_t> shape, const void* numbers,
                          py::handle owner = {}) {
  py::array array(type, std::move(shape), numbers, owner);
  array.attr("setflags")("write"_a = false);
  return array;
}

template <class T>
py::array ReadOnly(std::span<const T> numbers, py::handle owner = {}) {
  return ReadOnly(py::dtype::of<T>(), {static_cast<py::ssize_t>(numbers.size())}, numbers.data(), owner);
}

// Texts of a record are UTF-8, or whatever the instrument wrote; bytes of a name that are none survive.
py::str Text(std::string_view text);
py::str Sentence(std::string_view text);

// What the stub says about a member of a class or a function of the module, by "Class.member"; null where it says
// nothing.
const char* DocumentationOf(const std::string& name);

template <class Scope>
const char* DocumentationIn(const Scope& scope, const char* name) {
  if (py::hasattr(scope, name)) return nullptr;  // an overload
  if constexpr (std::is_same_v<Scope, py::module_>) return DocumentationOf(name);
  return DocumentationOf(py::str(scope.attr("__name__")).cast<std::string>() + '.' + name);
}

// Functions, members and properties with their documentation.
template <class Scope, class Function, class... Extra>
void Def(Scope& scope, const char* name, Function function, const Extra&... extra) {
  const char* text = DocumentationIn(scope, name);
  text ? scope.def(name, function, text, extra...) : scope.def(name, function, extra...);
}

template <class Class, class Function>
void Property(Class& c, const char* name, Function function) {
  c.def_property_readonly(name, function, DocumentationIn(c, name));
}

void BindDataset(py::module_& m);
void BindRecord(py::module_& m);

}  // namespace kem::python

// Enumerations are words in Python.
namespace pybind11::detail {

template <class Enumeration>
struct Words;

template <>
struct Words<kem::Along> {
  static constexpr const char* kArgument = "axis";
  static constexpr const char* kWords[] = {"x", "y"};
};

template <>
struct Words<kem::Part> {
  static constexpr const char* kArgument = "part";
  static constexpr const char* kWords[] = {"real", "imaginary", "magnitude", "phase"};
};

template <>
struct Words<kem::Severity> {
  static constexpr const char* kArgument = "severity";
  static constexpr const char* kWords[] = {"remark", "doubtful", "damaged"};
};

template <class Enumeration>
struct WordCaster {
  PYBIND11_TYPE_CASTER(Enumeration, const_name("str"));

  bool load(handle source, bool) {
    if (!isinstance<str>(source)) return false;
    const auto word = source.cast<std::string>();
    std::string known;
    int k = 0;
    for (const char* one : Words<Enumeration>::kWords) {
      if (word == one) {
        value = static_cast<Enumeration>(k);
        return true;
      }
      known += (k++ == 0 ? " must be '" : "', '") + std::string(one);
    }
    throw value_error(Words<Enumeration>::kArgument + known + "', not '" + word + "'");
  }
  static handle cast(Enumeration source, return_value_policy, handle) {
    return str(Words<Enumeration>::kWords[static_cast<int>(source)]).release();
  }
};

template <>
struct type_caster<kem::Along> : WordCaster<kem::Along> {};
template <>
struct type_caster<kem::Part> : WordCaster<kem::Part> {};
template <>
struct type_caster<kem::Severity> : WordCaster<kem::Severity> {};

}  // namespace pybind11::detail
