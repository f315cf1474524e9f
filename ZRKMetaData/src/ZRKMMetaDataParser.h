// Finds the metadata entries of a recording and indexes them by stream identifier. Only container
// headers and entry headers are read; media and records are skipped.
//
// An entry is a "DATA" atom or chunk inside a top-level "ZRKM" atom (.voxa, .mp4, .mov) or chunk
// (.avi, .wav), or a whole raw file (.dat). docs/format.md has the layouts byte by byte.
//
// A parser serves one request on one thread. The factories return it with its index built. The
// source stays open as long as the parser lives.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <istream>
#include <list>
#include <map>
#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace ZRKMetaData {

/// The container layout of a source.
enum ContainerKind : int32 { None = 0, Riff = 1, Atoms = 2, Raw = 3 };

/// Returns the kind that a file name implies by the text from its last dot on, in any letter case:
/// Riff for ".avi" and ".wav", Atoms for ".voxa", ".mp4" and ".mov", Raw for ".dat", else None.
ContainerKind containerKindOfFileName(const std::string& fileName);

/// The place of an entry. Records are read while the position is below `offset + size`.
struct MetaDataLocation {
  int64 offset = 0;  ///< byte position of the entry's 24-byte header
  /// Extent in bytes from `offset`. Of an atom: its whole size less 16. Of a chunk: its payload
  /// without the pad byte. Of a raw file: the size of the file.
  int64 size = 0;
};

/// The index, in ascending byte order of the identifiers.
using MetaDataLocations = std::map<boost::uuids::uuid, MetaDataLocation>;

class MetaDataParser {
 public:
  virtual ~MetaDataParser() = default;
  MetaDataParser(const MetaDataParser&) = delete;
  MetaDataParser& operator=(const MetaDataParser&) = delete;

  virtual ContainerKind containerKind() const = 0;

  /// The stream that the index refers to, at the position of the last read.
  virtual std::istream& stream() = 0;

  /// Closes a file; does nothing to a caller's stream.
  virtual void close() = 0;

  /// Opens the file with this UTF-8 name and indexes it by the kind that its name implies. Returns
  /// a parser that the caller owns, never null. A file that cannot be opened is reported as an
  /// assertion and has an empty index (a raw one: the nil identifier at {0, -1}).
  static MetaDataParser* createForFile(const std::string& fileName);

  /// Opens the file and indexes it as `kind`, regardless of its name.
  static MetaDataParser* createForFile(const std::string& fileName, ContainerKind kind);

  /// Indexes a caller's stream, which must be able to seek and must outlive the result. The caller
  /// owns the result.
  static MetaDataParser* createForStream(std::istream& stream, ContainerKind kind);

  /// Rebuilds the index, from byte 0. Nothing but std::bad_alloc is thrown, whatever the exception
  /// mask of the stream: a scan ends at what it cannot follow and keeps what it has. Its time is
  /// bounded by the bytes of the source.
  ///
  /// Afterwards the stream has the position and the indicators that reading without read-ahead
  /// leaves. A failure that was set before, or that the scan met, stays set, and a scan of a failed
  /// stream finds nothing (a raw one: the nil identifier at {0, -1}): clear it first.
  void scan();

  const MetaDataLocations& locations() const { return m_locations; }

  /// The location of `id`, or {0, 0} when it is not indexed.
  MetaDataLocation locationOf(const boost::uuids::uuid& id) const;

  /// All indexed identifiers, in index order. The caller owns the list.
  std::list<boost::uuids::uuid> streamIds() const;

  /// Copies the bytes of each entry, its header included, into the caller's map, in index order.
  /// Bytes that the source does not have are zero. An entry whose offset cannot be reached keeps
  /// what the map holds for it and is reported as an assertion unless the lengths agree.
  ///
  /// Throws std::length_error, before allocating, for an entry that announces over 64 MiB more than
  /// there is, and for one with which all copies together exceed the size of the source by over
  /// 64 MiB. Entries before it stay copied. The stream's exception mask is set aside meanwhile: a
  /// failure of the stream never throws by itself.
  void readRawData(std::map<boost::uuids::uuid, std::string>* rawDataMap);

 protected:
  MetaDataParser() = default;

 private:
  MetaDataLocations m_locations;
};

}  // namespace ZRKMetaData
