// The extent of a recorded screen.
#pragma once

namespace formats {

/// Pixels, both above 0. The screen's left upper corner is at (0, 0).
struct ScreenSize {
  int width;
  int height;
};

}  // namespace formats
