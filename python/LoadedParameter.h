// A parameter that the module loaded, as the package `voxa` sees it.
#pragma once

#include <pybind11/pybind11.h>

namespace python {

/// Adds the operations `load`, `parameter_types` and the class of what `load` returns.
void defineLoadedParameter(pybind11::module_& module);

}  // namespace python
