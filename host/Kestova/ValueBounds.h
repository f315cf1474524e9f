// The bounds of a parameter's values, for user interfaces. A plain value.
#pragma once

namespace Kestova {

template <class T>
struct ValueBounds {
  T minValue{};
  T maxValue{};
  T defaultValue{};
};

}  // namespace Kestova
