#include "tools/series/EntrySearch.h"

#include <algorithm>
#include <optional>

#include "tools/series/HeaderSearch.h"
#include "tools/series/Structures.h"

namespace series {

namespace {

using detail::kBlockType;
using detail::kEntryHeaderBytes;
using detail::kEntryType;
using detail::kStructureBytes;
using detail::kWideAtomBytes;
using detail::Structure;
using detail::Structures;
using ZRKMetaData::ContainerKind;
using ZRKMetaData::int64;

constexpr const char* kOutsideBlock = "it is inside another structure than a metadata block";
constexpr const char* kInsideEntry = "it is inside another entry";
constexpr const char* kAroundEntry = "another entry header is inside it";
constexpr const char* kNoFrame = "no DATA structure leads to it";
constexpr const char* kWrongSize = "its size leads to no structure";
constexpr const char* kNotLinked = "neither a block nor the entry before leads to it";

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
    std::size_t blockCount = 0;
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
        ++blockCount;
        link.blockStart = around->start;
        const bool leadsOn =
            around->end > m_structures.fileSize() || m_structures.isPlausible(around->next);
        blocks.push_back({around->end, leadsOn ? around->end : 0});
      }
      m_entries[index].block = blockCount;
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
    if (link.blockEnd == 0 || left < 0 || left >= kWideAtomBytes + kEntryHeaderBytes) return false;
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
    if (frame.end < m_entries[index].offset + kEntryHeaderBytes) return;
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
    const int64 least = entry.offset + kEntryHeaderBytes;
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
    if (fileSize >= kEntryHeaderBytes) offsets.push_back(0);
  } else {
    offsets = detail::headerOffsets(file, isAtoms, fileSize, kMaxFoundEntries);
  }
  Structures structures(file, isAtoms, fileSize);
  for (const int64 offset : offsets) {
    if (!entries.empty() && offset - entries.back().offset < kEntryHeaderBytes) continue;
    if (entries.size() == kMaxFoundEntries) detail::refuseHeaders(kMaxFoundEntries);
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
