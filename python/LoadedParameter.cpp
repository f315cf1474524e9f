#include "python/LoadedParameter.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <array>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstring>
#include <functional>
#include <list>
#include <optional>
#include <sstream>
#include <type_traits>
#include <utility>
#include <vector>

#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/ParameterIterator.h"
#include "python/Arrays.h"
#include "python/Messages.h"
#include "tools/host/FixedEditRate.h"
#include "tools/host/ParameterTypes.h"

namespace py = pybind11;

namespace python {

using Kestova::int64;
using Kestova::Parameter;

namespace {

// Every keyframe of a loaded parameter, and what the module writes of it. Immutable.
struct LoadedParameter {
  py::array_t<int64> frames;
  py::object values;  // an array of numbers or of packed bytes, or a list
  std::function<std::string()> toXml;
  std::function<std::string()> toJson;
};

// What stands for a value while the GIL is released: `Packed` for values of fixed size.
template <class... Numbers>
auto packed(Numbers... numbers) {
  std::array<unsigned char, (sizeof(Numbers) + ...)> bytes{};
  std::size_t position = 0;
  ((std::memcpy(bytes.data() + position, &numbers, sizeof numbers), position += sizeof numbers),
   ...);
  return bytes;
}

template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>, Number> storedValue(Number number) {
  return number;
}
std::string storedValue(const std::string& text) {
  return text;
}
auto storedValue(const Kestova::Point& point) {
  return packed(point.x, point.y);
}
auto storedValue(const Kestova::Rect<float>& rect) {
  return packed(rect.x, rect.y, rect.width, rect.height);
}
auto storedValue(const Kestova::KeystrokeData& key) {
  // Flags come from records, where they have 32 bits.
  return packed(key.character(), static_cast<int>(key.eventFlags()));
}
// No stream holds lists of rectangles, so that there is none to store.
std::string storedValue(const std::list<Kestova::Rect<float>>& /*rects*/) {
  return {};
}

template <class Number>
py::object valuesOf(std::vector<Number> values) {
  return arrayOver<Number>(std::move(values));
}
template <std::size_t size>
py::object valuesOf(std::vector<std::array<unsigned char, size>> values) {
  return arrayOver<unsigned char>(std::move(values));
}
py::object valuesOf(const std::vector<std::string>& values) {
  py::list list(values.size());
  for (std::size_t index = 0; index < values.size(); ++index) list[index] = textOf(values[index]);
  return list;
}

// A parameter and the project that owns it.
template <class T>
struct Owned {
  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
  boost::shared_ptr<const Parameter<T>> parameter;
};

template <class T>
std::string hostXml(const Owned<T>& owned) {
  std::ostringstream text;
  Kestova::XMLOptions options(text);
  owned.parameter->toXML(options, 0, "");
  return text.str();
}

template <class T>
std::string hostJson(const Owned<T>& owned) {
  std::ostringstream text;
  owned.parameter->toJSON(Kestova::JSONOptions(text), 0, "", "");
  return text.str();
}

template <class T>
LoadedParameter load(hosting::LoadOperation<T> operation, const std::string& streamFileName,
                     const std::string& identifier, const boost::rational<unsigned int>& rate) {
  using Stored = decltype(storedValue(std::declval<const T&>()));
  Owned<T> owned;
  std::vector<int64> frames;
  std::vector<Stored> values;
  CollectedMessages messages;
  {
    const py::gil_scoped_release unlocked;
    const boost::shared_ptr<const Kestova::ProjectEditRate> editRate =
        boost::make_shared<hosting::FixedEditRate>(rate);
    const VOXAScreenMetaDataLoader loader;
    owned.parameter = (loader.*operation)(streamFileName, identifier, owned.project, editRate);
    const auto count = static_cast<std::size_t>(owned.parameter->numKeyFrames());
    frames.reserve(count);
    values.reserve(count);
    const Kestova::ReadWriteMutex::ScopedReadLock lock(owned.parameter->mutex());
    for (Kestova::ParameterIterator<T> at(*owned.parameter); !at.atEnd(); at.next()) {
      frames.push_back(at.time().numerator());  // loaded keyframes are at whole frames
      values.push_back(storedValue(at.keyFrame()->value()));
    }
  }
  const std::string path = streamFileName.substr(0, streamFileName.rfind('/'));
  messages.warn(path + ": stream " + identifier);
  return {arrayOver<int64>(std::move(frames)), valuesOf(std::move(values)),
          [owned] { return hostXml(owned); }, [owned] { return hostJson(owned); }};
}

LoadedParameter loadNamed(const py::bytes& streamFileName, const std::string& identifier,
                          const std::string& type, unsigned int numerator,
                          unsigned int denominator) {
  std::optional<LoadedParameter> loaded;
  hosting::visitParameterType(type, [&](const auto& row) {
    loaded = load(row.operation, streamFileName, identifier, {numerator, denominator});
  });
  if (!loaded) throw py::value_error("not a parameter type: " + type);
  return *loaded;
}

}  // namespace

void defineLoadedParameter(py::module_& module) {
  py::class_<LoadedParameter>(module, "LoadedParameter")
      .def_readonly("frames", &LoadedParameter::frames)
      .def_readonly("values", &LoadedParameter::values)
      .def("to_xml", [](const LoadedParameter& loaded) { return textOf(loaded.toXml()); })
      .def("to_json", [](const LoadedParameter& loaded) { return textOf(loaded.toJson()); });
  module.def("parameter_types", &hosting::parameterTypeNames);
  module.def("load", &loadNamed, py::arg("stream_file_name"), py::arg("identifier"),
             py::arg("type"), py::arg("numerator"), py::arg("denominator"));
}

}  // namespace python
