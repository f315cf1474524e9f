// The value types of the host's parameters.
#pragma once

#include <list>
#include <string>

#include "host/Kestova/Integers.h"
#include "host/Kestova/KeystrokeData.h"
#include "host/Kestova/Point.h"
#include "host/Kestova/Rect.h"

namespace Kestova {

/// Applies `X` to each type, for use inside namespace Kestova.
#define KESTOVA_FOR_EACH_VALUE_TYPE(X) \
  X(int)                               \
  X(double)                            \
  X(int64)                             \
  X(std::string)                       \
  X(Point)                             \
  X(Rect<float>)                       \
  X(std::list<Rect<float>>)            \
  X(KeystrokeData)

}  // namespace Kestova
