// A rectangle: origin and extent, in pixels.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <ostream>
#include <string_view>
#include <type_traits>

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

/// Writes "(x,y,width,height)": floats with at most six significant digits, as printf's %g does.
/// Neither the locale nor the number format of the stream changes the text.
template <class T>
std::ostream& operator<<(std::ostream& out, const Rect<T>& rect) {
  std::array<char, 64> text{};  // four numbers of at most 12 characters each
  char* end = text.data();
  char* const limit = end + text.size();
  char separator = '(';
  for (const T number : {rect.x, rect.y, rect.width, rect.height}) {
    *end++ = separator;
    separator = ',';
    if constexpr (std::is_same_v<T, float>) {
      constexpr int kDigits = 6;
      end = std::to_chars(end, limit, number, std::chars_format::general, kDigits).ptr;
    } else {
      end = std::to_chars(end, limit, number).ptr;
    }
  }
  *end++ = ')';
  return out << std::string_view(text.data(), static_cast<std::size_t>(end - text.data()));
}

}  // namespace Kestova
