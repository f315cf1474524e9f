// The facts that the module tells a host of a recording: its tracks, and the slots of its streams.
#pragma once

#include <pybind11/pybind11.h>

namespace python {

/// Adds the operations `stats` and `slot`.
void defineHostView(pybind11::module_& module);

}  // namespace python
