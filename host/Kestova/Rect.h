// A rectangle: origin and extent, in pixels.
#pragma once

#include <ostream>

#include "host/Kestova/KvObject.h"
#include "host/Kestova/NumberText.h"

namespace Kestova {

/// Built for float and int. A plain value.
template <class T>
class Rect : public KvObject {
 public:
  Rect() = default;
  Rect(T x_, T y_, T width_, T height_) : x(x_), y(y_), width(width_), height(height_) {}

  T x{};
  T y{};
  T width{};
  T height{};
};

template <class T>
bool operator==(const Rect<T>& left, const Rect<T>& right) {
  return left.x == right.x && left.y == right.y && left.width == right.width &&
         left.height == right.height;
}
template <class T>
bool operator!=(const Rect<T>& left, const Rect<T>& right) {
  return !(left == right);
}

/// Writes "(x,y,width,height)": floats with at most six significant digits, as printf's %g writes
/// them. Neither the locale nor the number format of the stream changes the text.
inline std::ostream& operator<<(std::ostream& out, const Rect<float>& rect) {
  constexpr int kDigits = 6;
  const auto text = [](float number) { return NumberText(double{number}, kDigits); };
  return out << '(' << text(rect.x) << ',' << text(rect.y) << ',' << text(rect.width) << ','
             << text(rect.height) << ')';
}
inline std::ostream& operator<<(std::ostream& out, const Rect<int>& rect) {
  return out << '(' << NumberText(rect.x) << ',' << NumberText(rect.y) << ','
             << NumberText(rect.width) << ',' << NumberText(rect.height) << ')';
}

}  // namespace Kestova
