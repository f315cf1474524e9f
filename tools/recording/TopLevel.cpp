#include "tools/recording/TopLevel.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "text/Printable.h"
#include "tools/recording/Container.h"
#include "tools/recording/Movie.h"

namespace recording {

namespace {

constexpr std::uint64_t kTypeOffset = 4;

constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kWideHeaderSize = 16;

// A header is taken apart in memory, which takes several times its size. Hours of video need less.
constexpr std::uint64_t kLargestMovieHeader = 8U << 20U;

struct Announced {
  std::string type;
  std::uint64_t size = 0;  // header included
  std::uint64_t headerSize = kHeaderSize;
};

template <class Number>
Number bigEndianAt(std::string_view bytes, std::size_t place) {
  return boost::endian::endian_load<Number, sizeof(Number), boost::endian::order::big>(
      reinterpret_cast<const unsigned char*>(bytes.data()) + place);
}

// `header` is what stands at the structure's start: 16 bytes, fewer at the end of the file.
Announced announcedAtom(std::string_view header) {
  const std::string type(header.substr(4, 4));
  const std::uint64_t size = bigEndianAt<std::uint32_t>(header, 0);
  const bool isWide = size == 1 && header.size() >= kWideHeaderSize;
  if (!isWide) return {type, size};
  return {type, bigEndianAt<std::uint64_t>(header, 8), kWideHeaderSize};
}

Announced announcedChunk(std::string_view header) {
  const auto size = boost::endian::endian_load<std::uint32_t, 4, boost::endian::order::little>(
      reinterpret_cast<const unsigned char*>(header.data()) + 4);
  return {std::string(header.substr(0, 4)), size == 0 ? 0 : kHeaderSize + size};
}

// Headers out of a file, which is read a few kilobytes at a time.
class Headers {
 public:
  explicit Headers(std::istream& media) : m_media(media) {}

  /// 16 bytes from `place` on, fewer at the end of the file. Good until the next call.
  std::string_view at(std::uint64_t place) {
    if (place < m_start || place - m_start > m_bytes.size() ||
        m_bytes.size() - (place - m_start) < kWideHeaderSize) {
      fetch(place);
    }
    return std::string_view(m_bytes).substr(place - m_start, kWideHeaderSize);
  }

 private:
  void fetch(std::uint64_t place) {
    constexpr std::size_t kWindow = 4096;
    m_bytes.resize(kWindow);
    m_media.clear();
    m_media.seekg(static_cast<std::streamoff>(place));
    m_media.read(m_bytes.data(), static_cast<std::streamsize>(kWindow));
    m_bytes.resize(static_cast<std::size_t>(m_media.gcount()));
    m_media.clear();
    m_start = place;
  }

  std::istream& m_media;
  Bytes m_bytes;
  std::uint64_t m_start = 0;
};

std::uint64_t sizeOf(std::istream& media) {
  media.seekg(0, std::ios::end);
  return static_cast<std::uint64_t>(static_cast<std::streamoff>(media.tellg()));
}

[[noreturn]] void refuse(const std::string& type, std::uint64_t place, const std::string& why) {
  throw std::runtime_error("'" + text::printable(type) + "' at byte " + std::to_string(place) +
                           " " + why);
}

// What is done to the copy of a media file before the block.
struct Plan {
  Bytes append;
  std::optional<std::uint64_t> freedType;  // byte position of the type of the old movie header
  std::string whyUntagged;
};

Bytes readPayload(std::istream& media, const Structure& structure) {
  Bytes payload(structure.end - structure.payload, '\0');
  media.clear();
  media.seekg(static_cast<std::streamoff>(structure.payload));
  media.read(payload.data(), static_cast<std::streamsize>(payload.size()));
  return payload;
}

Plan planForAtoms(std::istream& media) {
  std::optional<Structure> moov;
  eachStructure(media, Layout::Atoms, [&moov](const Structure& structure) {
    if (!moov && structure.type == "moov") moov = structure;
  });
  if (!moov) return {{}, {}, "there is no movie header"};
  if (moov->end - moov->payload > kLargestMovieHeader) {
    return {{}, {}, "the movie header has over 8 MiB"};
  }
  try {
    const Bytes payload = readPayload(media, *moov);
    if (isFragmented(payload)) return {{}, {}, "the movie is fragmented"};
    return {atom("moov", taggedMovieHeader(payload)), moov->start + kTypeOffset, {}};
  } catch (const std::runtime_error& error) {
    return {{}, {}, std::string("in the movie header ") + error.what()};
  }
}

Plan planForChunks(std::istream& media) {
  std::uint64_t end = 0;
  eachStructure(media, Layout::Chunks, [&end](const Structure& last) { end = last.end; });
  const bool lacksPadByte = end % 2 == 1 && end == sizeOf(media);
  return {Bytes(lacksPadByte ? 1 : 0, '\0'), {}, {}};
}

// Writes the file with "free" in place of the four bytes at `freedType`.
void copy(std::istream& media, std::optional<std::uint64_t> freedType, const Write& write) {
  constexpr std::string_view kFree = "free";
  constexpr std::size_t kPiece = 1U << 20U;
  Bytes piece(kPiece, '\0');
  media.clear();
  media.seekg(0);
  for (std::uint64_t start = 0; media; start += kPiece) {
    media.read(piece.data(), static_cast<std::streamsize>(kPiece));
    const auto count = static_cast<std::size_t>(media.gcount());
    for (std::size_t index = 0; freedType && index < kFree.size(); ++index) {
      const std::uint64_t place = *freedType + index;
      if (place >= start && place - start < count) piece[place - start] = kFree[index];
    }
    write(std::string_view(piece).substr(0, count));
  }
}

// `headerAt(place)` gives the 16 bytes, or fewer at the end, that stand there.
template <class HeaderAt>
void walk(std::uint64_t size, Layout layout, HeaderAt headerAt, const Visit& visit) {
  std::uint64_t place = 0;
  while (place < size) {
    const std::string_view header = headerAt(place);
    if (header.size() < kHeaderSize) {
      throw std::runtime_error("the " + std::to_string(header.size()) + " bytes at byte " +
                               std::to_string(place) + " are no header");
    }
    const auto [type, announced, headerSize] =
        layout == Layout::Atoms ? announcedAtom(header) : announcedChunk(header);
    if (announced == 0) refuse(type, place, "has the size 0: nothing can follow it");
    if (announced < headerSize) refuse(type, place, "is smaller than its header");
    if (announced > size - place) refuse(type, place, "announces more bytes than the file holds");
    visit({type, place, place + headerSize, place + announced});
    place += announced;
    if (layout == Layout::Chunks) place += announced % 2;
  }
}

}  // namespace

void eachStructure(std::istream& media, Layout layout, const Visit& visit) {
  Headers headers(media);
  walk(
      sizeOf(media), layout, [&](std::uint64_t place) { return headers.at(place); }, visit);
}

void eachAtom(std::string_view bytes, const Visit& visit) {
  const auto headerAt = [&](std::uint64_t place) { return bytes.substr(place, kWideHeaderSize); };
  walk(bytes.size(), Layout::Atoms, headerAt, visit);
}

std::string writeOnto(const std::string& media, Layout layout, const Bytes& block,
                      const Write& write) {
  std::ifstream file(std::filesystem::u8path(media), std::ios::binary);
  if (!file) throw std::runtime_error(media + ": cannot be opened");
  Plan plan;
  try {
    plan = layout == Layout::Atoms ? planForAtoms(file) : planForChunks(file);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(media + ": " + error.what());
  }
  copy(file, plan.freedType, write);
  if (file.bad()) throw std::runtime_error(media + ": cannot be read");
  write(plan.append);
  write(block);
  return plan.whyUntagged;
}

}  // namespace recording
