// PNG images (ISO/IEC 15948) whose bytes depend on nothing but the pixels: the data is wrapped in
// stored deflate blocks (RFC 1951, section 3.2.4), so no compression library is involved and the
// files are as large as their pixels. Every function may be called from any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace text {

/// Extent of an image in pixels, both above 0.
struct PngSize {
  std::uint32_t width;
  std::uint32_t height;
};

/// An image of 8-bit palette indices, one byte per pixel, rows from the top without padding.
/// `palette` has three bytes (red, green, blue; sRGB) per colour, 1 to 256 colours. An index must
/// name a colour of the palette; this is not checked.
/// Throws std::invalid_argument when a length does not fit the size, std::length_error when the
/// pixels exceed 1 GiB.
std::string indexedPng(PngSize size, std::string_view palette, std::string_view indices);

/// An image of four bytes (red, green, blue; sRGB; alpha, not premultiplied) per pixel, rows from
/// the top without padding. Throws like `indexedPng`.
std::string rgbaPng(PngSize size, std::string_view pixels);

}  // namespace text
