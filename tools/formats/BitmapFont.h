// Letters of 5 x 7 pixels, for pictures that are pixels. Thread-safe.
#pragma once

#include <array>
#include <cstdint>

namespace formats {

/// Rows from the top; bit 4 is the left column.
using Glyph = std::array<std::uint8_t, 7>;

/// The glyph of a character of ASCII, or of the signs \u00B7 \u00D7 \u2212; a box for all others.
const Glyph& glyphOf(char32_t character);

}  // namespace formats
