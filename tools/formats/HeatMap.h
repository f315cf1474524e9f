// Pictures of a heat grid, with axes in pixels and a colour bar in seconds. The bytes depend on the
// grid and the title alone. Thread-safe.
#pragma once

#include <string>
#include <string_view>

#include "tools/formats/HeatGrid.h"

namespace formats {

/// `title` may be any bytes.
std::string heatMapSvg(const HeatGrid& grid, std::string_view title);

/// At most about 1500 x 1200 pixels, 8-bit palette. Letters outside ASCII are drawn as boxes.
std::string heatMapPng(const HeatGrid& grid, std::string_view title);

/// The line under the title, for both pictures.
std::string heatMapSubtitle(const HeatGrid& grid);

}  // namespace formats
