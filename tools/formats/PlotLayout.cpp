#include "tools/formats/PlotLayout.h"

#include <fmt/format.h>

#include <algorithm>

namespace formats {

void Area::include(const Area& other) {
  left = std::min(left, other.left);
  top = std::min(top, other.top);
  right = std::max(right, other.right);
  bottom = std::max(bottom, other.bottom);
}

std::string ScreenFrame::transform() const {
  // All digits of the scale: it multiplies coordinates of any size.
  return fmt::format(
      "transform=\"translate({} {}) scale({})\" data-left=\"{:.0f}\" data-top=\"{:.0f}\"",
      svgNumber(left), svgNumber(top), scale, area.left, area.top);
}

std::string groupedNumber(unsigned long long number) {
  std::string digits = std::to_string(number);
  for (std::size_t end = digits.size(); end > 3; end -= 3) digits.insert(end - 3, ",");
  return digits;
}

}  // namespace formats
