// Finds out whether a recording is cut: its last structure states an end beyond the file.
//
// The index of a cut recording has fewer streams and does not say so, because a reader ends without
// a fault where the file does.
#pragma once

#include <istream>
#include <optional>
#include <string>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace series {

/// A structure of the top level that the file does not hold to its end. A plain value.
struct Overrun {
  std::string type;               ///< of the atom or chunk, four characters
  ZRKMetaData::int64 start = 0;   ///< of its header, bytes from the start of the file
  ZRKMetaData::int64 excess = 0;  ///< the bytes from the end of the file to its stated end

  /// A sentence for people, without the file: what is missing, and what to do.
  std::string text() const;
};

/// Walks the atoms or chunks of the top level of `file`, up to the first that leads nowhere or
/// backward, and reads nothing but their headers, so its cost is proportional to their number.
/// `streams` are those that a scan of the file found: the walk begins at the block that begins with
/// the first of them, because the scan has walked up to there, and at the start of the file where
/// there is none. Returns the last one where its end is beyond the file and its type is one that
/// recordings have: what follows a whole recording may be anything. Nothing for sizes that mean "up
/// to the end of the file", and for raw files. Moves the stream and clears its state.
std::optional<Overrun> findOverrun(std::istream& file, ZRKMetaData::ContainerKind kind,
                                   const ZRKMetaData::MetaDataLocations& streams);

}  // namespace series
