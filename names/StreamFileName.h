// Stream file names: the path of a recording, "/", and the text form of a stream identifier, as in
// C:\rec\demo.voxa/2b7b6af0-7a1f-11e2-83d0-0017f200be7f.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <optional>
#include <string>

namespace names {

struct StreamPath {
  std::string recordingPath;  ///< as written, separators included

  /// Empty when the last component is not an identifier. The stream extractor of Boost.Uuid reads
  /// it: letters of either case, white space before any character and any text after the 36th
  /// character are accepted; braces are not.
  std::optional<boost::uuids::uuid> streamId;
};

/// Splits a stream file name under Windows path rules. Throws the exceptions of WindowsPath.
StreamPath splitStreamPath(const std::string& filename);

/// Returns the stream file name of `streamId`. The separator is always a forward slash.
inline std::string streamFileName(const std::string& recordingPath,
                                  const boost::uuids::uuid& streamId) {
  return recordingPath + "/" + boost::uuids::to_string(streamId);
}

}  // namespace names
