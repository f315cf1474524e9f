#include "host/Kestova/Point.h"

#include "text/NumberText.h"

namespace Kestova {

std::ostream& operator<<(std::ostream& out, const Point& point) {
  using text::NumberText;
  return out << '(' << NumberText(point.x) << ',' << NumberText(point.y) << ','
             << NumberText(point.z) << ')';
}

}  // namespace Kestova
