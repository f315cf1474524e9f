#include "tools/series/RecordStream.h"

#include <boost/uuid/uuid_io.hpp>
#include <cstdint>

#include "text/Counted.h"

namespace series {

DamagedStream::DamagedStream(const boost::uuids::uuid& stream, ZRKMetaData::int64 byteOffset,
                             const std::string& reason)
    : std::runtime_error("stream " + boost::uuids::to_string(stream) + ": byte " +
                         std::to_string(byteOffset) + ": " + reason),
      m_stream(stream),
      m_byteOffset(byteOffset),
      m_reason(reason) {}

ZRKMetaData::int32 readableVersion(const boost::uuids::uuid& id) {
  using ZRKMetaData::MetaDataUUID;
  return MetaDataUUID::isKnown(id) ? 1 : MetaDataUUID::kUnknownVersion;
}

std::optional<ZRKMetaData::int32> refusedVersion(ZRKMetaData::MetaDataParser& parser,
                                                 const boost::uuids::uuid& id) {
  const auto found = parser.locations().find(id);
  if (found == parser.locations().end()) return std::nullopt;
  const auto version = ZRKMetaData::readHeaderAt(parser.stream(), found->second.offset).version;
  return version == readableVersion(id) ? std::nullopt : std::optional(version);
}

namespace detail {

void requireWhole(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                  ZRKMetaData::int64 position, ZRKMetaData::int64 cutRecordBytes) {
  if (cutRecordBytes != 0) {
    const auto size = static_cast<std::uint64_t>(cutRecordBytes);
    const auto there = static_cast<std::uint64_t>(sizeOfSource(parser.stream()) - position);
    throw DamagedStream(id, position,
                        "the file ends " + text::counted(there, "byte") + " into a record of " +
                            text::counted(size, "byte"));
  }
  const EntryExtent extent = entryExtent(parser, parser.locationOf(id));
  if (!extent.isCut() || refusedVersion(parser, id)) return;
  throw DamagedStream(id, position, extent.cutText());
}

}  // namespace detail

}  // namespace series
