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
/// (4), little-endian. A field that the file does not reach has its default.
struct MetaDataHeader {
  static constexpr int kByteCount = 24;

  boost::uuids::uuid uuid{};
  int32 version = -1;
  uint32 reserved = 0;  ///< carried, never interpreted
};

/// Reads a header at the position of `in`. Where the stream ends, the bytes that were not read keep
/// their defaults.
MetaDataHeader readHeader(StreamWindow& in);

/// Clears the state of `stream` and reads the header at byte `offset`.
MetaDataHeader readHeaderAt(std::istream& stream, int64 offset);

/// The registry. It has no state; any thread may call every operation.
class MetaDataUUID {
 public:
  static constexpr int kKnownCount = 18;
  static constexpr int kUnknownVersion = -1;

  /// Returns the one readable format version of `id`: 1 for a known identifier. For any other,
  /// writes a line that names the identifier to standard output and returns -1.
  static int currentVersionForUUID(const boost::uuids::uuid& id);

  /// Returns true for the eighteen identifiers of the registry. Writes nothing.
  static bool isKnown(const boost::uuids::uuid& id);

  /// The registry's identifiers, in its order.
  static const std::array<boost::uuids::uuid, kKnownCount>& knownIdentifiers();

  /// The fourth byte of `id` as two upper-case hexadecimal digits, "F0" for instance.
  static std::string shortKey(const boost::uuids::uuid& id);

  /// The identifier of the registry's family that has `key` as its fourth byte, known or not.
  static boost::uuids::uuid identifierWithKey(unsigned char key);
};

/// Returns true if a stream with this header can be read: its version equals the registry's, which
/// is -1 for an unknown identifier. May write the registry's message.
bool isReadableVersion(const MetaDataHeader& header);

}  // namespace ZRKMetaData
