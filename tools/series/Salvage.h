// Recovers the streams of a damaged recording: one whose structures lead nowhere, or that is cut.
//
// A stream is certain when its identifier and version are registered, no other entry has its
// identifier, and both its bounds (EntrySearch.h) and its records (WholeRecords.h) are certain.
// Entries whose bounds are not certain are not counted among the others. Damage to times, to values
// and to the identifiers of images cannot be seen. Nor can an identifier that damage has made to
// another registered one.
//
// A block is old when a later one has entries of all its identifiers, as `voxa graft` leaves it.
// Its streams are neither certain nor doubtful: a reader takes those of the later block.
#pragma once

#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace series {

enum class SalvageState {
  Certain,
  Doubtful,
  Superseded,  ///< doubtful, and another doubtful stream with the identifier is to be preferred
  Old,
};

/// A stream that was found, header and whole records.
struct SalvagedStream {
  ZRKMetaData::MetaDataHeader header;  ///< as stored
  ZRKMetaData::int64 offset = 0;       ///< of the header, bytes from the start of the file
  ZRKMetaData::int64 size = 0;         ///< bytes from there to the end of the last whole record
  std::optional<ZRKMetaData::uint64> recordCount;  ///< none where the type is not known
  bool isCut = false;                              ///< records may be missing at its end
  SalvageState state = SalvageState::Certain;
  std::string reason;  ///< why it is not certain, else empty

  bool isCertain() const { return state == SalvageState::Certain; }
};

/// The streams of `file` in file order; their ranges do not overlap. Memory grows with the number
/// of entries, of which there may be kMaxFoundEntries (std::runtime_error above); time is linear in
/// the size of the file. Moves the stream and clears its state. Requires: `kind` is not None.
std::vector<SalvagedStream> salvageStreams(std::istream& file, ZRKMetaData::ContainerKind kind);

}  // namespace series
