// The three scans that build the index, one per container kind. Each starts at byte 0, whatever the
// position of the stream, and leaves the stream wherever it got to.
//
// A scan follows the sizes that the file announces. It stops, keeping what it has, at a header that
// does not fit into the file, at a zero size, when its own seek or read fails, when it meets a
// structure whose size led it backward for the second time, and once it has examined more
// structures than twice the bytes of the file; and after 131,072 steps, counted from the first that
// a size led backward, that are backward or longer than what is read ahead. A scan that only goes
// forward never gets that far.
#pragma once

#include <istream>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace ZRKMetaData {

/// Each clears `locations` and fills it; of entries with one identifier the last in the scan wins.
/// Entries of another type than "DATA" are named on standard error, at the latest when the scan
/// ends, and skipped.
void scanAtoms(std::istream& stream, MetaDataLocations& locations);
void scanChunks(std::istream& stream, MetaDataLocations& locations);

/// Takes the whole stream as one entry, even when it is too short for a header.
void scanRaw(std::istream& stream, MetaDataLocations& locations);

}  // namespace ZRKMetaData
