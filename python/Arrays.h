// NumPy arrays over memory that C++ filled.
#pragma once

#include <pybind11/numpy.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace python {

/// A one-dimensional array of `Element` over the memory of `values`, which it owns: nothing is
/// copied, and the memory lives as long as the last array or view of it. Rows of several fields are
/// an array of bytes that the caller views with the type of the rows. Requires: the GIL is held.
template <class Element, class Value>
pybind11::array_t<Element> arrayOver(std::vector<Value> values) {
  static_assert(sizeof(Value) % sizeof(Element) == 0);
  using Owner = std::vector<Value>;
  auto owner = std::make_unique<Owner>(std::move(values));
  const std::size_t byteCount = owner->size() * sizeof(Value);
  const auto* const data = reinterpret_cast<const Element*>(owner->data());
  const auto count = static_cast<pybind11::ssize_t>(byteCount / sizeof(Element));
  const pybind11::capsule release(owner.get(),
                                  [](void* memory) { delete static_cast<Owner*>(memory); });
  static_cast<void>(owner.release());  // the capsule deletes it
  return pybind11::array_t<Element>(count, data, release);
}

/// Text that may hold any bytes. Malformed UTF-8 becomes lone surrogates, from which
/// os.fsencode, or encode("utf-8", "surrogateescape"), makes the same bytes again.
inline pybind11::str textOf(const std::string& bytes) {
  PyObject* const text =
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape");
  if (text == nullptr) throw pybind11::error_already_set();
  return pybind11::reinterpret_steal<pybind11::str>(text);
}

}  // namespace python
