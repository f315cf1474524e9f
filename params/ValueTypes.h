// The value types that parameters are built for. This is the only list of them in the module.
#pragma once

#include <list>
#include <string>

#include "host/Kestova/Integers.h"
#include "host/Kestova/KeystrokeData.h"
#include "host/Kestova/Point.h"
#include "host/Kestova/Rect.h"

/// Applies `X` to each type, for explicit instantiations inside namespace Kestova.
#define KESTOVA_FOR_EACH_PARAMETER_TYPE(X) \
  X(int)                                   \
  X(double)                                \
  X(int64)                                 \
  X(std::string)                           \
  X(Point)                                 \
  X(Rect<float>)                           \
  X(std::list<Rect<float>>)                \
  X(KeystrokeData)
