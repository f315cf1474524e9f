#include "tools/series/StreamBytes.h"

#include <algorithm>

#include "ZRKMetaData/src/MetaDataUUID.h"

namespace series {

namespace {

constexpr std::size_t kMaxHeadBytes = kMaxGuessHeadBytes - ZRKMetaData::MetaDataHeader::kByteCount;

}  // namespace

std::string bytesAt(std::istream& file, ZRKMetaData::int64 offset, std::size_t count) {
  std::string bytes(count, '\0');
  file.clear();
  file.seekg(offset);
  file.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(file.good() || file.eof()
                   ? static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0))
                   : 0);
  return bytes;
}

SampledBytes::SampledBytes(std::istream& file, ZRKMetaData::int64 offset, std::size_t byteCount)
    : m_byteCount(byteCount), m_head(bytesAt(file, offset, std::min(byteCount, kMaxHeadBytes))) {
  const std::size_t tailBytes = std::min(byteCount - m_head.size(), kMaxGuessTailBytes);
  if (tailBytes == 0) return;
  m_tail =
      bytesAt(file, offset + static_cast<ZRKMetaData::int64>(byteCount - tailBytes), tailBytes);
}

}  // namespace series
