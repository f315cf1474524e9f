// Finds metadata entries in a damaged recording, where the index of the parser ends at the first
// structure that leads nowhere.
//
// The file is searched for entry headers: a registered identifier wherever it stands, and any
// header behind the header of a "DATA" atom or chunk whose version can be read. Media ("mdat",
// "RIFF") are not searched where their structure is whole. The structures around a header then tell
// whether the bounds of its entry are certain: it begins where a block or the entry before it
// leads, or leads itself to the end of the block, and it ends where the next entry begins, at the
// end of the block, or with a file that is cut.
#pragma once

#include <cstddef>
#include <istream>
#include <vector>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace series {

/// An entry header and the bytes behind it. Offsets are bytes from the start of the file.
struct FoundEntry {
  ZRKMetaData::MetaDataHeader header;
  ZRKMetaData::int64 offset = 0;  ///< of the header
  ZRKMetaData::int64 end = 0;     ///< at least the end of the header
  std::size_t block = 0;        ///< counts the blocks whose start was found, up to the entry's own
  bool isCut = false;           ///< records may be missing, and the last one incomplete
  const char* doubt = nullptr;  ///< why the bounds are not certain, null when they are
};

/// More entries than any recorder writes. A file of headers would otherwise need several times its
/// size in memory.
constexpr std::size_t kMaxFoundEntries = 65536;

/// The entries of `file`, in file order; they do not overlap. A raw file is one entry. Moves the
/// stream and clears its state. Time is linear in the size of the file. Throws std::runtime_error
/// when there are more than kMaxFoundEntries. Requires: `kind` is not None.
std::vector<FoundEntry> findEntries(std::istream& file, ZRKMetaData::ContainerKind kind);

}  // namespace series
