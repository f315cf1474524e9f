// The three scans that build the index, one per container kind. Each starts at byte 0, whatever the
// position of the stream. Afterwards the stream has the position and the indicators that reading
// without read-ahead leaves. The stream's exception mask is set aside during a scan, which throws
// nothing but std::bad_alloc.
//
// A scan follows the sizes that the file announces. It keeps what it has and stops at a header that
// does not fit into the file, at a zero size, when its own seek or read fails, and when it reaches
// for the second time a structure whose size led backward. After the first size that leads
// backward, at most 131,072 further structures (atoms, chunks, entries) are examined. A scan that
// only goes forward needs no other bound than the end of the file.
#pragma once

#include <istream>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace ZRKMetaData {

/// Without this bound a few megabytes could keep a scan busy for minutes.
constexpr uint64 kMaxStructuresAfterBackwardJump = 1U << 17U;

/// Each clears `locations` and fills it; of entries with one identifier the last in the scan wins.
/// Entries of another type than "DATA" are skipped. Each is reported on standard error, at the
/// latest when the scan ends, even if it ends by an exception.
void scanAtoms(std::istream& stream, MetaDataLocations& locations,
               uint64 maxAfterBackwardJump = kMaxStructuresAfterBackwardJump);
void scanChunks(std::istream& stream, MetaDataLocations& locations);

/// Takes the whole stream as one entry, even when it is too short for a header.
void scanRaw(std::istream& stream, MetaDataLocations& locations);

}  // namespace ZRKMetaData
