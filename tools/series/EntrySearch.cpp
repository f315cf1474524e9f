#include "tools/series/EntrySearch.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cstring>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "ZRKMetaData/src/ZRKMParserUtil.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace series {

namespace {

using ZRKMetaData::ContainerKind;
using ZRKMetaData::int32;
using ZRKMetaData::int64;
using ZRKMetaData::MetaDataHeader;
using ZRKMetaData::MetaDataUUID;
using ZRKMetaData::StreamWindow;
using ZRKMetaData::uint32;
using ZRKMetaData::uint64;

constexpr int64 kHeaderBytes = MetaDataHeader::kByteCount;
constexpr int64 kStructureBytes = 8;  // of the header of an atom or chunk
constexpr int64 kWideAtomBytes = 16;
constexpr std::size_t kReadAhead = 4096;
constexpr std::string_view kEntryType = "DATA";
constexpr std::string_view kBlockType = "ZRKM";

constexpr const char* kOutsideBlock = "it is inside another structure than a metadata block";
constexpr const char* kInsideEntry = "it is inside another entry";
constexpr const char* kAroundEntry = "another entry header is inside it";
constexpr const char* kNoFrame = "no DATA structure leads to it";
constexpr const char* kWrongSize = "its size leads to no structure";
constexpr const char* kNotLinked = "neither a block nor the entry before leads to it";

// An atom or chunk.
struct Structure {
  int64 start = 0;
  int64 payload = 0;
  int64 end = 0;   // 0 for a size that no structure has
  int64 next = 0;  // where the next structure begins
  std::string type;
};

// Reads structures of one layout anywhere in the file.
class Structures {
 public:
  Structures(std::istream& file, bool isAtoms, int64 fileSize)
      : m_window(file, 0, kReadAhead), m_isAtoms(isAtoms), m_fileSize(fileSize) {}

  int64 fileSize() const { return m_fileSize; }

  std::string bytes(int64 offset, int64 count) {
    if (offset < 0 || count > m_fileSize - offset) return {};
    std::string bytes(static_cast<std::size_t>(count), '\0');
    m_window.seek(offset);
    bytes.resize(m_window.read(bytes.data(), bytes.size()));
    return bytes;
  }

  MetaDataHeader header(int64 offset) {
    m_window.seek(offset);
    return ZRKMetaData::readHeader(m_window);
  }

  // None where no header fits into the file.
  std::optional<Structure> at(int64 start) {
    if (start < 0 || start > m_fileSize - kStructureBytes) return std::nullopt;
    const auto size = static_cast<uint64>(m_fileSize);
    Structure read;
    read.start = start;
    m_window.seek(start);
    uint64 bytesFromBase = 0;
    if (m_isAtoms) {
      uint32 type = 0;
      if (!ZRKMetaData::readAtomHeader(m_window, size, &bytesFromBase, &type)) return std::nullopt;
      read.type.resize(sizeof type);
      boost::endian::endian_store<uint32, sizeof type, boost::endian::order::big>(
          reinterpret_cast<unsigned char*>(read.type.data()), type);
    } else {
      uint32 payloadSize = 0;
      read.type.resize(4);
      if (!ZRKMetaData::readChunkHeader(m_window, size, read.type.data(), &payloadSize))
        return std::nullopt;
      bytesFromBase = uint64{payloadSize} + kStructureBytes;
    }
    read.payload = m_window.position();
    const bool isPossible =
        bytesFromBase >= static_cast<uint64>(read.payload - start) &&
        bytesFromBase < static_cast<uint64>(std::numeric_limits<int64>::max() - start);
    if (!isPossible) return read;
    read.end = start + static_cast<int64>(bytesFromBase);
    read.next = m_isAtoms ? read.end : read.end + static_cast<int64>(bytesFromBase % 2);
    return read;
  }

  // The structure of this type whose payload begins at `payload`.
  std::optional<Structure> around(int64 payload, std::string_view type) {
    for (const int64 size : {kStructureBytes, kWideAtomBytes}) {
      const auto structure = at(payload - size);
      if (structure && structure->type == type) {
        if (structure->payload == payload) return structure;
        // An atom whose size is damaged to one that another size would follow.
        if (size == kStructureBytes) return Structure{payload - size, payload, 0, 0, ""};
      }
      if (!m_isAtoms) break;
    }
    return std::nullopt;
  }

  // Whether the file goes on at `offset`, or ends there.
  bool isPlausible(int64 offset) {
    if (offset > m_fileSize - kStructureBytes) return offset <= m_fileSize;
    const auto structure = at(offset);
    return structure && structure->end != 0 &&
           std::all_of(structure->type.begin(), structure->type.end(), [](char character) {
             return (character >= ' ' && character <= '~') || character == '\xA9';
           });
  }

 private:
  StreamWindow m_window;
  const bool m_isAtoms;
  const int64 m_fileSize;
};

bool isReadable(int32 version) {
  return version == 1 || version == MetaDataUUID::kUnknownVersion;
}

// A part of the file.
struct Range {
  int64 start;
  int64 end;
};

// What is searched: all but the media, which may be most of the file, where their structures are
// whole.
std::vector<Range> searchedRanges(std::istream& file, bool isAtoms, int64 fileSize) {
  constexpr int64 kLeastSkipped = 64 << 10;  // bounds the number of ranges
  const std::string_view mediaType = isAtoms ? "mdat" : "RIFF";
  Structures structures(file, isAtoms, fileSize);
  std::vector<Range> ranges = {{0, fileSize}};
  for (auto each = structures.at(0); each && each->end != 0 && each->end <= fileSize;
       each = structures.at(each->next)) {
    const bool isSkipped = each->type == mediaType && each->end - each->payload >= kLeastSkipped &&
                           structures.isPlausible(each->next);
    if (!isSkipped) continue;
    ranges.back().end = each->payload;
    ranges.push_back({each->end, fileSize});
  }
  return ranges;
}

// Collects the offsets of entry headers, a megabyte of the file at a time.
class HeaderSearch {
 public:
  HeaderSearch(std::istream& file, bool isAtoms) : m_file(file), m_isAtoms(isAtoms) {}

  std::vector<int64> offsets(const std::vector<Range>& ranges) {
    for (const Range& range : ranges) searchRange(range);
    m_file.clear();
    std::sort(m_offsets.begin(), m_offsets.end());
    m_offsets.erase(std::unique(m_offsets.begin(), m_offsets.end()), m_offsets.end());
    return std::move(m_offsets);
  }

 private:
  void searchRange(const Range& range) {
    constexpr int64 kPieceBytes = 1 << 20;
    // Before and behind a place lie what a look at it needs.
    constexpr std::size_t kOverlap = kWideAtomBytes + kHeaderBytes;
    std::string piece;
    int64 start = range.start;  // of the piece
    int64 next = range.start;
    m_file.clear();
    m_file.seekg(next);
    while (m_file.good() && next < range.end) {
      const std::size_t kept = piece.size();
      const int64 count = std::min(kPieceBytes, range.end - next);
      piece.resize(kept + static_cast<std::size_t>(count));
      m_file.read(piece.data() + kept, count);
      piece.resize(kept + static_cast<std::size_t>(m_file.gcount()));
      next += m_file.gcount();
      search(piece, start);
      const std::size_t dropped = piece.size() - std::min(piece.size(), 2 * kOverlap);
      piece.erase(0, dropped);
      start += static_cast<int64>(dropped);
    }
  }

  void search(std::string_view piece, int64 start) {
    const boost::uuids::uuid family = MetaDataUUID::identifierWithKey(0);
    constexpr std::size_t kKeyBytes = 4;  // up to the key
    const std::string_view tail(reinterpret_cast<const char*>(family.data) + kKeyBytes,
                                sizeof family.data - kKeyBytes);
    forEach(piece, tail, [&](std::size_t place) {
      if (place >= kKeyBytes && isRegistered(piece.substr(place - kKeyBytes))) {
        add(piece, place - kKeyBytes, start, false);
      }
    });
    forEach(piece, kEntryType, [&](std::size_t place) {
      const std::size_t payload = place + (m_isAtoms ? 4 : 8);
      add(piece, payload, start, true);
      if (m_isAtoms && place >= 4 && isSmallSize(piece.substr(place - 4))) {
        add(piece, payload + 8, start, true);
      }
    });
  }

  template <class Visit>
  static void forEach(std::string_view piece, std::string_view pattern, Visit visit) {
    for (auto place = piece.find(pattern); place != std::string_view::npos;
         place = piece.find(pattern, place + 1)) {
      visit(place);
    }
  }

  static bool isRegistered(std::string_view bytes) {
    boost::uuids::uuid id{};
    std::memcpy(id.data, bytes.data(), std::min(bytes.size(), sizeof id.data));
    return MetaDataUUID::isKnown(id);
  }

  static bool isSmallSize(std::string_view bytes) {
    return bytes.substr(0, 3) == std::string_view("\0\0\0", 3) &&
           static_cast<unsigned char>(bytes[3]) < kStructureBytes;
  }

  void add(std::string_view piece, std::size_t offset, int64 start, bool needsVersion) {
    if (offset + kHeaderBytes > piece.size()) return;
    const auto version = boost::endian::endian_load<int32, 4, boost::endian::order::little>(
        reinterpret_cast<const unsigned char*>(piece.data() + offset + sizeof(boost::uuids::uuid)));
    if (needsVersion && !isReadable(version)) return;
    m_offsets.push_back(start + static_cast<int64>(offset));
    if (m_offsets.size() > 4 * kMaxFoundEntries) refuse();
  }

 public:
  [[noreturn]] static void refuse() {
    throw std::runtime_error("has more than " + std::to_string(kMaxFoundEntries) +
                             " entry headers, which no recorder writes");
  }

 private:
  std::istream& m_file;
  const bool m_isAtoms;
  std::vector<int64> m_offsets;
};

// Tells, for rising offsets, whether one is inside a whole structure of the top level that is no
// block: media, or free space.
class OtherStructures {
 public:
  explicit OtherStructures(Structures& structures) : m_structures(structures) {}

  // The end of the structure around `offset`.
  std::optional<int64> endAround(int64 offset) {
    while (!m_isBroken && m_current.next <= offset) {
      const auto next = m_structures.at(m_current.next);
      m_isBroken = !next || next->end == 0 || next->end > m_structures.fileSize() ||
                   !m_structures.isPlausible(next->next);
      if (!m_isBroken) m_current = *next;
    }
    const bool isInside =
        !m_isBroken && m_current.type != kBlockType && offset >= m_current.payload;
    return isInside ? std::optional(m_current.end) : std::nullopt;
  }

 private:
  Structures& m_structures;
  Structure m_current;
  bool m_isBroken = false;
};

// An entry while its links are examined.
struct Link {
  Structure frame;
  int64 blockStart = 0;  // of the block that begins right before it, else 0 ...
  int64 blockEnd = 0;  // ... and the end of the block that it belongs to, 0 for none that is whole
  bool startsBlock = false;
  bool isInBlock = false;
  bool endsRight = false;
  bool endsBlock = false;
};

class Linker {
  struct Block {
    int64 announcedEnd;
    int64 end;  // 0 where it leads to no structure
  };

 public:
  Linker(Structures& structures, std::vector<FoundEntry>& entries)
      : m_structures(structures), m_entries(entries), m_links(entries.size()) {}

  void link() {
    readFrames();
    for (std::size_t index = 0; index < m_links.size(); ++index) findEnd(index);
    std::vector<bool> fromStart(m_links.size());
    std::vector<bool> fromEnd(m_links.size());
    for (std::size_t index = 0; index < m_links.size(); ++index) {
      fromStart[index] = m_links[index].startsBlock ||
                         (index != 0 && fromStart[index - 1] && leadsToNext(index - 1));
    }
    for (std::size_t index = m_links.size(); index-- > 0;) {
      fromEnd[index] = m_links[index].endsBlock ||
                       (index + 1 < m_links.size() && fromEnd[index + 1] && leadsToNext(index));
    }
    OtherStructures others(m_structures);
    int64 coveredUntil = 0;
    for (std::size_t index = 0; index < m_links.size(); ++index) {
      FoundEntry& entry = m_entries[index];
      const Link& link = m_links[index];
      const auto otherEnd = others.endAround(entry.offset);
      if (otherEnd) {
        entry.doubt = kOutsideBlock;
      } else if (link.frame.type != kEntryType) {
        entry.doubt = kNoFrame;
      } else if (entry.offset < coveredUntil) {
        entry.doubt = kInsideEntry;
      } else if (!link.endsRight) {
        entry.doubt = isEndPlausible(index) ? kAroundEntry : kWrongSize;
      } else if (!fromStart[index] && !fromEnd[index]) {
        entry.doubt = kNotLinked;
      }
      if (isEndPlausible(index)) coveredUntil = std::max(coveredUntil, link.frame.end);
      setEnd(index, otherEnd);
    }
  }

 private:
  // The structure around an entry whose type is damaged; the size may be right. `expected` is where
  // the entry before leads.
  Structure damagedFrame(int64 offset, int64 expected) {
    const int64 wideStart = offset - kWideAtomBytes;
    const bool isWide =
        expected == wideStart || m_structures.around(wideStart, kBlockType).has_value();
    Structure frame;
    frame.start = isWide ? wideStart : offset - kStructureBytes;
    if (const auto read = m_structures.at(frame.start)) {
      frame = *read;
      if (frame.payload != offset) frame.end = 0;
    }
    frame.type.clear();
    return frame;
  }

  void readFrames() {
    std::vector<Block> blocks;  // the outermost first: a text may hold a recording
    for (std::size_t index = 0; index < m_links.size(); ++index) {
      Link& link = m_links[index];
      const int64 offset = m_entries[index].offset;
      if (const auto frame = m_structures.around(offset, kEntryType)) {
        link.frame = *frame;
        link.frame.type = kEntryType;
      } else {
        link.frame = damagedFrame(offset, index == 0 ? 0 : m_links[index - 1].frame.next);
      }
      while (blocks.size() > 1 && blocks.back().announcedEnd != 0 &&
             blocks.back().announcedEnd <= offset) {
        blocks.pop_back();
      }
      if (const auto around = m_structures.around(link.frame.start, kBlockType)) {
        link.startsBlock = true;
        link.blockStart = around->start;
        const bool leadsOn =
            around->end > m_structures.fileSize() || m_structures.isPlausible(around->next);
        blocks.push_back({around->end, leadsOn ? around->end : 0});
      }
      link.isInBlock = !blocks.empty();
      link.blockEnd = blocks.empty() ? 0 : blocks.back().end;
    }
  }

  bool isLast(std::size_t index) const { return index + 1 == m_links.size(); }

  bool leadsToNext(std::size_t index) const {
    const Structure& frame = m_links[index].frame;
    return frame.end != 0 && !isLast(index) && frame.next == m_links[index + 1].frame.start;
  }

  // Whether the entry ends where a structure begins, whatever headers are inside it.
  bool isEndPlausible(std::size_t index) const {
    const Link& link = m_links[index];
    const Structure& frame = link.frame;
    if (frame.end == 0) return false;
    const auto next = std::lower_bound(
        m_links.begin() + static_cast<std::ptrdiff_t>(index) + 1, m_links.end(), frame.next,
        [](const Link& each, int64 start) { return each.frame.start < start; });
    if (next != m_links.end() && next->frame.start == frame.next) return true;
    return link.blockEnd != 0 && (frame.next == link.blockEnd || isCutInBlock(link));
  }

  // Whether the file ends inside the headers of the next entry.
  bool isCutBehind(const Link& link) {
    const int64 left = m_structures.fileSize() - link.frame.next;
    if (link.blockEnd == 0 || left < 0 || left >= kWideAtomBytes + kHeaderBytes) return false;
    const auto next = m_structures.at(link.frame.next);
    return !next || next->type == kEntryType;
  }

  bool isCutInBlock(const Link& link) const {
    return link.isInBlock && link.frame.end > m_structures.fileSize() &&
           link.blockEnd >= link.frame.end;
  }

  void findEnd(std::size_t index) {
    Link& link = m_links[index];
    const Structure& frame = link.frame;
    if (frame.end < m_entries[index].offset + kHeaderBytes) return;
    const int64 fileSize = m_structures.fileSize();
    const bool isClear = isLast(index) || m_links[index + 1].frame.start >= frame.next;
    const bool isBlockWhole = link.blockEnd != 0 && link.blockEnd <= fileSize;
    link.endsBlock = isClear && isBlockWhole && frame.next == link.blockEnd;
    const bool endsFile = isLast(index) && link.isInBlock && !isBlockWhole &&
                          (frame.end == fileSize || isCutBehind(link));
    m_entries[index].isCut =
        isLast(index) && frame.end > fileSize && link.isInBlock && link.blockEnd >= frame.end;
    link.endsRight = leadsToNext(index) || link.endsBlock || endsFile || m_entries[index].isCut;
  }

  void setEnd(std::size_t index, std::optional<int64> otherEnd) {
    FoundEntry& entry = m_entries[index];
    const Link& link = m_links[index];
    const int64 fileSize = m_structures.fileSize();
    const int64 least = entry.offset + kHeaderBytes;
    if (link.endsRight) {
      entry.end = std::min(link.frame.end, fileSize);
      return;
    }
    // What follows belongs to it up to the next structure that is known.
    entry.end = otherEnd.value_or(fileSize);
    entry.isCut = true;
    if (link.blockEnd > least) entry.end = std::min(entry.end, link.blockEnd);
    if (!isLast(index)) {
      const Link& next = m_links[index + 1];
      entry.end = std::min(entry.end, next.startsBlock ? next.blockStart : next.frame.start);
    }
    entry.end = std::max(entry.end, least);
  }

  Structures& m_structures;
  std::vector<FoundEntry>& m_entries;
  std::vector<Link> m_links;
};

}  // namespace

std::vector<FoundEntry> findEntries(std::istream& file, ContainerKind kind) {
  file.clear();
  file.seekg(0, std::ios::end);
  const auto fileSize = std::max<int64>(file.tellg(), 0);
  std::vector<FoundEntry> entries;
  const bool isAtoms = kind == ZRKMetaData::Atoms;
  std::vector<int64> offsets;
  if (kind == ZRKMetaData::Raw) {
    if (fileSize >= kHeaderBytes) offsets.push_back(0);
  } else {
    offsets = HeaderSearch(file, isAtoms).offsets(searchedRanges(file, isAtoms, fileSize));
  }
  Structures structures(file, isAtoms, fileSize);
  for (const int64 offset : offsets) {
    if (!entries.empty() && offset - entries.back().offset < kHeaderBytes) continue;
    if (entries.size() == kMaxFoundEntries) HeaderSearch::refuse();
    FoundEntry entry;
    entry.header = structures.header(offset);
    entry.offset = offset;
    entry.end = fileSize;
    entries.push_back(entry);
  }
  if (kind != ZRKMetaData::Raw) Linker(structures, entries).link();
  return entries;
}

}  // namespace series
