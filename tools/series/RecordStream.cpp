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

namespace detail {

void requireWhole(ZRKMetaData::MetaDataParser& parser, const boost::uuids::uuid& id,
                  ZRKMetaData::int64 position, ZRKMetaData::int64 cutRecordBytes) {
  const EntryExtent extent = entryExtent(parser, parser.locationOf(id));
  if (cutRecordBytes != 0) {
    const auto size = static_cast<std::uint64_t>(cutRecordBytes);
    const auto there = static_cast<std::uint64_t>(sizeOfSource(parser.stream()) - position);
    throw DamagedStream(id, position,
                        "the file ends " + text::counted(there, "byte") + " into a record of " +
                            text::counted(size, "byte"));
  }
  if (!extent.isCut()) return;
  const auto header = ZRKMetaData::readHeaderAt(parser.stream(), extent.offset);
  if (!ZRKMetaData::isReadableVersion(header)) return;
  throw DamagedStream(id, position, extent.cutText());
}

}  // namespace detail

}  // namespace series
