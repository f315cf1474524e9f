// Reads atoms or chunks anywhere in a file that may be damaged. Internal to this room.
#pragma once

#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMStreamWindow.h"

namespace series::detail {

using ZRKMetaData::int64;

constexpr int64 kStructureBytes = 8;  ///< of the header of an atom or chunk
constexpr int64 kWideAtomBytes = 16;  ///< of the header of an atom whose size has 64 bits
constexpr int64 kEntryHeaderBytes = ZRKMetaData::MetaDataHeader::kByteCount;
constexpr std::string_view kEntryType = "DATA";
constexpr std::string_view kBlockType = "ZRKM";

/// An atom or chunk, by what its header states. Offsets are bytes from the start of the file.
struct Structure {
  int64 start = 0;
  int64 payload = 0;
  int64 end = 0;   ///< 0 for a size that no structure has
  int64 next = 0;  ///< where the next structure begins
  std::string type;
};

/// Used by one thread. While an object lives nobody else uses the stream.
class Structures {
 public:
  Structures(std::istream& file, bool isAtoms, int64 fileSize);

  int64 fileSize() const { return m_fileSize; }

  /// The entry header at `offset`.
  ZRKMetaData::MetaDataHeader header(int64 offset);

  /// The structure at `start`, none where no header fits into the file.
  std::optional<Structure> at(int64 start);

  /// The structure of this type whose payload begins at `payload`. Its end is 0 when its size is
  /// damaged to one that another size would follow.
  std::optional<Structure> around(int64 payload, std::string_view type);

  /// Whether a structure begins at `offset`, or the file ends before there could be one.
  bool isPlausible(int64 offset);

 private:
  bool readAtom(Structure& structure, ZRKMetaData::uint64& byteCount);
  bool readChunk(Structure& structure, ZRKMetaData::uint64& byteCount);

  ZRKMetaData::StreamWindow m_window;
  const bool m_isAtoms;
  const int64 m_fileSize;
};

}  // namespace series::detail
