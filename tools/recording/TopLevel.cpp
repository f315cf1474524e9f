#include "tools/recording/TopLevel.h"

#include <boost/endian/conversion.hpp>
#include <cstddef>
#include <stdexcept>

#include "text/Printable.h"
#include "tools/recording/Bytes.h"

namespace recording {

namespace {

constexpr std::uint64_t kHeaderBytes = 8;
constexpr std::uint64_t kWideHeaderBytes = 16;

// What a header states.
struct Announced {
  std::string type;
  std::uint64_t size = 0;  // of the structure, header included
  std::uint64_t headerSize = kHeaderBytes;
};

template <class Number>
Number bigEndianAt(std::string_view bytes, std::size_t offset) {
  return boost::endian::endian_load<Number, sizeof(Number), boost::endian::order::big>(
      reinterpret_cast<const unsigned char*>(bytes.data()) + offset);
}

// `header` holds the first 16 bytes of the structure, fewer at the end of the file.
Announced announcedAtom(std::string_view header) {
  const std::string type(header.substr(4, 4));
  const std::uint64_t size = bigEndianAt<std::uint32_t>(header, 0);
  const bool isWide = size == 1 && header.size() >= kWideHeaderBytes;
  if (!isWide) return {type, size};
  return {type, bigEndianAt<std::uint64_t>(header, 8), kWideHeaderBytes};
}

Announced announcedChunk(std::string_view header) {
  const auto size = boost::endian::endian_load<std::uint32_t, 4, boost::endian::order::little>(
      reinterpret_cast<const unsigned char*>(header.data()) + 4);
  return {std::string(header.substr(0, 4)), size == 0 ? 0 : kHeaderBytes + size};
}

// Reads the headers of a file, a few kilobytes at a time.
class HeaderReader {
 public:
  explicit HeaderReader(std::istream& media) : m_media(media) {}

  // Returns 16 bytes from `offset` on, fewer at the end of the file. Valid until the next call.
  std::string_view at(std::uint64_t offset) {
    if (offset < m_start || offset - m_start > m_bytes.size() ||
        m_bytes.size() - (offset - m_start) < kWideHeaderBytes) {
      fetch(offset);
    }
    return std::string_view(m_bytes).substr(offset - m_start, kWideHeaderBytes);
  }

 private:
  void fetch(std::uint64_t offset) {
    constexpr std::size_t kWindowBytes = 4096;
    m_bytes.resize(kWindowBytes);
    m_media.clear();
    m_media.seekg(static_cast<std::streamoff>(offset));
    m_media.read(m_bytes.data(), static_cast<std::streamsize>(kWindowBytes));
    m_bytes.resize(static_cast<std::size_t>(m_media.gcount()));
    m_media.clear();
    m_start = offset;
  }

  std::istream& m_media;
  Bytes m_bytes;
  std::uint64_t m_start = 0;
};

std::uint64_t sizeOf(std::istream& media) {
  media.seekg(0, std::ios::end);
  return static_cast<std::uint64_t>(static_cast<std::streamoff>(media.tellg()));
}

[[noreturn]] void refuse(const std::string& type, std::uint64_t offset, const std::string& why) {
  throw std::runtime_error("'" + text::printable(type) + "' at byte " + std::to_string(offset) +
                           " " + why);
}

// The structures in [offset, end) of a file or of another structure. `headerAt(offset)` returns the
// 16 bytes at `offset`, fewer at the end of the file.
template <class HeaderAt>
void walk(std::uint64_t offset, std::uint64_t end, const char* whole, Layout layout,
          HeaderAt headerAt, const Visit& visit) {
  while (offset < end) {
    const std::string_view header = headerAt(offset).substr(0, end - offset);
    if (header.size() < kHeaderBytes) {
      throw std::runtime_error("the " + std::to_string(header.size()) + " bytes at byte " +
                               std::to_string(offset) + " are no header");
    }
    const auto [type, announced, headerSize] =
        layout == Layout::Atoms ? announcedAtom(header) : announcedChunk(header);
    if (announced == 0) refuse(type, offset, "has the size 0: nothing can follow it");
    if (announced < headerSize) refuse(type, offset, "is smaller than its header");
    if (announced > end - offset) {
      refuse(type, offset, std::string("announces more bytes than the ") + whole + " holds");
    }
    visit({type, offset, offset + headerSize, offset + announced});
    offset += announced;
    if (layout == Layout::Chunks) offset += announced % 2;
  }
}

// A file whose first structure is whole may begin with any type.
void requireMedia(std::string_view header, std::uint64_t size, Layout layout) {
  if (size == 0) return;
  constexpr std::string_view kAtoms = "ftyp styp moov mdat free skip wide pnot uuid ZRKM";
  constexpr std::string_view kChunks = "RIFF RIFX RF64 BW64 LIST JUNK ZRKM";
  const bool isAtoms = layout == Layout::Atoms;
  if (header.size() >= kHeaderBytes) {
    const Announced first = isAtoms ? announcedAtom(header) : announcedChunk(header);
    if (first.size >= first.headerSize && first.size <= size) return;
    if ((isAtoms ? kAtoms : kChunks).find(first.type) != std::string_view::npos) return;
  }
  throw std::runtime_error(isAtoms ? "is not an MP4 or MOV file" : "is not a RIFF file");
}

}  // namespace

void eachStructure(std::istream& media, Layout layout, const Visit& visit) {
  HeaderReader headers(media);
  const auto headerAt = [&](std::uint64_t offset) { return headers.at(offset); };
  const std::uint64_t size = sizeOf(media);
  requireMedia(headers.at(0), size, layout);
  walk(0, size, "file", layout, headerAt, visit);
}

void eachStructureIn(std::istream& media, Layout layout, const Structure& parent,
                     const Visit& visit) {
  HeaderReader headers(media);
  const auto headerAt = [&](std::uint64_t offset) { return headers.at(offset); };
  walk(parent.payload, parent.end, "block", layout, headerAt, visit);
}

void eachAtom(std::string_view bytes, const Visit& visit) {
  const auto headerAt = [&](std::uint64_t offset) {
    return bytes.substr(offset, kWideHeaderBytes);
  };
  walk(0, bytes.size(), "file", Layout::Atoms, headerAt, visit);
}

}  // namespace recording
