// The byte range of an entry, to copy or to measure it.
//
// The index states where records end for the reader, which is 8 bytes before the end of an atom
// with an ordinary header (docs/format.md). Whoever needs the bytes themselves asks here.
#pragma once

#include <functional>
#include <istream>
#include <string>
#include <string_view>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"

namespace series {

/// An entry in its file: the header of 24 bytes and the records. All numbers are bytes.
struct EntryExtent {
  ZRKMetaData::int64 offset = 0;     ///< of the header in the file
  ZRKMetaData::int64 announced = 0;  ///< that the container states, at least 0
  ZRKMetaData::int64 present = 0;    ///< of them, those that the file has, at least 0

  /// The file ends before the entry does.
  bool isCut() const { return present < announced; }

  /// "the file ends 12 bytes before the stream does". Requires: the entry is cut.
  std::string cutText() const;
};

/// The size of the source of `stream` in bytes, 0 where it cannot be told. Clears its state.
ZRKMetaData::int64 sizeOfSource(std::istream& stream);

/// Reads no byte but the 8 in front of the entry, where an atom's header says whether the indexed
/// size is 8 bytes short. Moves the parser's stream and clears its state. A size that no file has
/// counts as 2^62 bytes. Used by the thread that uses the parser.
EntryExtent entryExtent(ZRKMetaData::MetaDataParser& parser,
                        const ZRKMetaData::MetaDataLocation& location);

/// Passes the bytes of an entry that are present, header included, to `visit` in pieces of at most
/// 1 MiB. Throws std::runtime_error when the source has become shorter.
void readEntry(ZRKMetaData::MetaDataParser& parser, const EntryExtent& extent,
               const std::function<void(std::string_view)>& visit);

}  // namespace series
