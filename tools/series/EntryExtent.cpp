#include "tools/series/EntryExtent.h"

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <cstring>
#include <stdexcept>
#include <string>

#include "text/Counted.h"
#include "tools/series/ReadListener.h"

namespace series {

using ZRKMetaData::int64;
using ZRKMetaData::uint32;

namespace {

constexpr int kAtomHeaderBytes = 8;

// Sums with a larger size could overflow.
constexpr int64 kMaxBytes = int64{1} << 62U;

// Whether the entry has an ordinary atom header. An extended header ends in the low half of its
// 64-bit size, never in the type and the matching 32-bit size.
bool hasOrdinaryHeader(std::istream& stream, const ZRKMetaData::MetaDataLocation& location) {
  if (location.offset < kAtomHeaderBytes) return false;
  unsigned char header[kAtomHeaderBytes] = {};
  stream.seekg(location.offset - kAtomHeaderBytes);
  stream.read(reinterpret_cast<char*>(header), kAtomHeaderBytes);
  const bool isRead = stream.good() && std::memcmp(header + 4, "DATA", 4) == 0;
  stream.clear();
  return isRead && int64{boost::endian::load_big_u32(header)} - 16 == location.size;
}

}  // namespace

std::string EntryExtent::cutText() const {
  return "the file ends " + text::counted(static_cast<std::uint64_t>(announced - present), "byte") +
         " before the stream does";
}

int64 sizeOfSource(std::istream& stream) {
  stream.clear();
  stream.seekg(0, std::ios::end);
  const int64 size = stream.good() ? static_cast<int64>(stream.tellg()) : 0;
  stream.clear();
  return std::max<int64>(size, 0);
}

EntryExtent entryExtent(ZRKMetaData::MetaDataParser& parser,
                        const ZRKMetaData::MetaDataLocation& location) {
  std::istream& stream = parser.stream();
  const int64 fileSize = sizeOfSource(stream);
  const bool isShort =
      parser.containerKind() == ZRKMetaData::Atoms && hasOrdinaryHeader(stream, location);
  EntryExtent extent;
  extent.offset = location.offset;
  extent.announced =
      std::clamp<int64>(location.size, -kAtomHeaderBytes, kMaxBytes - kAtomHeaderBytes) +
      (isShort ? kAtomHeaderBytes : 0);
  extent.announced = std::max<int64>(extent.announced, 0);
  const int64 available = std::max<int64>(fileSize - std::max<int64>(location.offset, 0), 0);
  extent.present = std::min(extent.announced, available);
  return extent;
}

void readEntry(ZRKMetaData::MetaDataParser& parser, const EntryExtent& extent,
               const std::function<void(std::string_view)>& visit) {
  constexpr int64 kPieceBytes = int64{1} << 20U;
  std::istream& stream = parser.stream();
  stream.clear();
  stream.seekg(extent.offset);
  std::string piece(static_cast<std::size_t>(std::min(extent.present, kPieceBytes)), '\0');
  for (int64 left = extent.present; left > 0;) {
    const int64 count = std::min(left, kPieceBytes);
    if (!stream.read(piece.data(), count)) {
      throw std::runtime_error("the file became shorter while it was read");
    }
    visit(std::string_view(piece).substr(0, static_cast<std::size_t>(count)));
    reportBytesRead(count);
    left -= count;
  }
}

}  // namespace series
