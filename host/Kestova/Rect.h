// A rectangle: origin and extent, in pixels.
#pragma once

#include <ostream>

#include "host/Kestova/KvObject.h"

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

/// Writes "(x,y,width,height)" in the stream's own number format.
template <class T>
std::ostream& operator<<(std::ostream& out, const Rect<T>& rect) {
  return out << '(' << rect.x << ',' << rect.y << ',' << rect.width << ',' << rect.height << ')';
}

}  // namespace Kestova
