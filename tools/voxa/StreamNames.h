// The names of streams in messages and tables.
#pragma once

#include <array>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cstddef>
#include <string>

#include "ZRKMetaData/src/MetaDataUUID.h"

namespace voxa {

/// A name is the short key, or the whole identifier where another stream has the same key. A file
/// may have a hundred thousand streams, so keys are counted once. A plain value.
class StreamNames {
 public:
  /// Call it once for each stream, before `of`.
  void add(const boost::uuids::uuid& id) { ++m_counts[id.data[kKeyByte]]; }

  std::string of(const boost::uuids::uuid& id) const {
    return m_counts[id.data[kKeyByte]] > 1 ? boost::uuids::to_string(id)
                                           : ZRKMetaData::MetaDataUUID::shortKey(id);
  }

 private:
  static constexpr std::size_t kKeyByte = 3;  // see MetaDataUUID::shortKey

  std::array<std::size_t, 256> m_counts{};
};

}  // namespace voxa
