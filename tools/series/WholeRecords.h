// Tells where the last whole record of a stream ends, when the stream may be damaged or cut.
#pragma once

#include <istream>
#include <optional>
#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace series {

struct WholeRecords {
  ZRKMetaData::int64 byteCount = 0;          ///< of the whole records, from the first on
  std::optional<ZRKMetaData::uint64> count;  ///< of the records, when their type is known
  std::string doubt;                         ///< why this is not certain, empty when it is
};

/// Examines the `byteCount` bytes at `offset` of the file as records. `isCut` says that the last
/// record may be incomplete.
///
/// The result is certain when at least one record type passes the guess (Guess.h), all that pass
/// agree on the end of the last whole record, and every length in the stream agrees with what
/// follows it: the two sizes of a cursor image with each other, and texts have no NUL, which every
/// length below 16 MiB contains. The times of texts and images are finite and never fall; those of
/// other records are examined as far as the guess does. Without certainty `byteCount` is
/// the most that a type that passes allows, or all.
///
/// Moves the stream and clears its state. Reads each byte at most once per type that passes.
WholeRecords findWholeRecords(std::istream& file, ZRKMetaData::int64 offset,
                              ZRKMetaData::int64 byteCount, bool isCut);

}  // namespace series
