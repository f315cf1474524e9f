// The positions at which a stream of cursor images stores the bytes of each image.
//
// Recorders store an image once and then refer to it by its identifier, so that a part which is cut
// out of a stream may refer to bytes that were left out. A reference means the bytes that were
// stored last before it in the file.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"

namespace keep {

/// Positions are bytes from the start of the stream's records. Memory grows by 16 bytes with each
/// record that stores an image. Used by one thread.
class StoredImages {
 public:
  /// The next record of the stream. Call it for all, in the order of the file.
  void add(std::uint64_t position, const ZRKMetaData::CursorImage& image);

  /// Called for each record, found at `position`, in the order in which they are written. Returns
  /// where the bytes stand that must be written with it: none where the record has them itself,
  /// where they were written before, and where the stream does not have them.
  std::optional<std::uint64_t> missingWith(std::uint64_t position,
                                           const ZRKMetaData::CursorImage& image);

  /// Forgets what was written.
  void restart() { m_written.clear(); }

 private:
  std::map<std::uint64_t, std::vector<std::uint64_t>> m_positions;  // by identifier, rising
  std::map<std::uint64_t, std::uint64_t> m_written;                 // by identifier
};

}  // namespace keep
