#include "tools/series/HeaderSearch.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "tools/series/ReadListener.h"
#include "tools/series/Structures.h"

namespace series::detail {

using ZRKMetaData::int32;
using ZRKMetaData::MetaDataUUID;

namespace {

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
  HeaderSearch(std::istream& file, bool isAtoms, std::size_t maxCount)
      : m_file(file), m_isAtoms(isAtoms), m_maxCount(maxCount) {}

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
    constexpr std::size_t kOverlap = kWideAtomBytes + kEntryHeaderBytes;
    std::string piece;
    int64 start = range.start;  // of the piece
    int64 next = start;
    m_file.clear();
    m_file.seekg(next);
    while (m_file.good() && next < range.end) {
      const std::size_t kept = piece.size();
      const int64 count = std::min(kPieceBytes, range.end - next);
      piece.resize(kept + static_cast<std::size_t>(count));
      m_file.read(piece.data() + kept, count);
      piece.resize(kept + static_cast<std::size_t>(m_file.gcount()));
      next += m_file.gcount();
      reportBytesRead(m_file.gcount());
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
    forEach(piece, tail, [&](std::size_t offset) {
      if (offset >= kKeyBytes && isRegistered(piece.substr(offset - kKeyBytes))) {
        add(piece, offset - kKeyBytes, start, false);
      }
    });
    forEach(piece, kEntryType, [&](std::size_t offset) {
      const std::size_t payload = offset + (m_isAtoms ? 4 : 8);
      add(piece, payload, start, true);
      if (m_isAtoms && offset >= 4 && isSmallSize(piece.substr(offset - 4))) {
        add(piece, payload + 8, start, true);
      }
    });
  }

  template <class Visit>
  static void forEach(std::string_view piece, std::string_view pattern, Visit visit) {
    for (auto offset = piece.find(pattern); offset != std::string_view::npos;
         offset = piece.find(pattern, offset + 1)) {
      visit(offset);
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
    if (offset + kEntryHeaderBytes > piece.size()) return;
    const auto version = boost::endian::endian_load<int32, 4, boost::endian::order::little>(
        reinterpret_cast<const unsigned char*>(piece.data() + offset + sizeof(boost::uuids::uuid)));
    if (needsVersion && !isReadable(version)) return;
    m_offsets.push_back(start + static_cast<int64>(offset));
    // A header may be found twice by its identifier and twice by its structure.
    if (m_offsets.size() / 4 > m_maxCount) refuseHeaders(m_maxCount);
  }

  std::istream& m_file;
  const bool m_isAtoms;
  const std::size_t m_maxCount;
  std::vector<int64> m_offsets;
};

}  // namespace

std::vector<int64> headerOffsets(std::istream& file, bool isAtoms, int64 fileSize,
                                 std::size_t maxCount) {
  const auto ranges = searchedRanges(file, isAtoms, fileSize);
  return HeaderSearch(file, isAtoms, maxCount).offsets(ranges);
}

void refuseHeaders(std::size_t maxCount) {
  throw std::runtime_error("has more than " + std::to_string(maxCount) +
                           " entry headers, which no recorder writes");
}

}  // namespace series::detail
