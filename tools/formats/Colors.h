// Colour scales that stay ordered for colour-blind readers and in greyscale. Thread-safe.
#pragma once

#include <string>

namespace formats {

/// sRGB, 8 bits per channel.
struct Color {
  unsigned char red;
  unsigned char green;
  unsigned char blue;
};

/// "#rrggbb".
std::string hexText(Color color);

/// The colour of a time: dark blue at 0, green at 1. `position` is clamped to 0..1. This is the
/// scale "viridis" (S. van der Walt and N. Smith, CC0) without its yellow end, which vanishes on
/// white.
Color timeColor(double position);

/// The colour of a quantity: pale yellow at 0, black at 1. `position` is clamped to 0..1. This is
/// the scale "magma" (the same authors, CC0) backwards, so that more is darker on white.
Color heatColor(double position);

}  // namespace formats
