// A small raster of palette indices with rectangles and text, for pictures that are pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tools/formats/Svg.h"

namespace formats {

/// Whatever lies outside the raster is cut. Used by one thread.
class Canvas {
 public:
  using Index = std::uint8_t;

  static constexpr int kGlyphHeight = 7;  ///< pixels at scale 1
  static constexpr int kGlyphAdvance = 6;

  /// Requires: both above 0.
  Canvas(int width, int height, Index background);

  void fill(int left, int top, int width, int height, Index color);
  void frame(int left, int top, int width, int height, Index color);

  /// Draws UTF-8 text whose letters are `scale` times 5 x 7 pixels, from `top` down. `x` is its
  /// start, middle or end. Characters without a glyph are drawn as a box.
  void text(int x, int top, std::string_view bytes, Index color, int scale,
            Anchor anchor = Anchor::Start);

  static int textWidth(std::string_view bytes, int scale);

  int width() const { return m_width; }
  int height() const { return m_height; }

  /// One byte per pixel, rows from the top.
  const std::string& pixels() const { return m_pixels; }

 private:
  int m_width;
  int m_height;
  std::string m_pixels;
};

}  // namespace formats
