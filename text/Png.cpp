#include "text/Png.h"

#include <array>
#include <stdexcept>

namespace text {

namespace {

constexpr std::uint64_t kMaxImageBytes = 1U << 30U;  // a chunk's length has 31 bits
constexpr std::size_t kMaxStoredBytes = 0xFFFF;      // a stored block's length has 16 bits

enum class ColorType : char { Indexed = 3, Rgba = 6 };

void appendBigEndian(std::string& bytes, std::uint32_t value) {
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    bytes += static_cast<char>((value >> shift) & 0xFFU);
  }
}

// The CRC of the standard's annex D, which covers a chunk's type and data.
std::uint32_t crc32(std::string_view bytes) {
  static const auto table = [] {
    std::array<std::uint32_t, 256> values{};
    for (std::uint32_t byte = 0; byte < values.size(); ++byte) {
      std::uint32_t value = byte;
      for (int bit = 0; bit < 8; ++bit) {
        value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1U) : value >> 1U;
      }
      values[byte] = value;
    }
    return values;
  }();
  std::uint32_t crc = 0xFFFFFFFFU;
  for (const char byte : bytes) {
    crc = table[(crc ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ (crc >> 8U);
  }
  return ~crc;
}

// The checksum of RFC 1950, section 9.
std::uint32_t adler32(std::string_view bytes) {
  constexpr std::uint32_t kModulus = 65521;
  constexpr std::size_t kMaxRun = 5552;  // more additions could overflow 32 bits
  std::uint32_t sum = 1;
  std::uint32_t sumOfSums = 0;
  while (!bytes.empty()) {
    const std::string_view run = bytes.substr(0, kMaxRun);
    for (const char byte : run) {
      sum += static_cast<unsigned char>(byte);
      sumOfSums += sum;
    }
    sum %= kModulus;
    sumOfSums %= kModulus;
    bytes.remove_prefix(run.size());
  }
  return (sumOfSums << 16U) | sum;
}

void appendChunk(std::string& png, const char* type, std::string_view data) {
  appendBigEndian(png, static_cast<std::uint32_t>(data.size()));
  const std::size_t start = png.size();
  png += type;
  png += data;
  appendBigEndian(png, crc32(std::string_view(png).substr(start)));
}

// A zlib stream (RFC 1950) of stored blocks.
std::string storedZlib(std::string_view bytes) {
  std::string stream = "\x78\x01";  // deflate, 32 KiB window, least effort
  std::string_view rest = bytes;
  do {
    const std::string_view block = rest.substr(0, kMaxStoredBytes);
    rest.remove_prefix(block.size());
    const auto length = static_cast<std::uint32_t>(block.size());
    stream += static_cast<char>(rest.empty() ? 1 : 0);  // the last block is marked
    for (const std::uint32_t half : {length, ~length}) {
      stream += static_cast<char>(half & 0xFFU);
      stream += static_cast<char>((half >> 8U) & 0xFFU);
    }
    stream += block;
  } while (!rest.empty());
  appendBigEndian(stream, adler32(bytes));
  return stream;
}

std::string png(PngSize size, ColorType colorType, std::string_view palette,
                std::string_view pixels) {
  const std::uint64_t pixelBytes = colorType == ColorType::Rgba ? 4 : 1;
  const std::uint64_t rowBytes = pixelBytes * size.width;
  if (size.width == 0 || size.height == 0) throw std::invalid_argument("PNG: empty image");
  if (rowBytes > kMaxImageBytes / size.height) throw std::length_error("PNG: image above 1 GiB");
  if (pixels.size() != rowBytes * size.height) {
    throw std::invalid_argument("PNG: the number of pixels does not match the size");
  }

  std::string header;
  appendBigEndian(header, size.width);
  appendBigEndian(header, size.height);
  header += '\x08';  // bits per sample
  header += static_cast<char>(colorType);
  header += std::string(3, '\0');  // deflate, adaptive filters, not interlaced

  std::string rows;
  rows.reserve(pixels.size() + size.height);
  for (std::size_t start = 0; start < pixels.size(); start += rowBytes) {
    rows += '\0';  // filter: none
    rows += pixels.substr(start, rowBytes);
  }

  std::string result = "\x89PNG\r\n\x1A\n";
  appendChunk(result, "IHDR", header);
  if (!palette.empty()) appendChunk(result, "PLTE", palette);
  appendChunk(result, "IDAT", storedZlib(rows));
  appendChunk(result, "IEND", {});
  return result;
}

}  // namespace

std::string indexedPng(PngSize size, std::string_view palette, std::string_view indices) {
  constexpr std::size_t kMaxPaletteBytes = std::size_t{3} * 256;
  if (palette.empty() || palette.size() > kMaxPaletteBytes || palette.size() % 3 != 0) {
    throw std::invalid_argument("PNG: a palette has 1 to 256 colours of three bytes");
  }
  return png(size, ColorType::Indexed, palette, indices);
}

std::string rgbaPng(PngSize size, std::string_view pixels) {
  return png(size, ColorType::Rgba, {}, pixels);
}

}  // namespace text
