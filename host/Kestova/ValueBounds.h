// The bounds of a parameter's values, as its user interface shows them.
#pragma once

namespace Kestova {

template <class T>
struct ValueBounds {
  T minValue{};
  T maxValue{};
  T defaultValue{};
};

}  // namespace Kestova
