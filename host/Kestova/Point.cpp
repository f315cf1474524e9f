#include "host/Kestova/Point.h"

#include "host/Kestova/NumberText.h"

namespace Kestova {

std::ostream& operator<<(std::ostream& out, const Point& point) {
  std::string text = "(";
  text += NumberText(point.x);
  text += ',';
  text += NumberText(point.y);
  text += ',';
  text += NumberText(point.z);
  text += ')';
  return out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace Kestova
