#include "tools/series/RecordStream.h"

#include <boost/uuid/uuid_io.hpp>

namespace series {

DamagedStream::DamagedStream(const boost::uuids::uuid& stream, ZRKMetaData::int64 byteOffset,
                             const std::string& reason)
    : std::runtime_error("stream " + boost::uuids::to_string(stream) + ": byte " +
                         std::to_string(byteOffset) + ": " + reason),
      m_stream(stream),
      m_byteOffset(byteOffset),
      m_reason(reason) {}

}  // namespace series
