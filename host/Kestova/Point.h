// A point in space, in pixels of the project. A plain value.
#pragma once

#include <ostream>

#include "host/Kestova/Export.h"

namespace Kestova {

struct Point {
  Point() = default;
  Point(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}

  double x = 0;
  double y = 0;
  double z = 0;
};

inline bool operator==(const Point& left, const Point& right) {
  return left.x == right.x && left.y == right.y && left.z == right.z;
}
inline bool operator!=(const Point& left, const Point& right) {
  return !(left == right);
}

/// Writes "(x,y,z)", each number as the shortest text that reads back as the same number.
KESTOVA_API std::ostream& operator<<(std::ostream& out, const Point& point);

}  // namespace Kestova
