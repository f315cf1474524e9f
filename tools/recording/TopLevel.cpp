#include "tools/recording/TopLevel.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace recording {

namespace {

constexpr std::uint64_t kHeaderSize = 8;

struct Announced {
  std::string type;
  std::uint64_t size = 0;  // header included
};

template <class Number>
Number bigEndianAt(const Bytes& bytes, std::size_t place) {
  return boost::endian::endian_load<Number, sizeof(Number), boost::endian::order::big>(
      reinterpret_cast<const unsigned char*>(bytes.data()) + place);
}

// `header` is what stands at the structure's start: 16 bytes, fewer at the end of the file.
Announced announcedAtom(const Bytes& header) {
  const std::uint64_t size = bigEndianAt<std::uint32_t>(header, 0);
  const bool isWide = size == 1 && header.size() >= 16;
  return {header.substr(4, 4), isWide ? bigEndianAt<std::uint64_t>(header, 8) : size};
}

Announced announcedChunk(const Bytes& header) {
  const auto size = boost::endian::endian_load<std::uint32_t, 4, boost::endian::order::little>(
      reinterpret_cast<const unsigned char*>(header.data()) + 4);
  return {header.substr(0, 4), size == 0 ? 0 : kHeaderSize + size};
}

Bytes headerAt(std::istream& media, std::uint64_t place) {
  Bytes header(16, '\0');
  media.clear();
  media.seekg(static_cast<std::streamoff>(place));
  media.read(header.data(), static_cast<std::streamsize>(header.size()));
  header.resize(static_cast<std::size_t>(media.gcount()));
  media.clear();
  return header;
}

std::uint64_t sizeOf(std::istream& media) {
  media.seekg(0, std::ios::end);
  return static_cast<std::uint64_t>(static_cast<std::streamoff>(media.tellg()));
}

[[noreturn]] void refuse(const std::string& type, std::uint64_t place, const std::string& why) {
  throw std::runtime_error("'" + type + "' at byte " + std::to_string(place) + " " + why);
}

}  // namespace

std::vector<Structure> topLevel(std::istream& media, Layout layout) {
  std::vector<Structure> structures;
  const std::uint64_t fileSize = sizeOf(media);
  std::uint64_t place = 0;
  while (place < fileSize) {
    const Bytes header = headerAt(media, place);
    if (header.size() < kHeaderSize) {
      throw std::runtime_error("the " + std::to_string(header.size()) + " bytes at byte " +
                               std::to_string(place) + " are no header");
    }
    const auto [type, size] =
        layout == Layout::Atoms ? announcedAtom(header) : announcedChunk(header);
    if (size == 0) refuse(type, place, "has the size 0: nothing can follow it");
    if (size < kHeaderSize) refuse(type, place, "is smaller than its header");
    if (size > fileSize - place) refuse(type, place, "announces more bytes than the file holds");
    structures.push_back({type, place, place + size});
    place += size;
    if (layout == Layout::Chunks) place += size % 2;
  }
  return structures;
}

void writeOnto(const std::string& media, const std::string& out, Layout layout,
               const Bytes& block) {
  namespace fs = std::filesystem;
  const fs::path from = fs::u8path(media);
  const fs::path to = fs::u8path(out);
  std::uint64_t end = 0;
  {
    std::ifstream file(from, std::ios::binary);
    if (!file) throw std::runtime_error(media + ": cannot be opened");
    try {
      const auto structures = topLevel(file, layout);
      if (!structures.empty()) end = structures.back().end;
    } catch (const std::runtime_error& error) {
      throw std::runtime_error(media + ": " + error.what());
    }
  }
  std::error_code failure;
  if (!fs::copy_file(from, to, fs::copy_options::overwrite_existing, failure)) {
    throw std::runtime_error(out + ": " + failure.message());
  }
  std::ofstream copy(to, std::ios::binary | std::ios::app);
  const bool lacksPadByte = layout == Layout::Chunks && end % 2 == 1 && fs::file_size(to) == end;
  copy << (lacksPadByte ? Bytes(1, '\0') : Bytes()) << block;
  if (!copy.flush()) throw std::runtime_error(out + ": cannot be written");
}

}  // namespace recording
