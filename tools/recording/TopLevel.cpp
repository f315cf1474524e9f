#include "tools/recording/TopLevel.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "tools/recording/Container.h"
#include "tools/recording/Movie.h"

namespace recording {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kTypeOffset = 4;

constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kWideHeaderSize = 16;

struct Announced {
  std::string type;
  std::uint64_t size = 0;  // header included
  std::uint64_t headerSize = kHeaderSize;
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
  if (!isWide) return {header.substr(4, 4), size};
  return {header.substr(4, 4), bigEndianAt<std::uint64_t>(header, 8), kWideHeaderSize};
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

// What is done to the copy of a media file before the block.
struct Plan {
  Bytes append;
  std::optional<std::uint64_t> freedAtom;  // where it starts
  std::string whyUntagged;
};

Bytes readPayload(std::istream& media, const Structure& structure) {
  Bytes payload(structure.end - structure.payload, '\0');
  media.clear();
  media.seekg(static_cast<std::streamoff>(structure.payload));
  media.read(payload.data(), static_cast<std::streamsize>(payload.size()));
  return payload;
}

Plan planForAtoms(std::istream& media, const std::vector<Structure>& structures) {
  const auto moov =
      std::find_if(structures.begin(), structures.end(),
                   [](const Structure& structure) { return structure.type == "moov"; });
  if (moov == structures.end()) return {{}, {}, "there is no movie header"};
  try {
    const Bytes payload = readPayload(media, *moov);
    if (isFragmented(payload)) return {{}, {}, "the movie is fragmented"};
    return {atom("moov", taggedMovieHeader(payload)), moov->start, {}};
  } catch (const std::runtime_error& error) {
    return {{}, {}, std::string("in the movie header ") + error.what()};
  }
}

Plan planForChunks(std::istream& media, const std::vector<Structure>& structures) {
  const bool lacksPadByte = !structures.empty() && structures.back().end % 2 == 1 &&
                            structures.back().end == sizeOf(media);
  return {Bytes(lacksPadByte ? 1 : 0, '\0'), {}, {}};
}

// In the place of what is there. (The library's own option to overwrite is not everywhere.)
void copyFile(const fs::path& from, const fs::path& to) {
  std::error_code failure;
  if (fs::exists(to)) {
    if (fs::equivalent(from, to, failure)) {
      throw std::runtime_error(to.u8string() + ": is the file to be copied");
    }
    fs::remove(to, failure);
  }
  if (!fs::copy_file(from, to, failure)) {
    throw std::runtime_error(to.u8string() + ": " + failure.message());
  }
}

Plan planFor(std::istream& media, Layout layout) {
  const auto structures = topLevel(media, layout);
  return layout == Layout::Atoms ? planForAtoms(media, structures)
                                 : planForChunks(media, structures);
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
    const auto [type, size, headerSize] =
        layout == Layout::Atoms ? announcedAtom(header) : announcedChunk(header);
    if (size == 0) refuse(type, place, "has the size 0: nothing can follow it");
    if (size < headerSize) refuse(type, place, "is smaller than its header");
    if (size > fileSize - place) refuse(type, place, "announces more bytes than the file holds");
    structures.push_back({type, place, place + headerSize, place + size});
    place += size;
    if (layout == Layout::Chunks) place += size % 2;
  }
  return structures;
}

std::string writeOnto(const std::string& media, const std::string& out, Layout layout,
                      const Bytes& block) {
  const fs::path from = fs::u8path(media);
  const fs::path to = fs::u8path(out);
  Plan plan;
  {
    std::ifstream file(from, std::ios::binary);
    if (!file) throw std::runtime_error(media + ": cannot be opened");
    try {
      plan = planFor(file, layout);
    } catch (const std::runtime_error& error) {
      throw std::runtime_error(media + ": " + error.what());
    }
  }
  copyFile(from, to);
  std::fstream copy(to, std::ios::binary | std::ios::in | std::ios::out);
  copy.seekp(0, std::ios::end);
  copy << plan.append << block;
  if (plan.freedAtom) {
    copy.seekp(static_cast<std::streamoff>(*plan.freedAtom + kTypeOffset));
    copy << "free";
  }
  if (!copy.flush()) throw std::runtime_error(out + ": cannot be written");
  return plan.whyUntagged;
}

}  // namespace recording
