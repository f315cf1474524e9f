#include "tools/formats/Canvas.h"

#include <algorithm>

#include "text/Utf8.h"
#include "tools/formats/BitmapFont.h"

namespace formats {

namespace {

template <class Visit>
void forEachGlyph(std::string_view bytes, Visit visit) {
  while (!bytes.empty()) {
    const text::Utf8Character character = text::firstCharacter(bytes);
    bytes.remove_prefix(character.length);
    visit(glyphOf(character.codePoint));
  }
}

}  // namespace

Canvas::Canvas(int width, int height, Index background)
    : m_width(width),
      m_height(height),
      m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
               static_cast<char>(background)) {}

void Canvas::fill(int left, int top, int width, int height, Index color) {
  const int from = std::max(left, 0);
  const int to = std::min(left + width, m_width);
  if (from >= to) return;
  for (int y = std::max(top, 0); y < std::min(top + height, m_height); ++y) {
    const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                              static_cast<std::size_t>(from);
    m_pixels.replace(start, static_cast<std::size_t>(to - from),
                     static_cast<std::size_t>(to - from), static_cast<char>(color));
  }
}

void Canvas::frame(int left, int top, int width, int height, Index color) {
  fill(left, top, width, 1, color);
  fill(left, top + height - 1, width, 1, color);
  fill(left, top, 1, height, color);
  fill(left + width - 1, top, 1, height, color);
}

int Canvas::textWidth(std::string_view bytes, int scale) {
  int glyphs = 0;
  forEachGlyph(bytes, [&glyphs](const Glyph&) { ++glyphs; });
  return glyphs == 0 ? 0 : (glyphs * kGlyphAdvance - 1) * scale;
}

void Canvas::text(int x, int top, std::string_view bytes, Index color, int scale, Anchor anchor) {
  int left = x;
  if (anchor == Anchor::Middle) left -= textWidth(bytes, scale) / 2;
  if (anchor == Anchor::End) left -= textWidth(bytes, scale);
  forEachGlyph(bytes, [&](const Glyph& glyph) {
    for (int row = 0; row < kGlyphHeight; ++row) {
      for (int column = 0; column < 5; ++column) {
        const unsigned bit = 1U << unsigned(4 - column);
        if ((glyph[static_cast<std::size_t>(row)] & bit) == 0) continue;
        fill(left + column * scale, top + row * scale, scale, scale, color);
      }
    }
    left += kGlyphAdvance * scale;
  });
}

}  // namespace formats
