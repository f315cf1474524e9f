// The extension module `voxa._voxa`: the reader, without the conveniences of the package.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "python/HostView.h"
#include "python/LoadedParameter.h"
#include "python/Messages.h"
#include "python/RecordingIndex.h"
#include "tools/series/FrameTimes.h"
#include "tools/series/RecordTypes.h"

namespace py = pybind11;

namespace python {

namespace {

py::list recordTypes() {
  py::list types;
  for (const auto& type : series::kRecordTypeInfos) types.append(type.name);
  return types;
}

// Applies `convert(element, rate)` to each element of an array of any shape.
template <class Element, class Result>
void defineConversion(py::module_& module, const char* name, const char* argument,
                      Result (*convert)(Element, const series::FrameRate&)) {
  module.def(
      name,
      [convert](const py::array_t<Element>& elements, unsigned int numerator,
                unsigned int denominator) -> py::object {
        const series::FrameRate rate(numerator, denominator);
        return py::vectorize([=](Element element) { return convert(element, rate); })(elements);
      },
      py::arg(argument), py::arg("numerator"), py::arg("denominator"));
}

}  // namespace

}  // namespace python

PYBIND11_MODULE(_voxa, module) {
  using namespace python;
  installMessageCollection();
  defineRecordingIndex(module);
  defineLoadedParameter(module);
  defineHostView(module);
  module.attr("version") = VOXA_VERSION;
  module.def("record_types", &recordTypes);
  defineConversion(module, "frames_shown_at", "seconds", &series::frameShownAt);
  defineConversion(module, "starts_of_frames", "frames", &series::startOfFrame);
}
