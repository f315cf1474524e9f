// Names and versions of metadata streams: the entry header that starts every stream, and the fixed
// registry of the stream identifiers that this module knows.
//
// An identifier is 16 bytes in the order in which the file stores them, ordered like memcmp. Its
// text form is 36 lower-case characters with no byte swapping (the stream output of Boost.Uuid).
#pragma once

#include <array>
#include <boost/uuid/uuid.hpp>
#include <istream>
#include <string>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace ZRKMetaData {

class StreamWindow;

/// The 24 bytes at the start of every entry: identifier (16), signed version (4), reserved word
/// (4), little-endian. The defaults are what stands when the file ends before a field.
struct MetaDataHeader {
  static constexpr int kByteCount = 24;

  boost::uuids::uuid uuid{};
  int32 version = -1;
  uint32 reserved = 0;  ///< carried, never interpreted
};

/// Reads a header at the position of `in`. Fields, and bytes of fields, that the stream does not
/// reach keep their defaults.
MetaDataHeader readHeader(StreamWindow& in);

/// Reads the header that stands at byte `offset` of `stream`, whose state is cleared first.
MetaDataHeader readHeaderAt(std::istream& stream, int64 offset);

/// The registry. It has no state; every operation may be called from any thread.
class MetaDataUUID {
 public:
  static constexpr int kKnownCount = 18;
  static constexpr int kUnknownVersion = -1;

  /// The one format version that is read for `id`: 1 for a known identifier. For any other it
  /// writes a line that names the identifier to standard output and returns -1.
  static int currentVersionForUUID(const boost::uuids::uuid& id);

  /// True for the eighteen identifiers of the registry. Writes nothing.
  static bool isKnown(const boost::uuids::uuid& id);

  /// The registry's identifiers, in its order.
  static const std::array<boost::uuids::uuid, kKnownCount>& knownIdentifiers();

  /// The fourth byte of `id` as two upper-case hexadecimal digits, "F0" for instance.
  static std::string shortKey(const boost::uuids::uuid& id);

  /// The identifier of the registry's family that has `key` as its fourth byte, known or not.
  static boost::uuids::uuid identifierWithKey(unsigned char key);
};

/// True when a stream with this header may be read: its version equals the registry's, so that an
/// unknown identifier passes with version -1. May write the registry's message.
bool isReadableVersion(const MetaDataHeader& header);

}  // namespace ZRKMetaData
