// Names of streams: the path of a recording, "/", and the text form of a stream identifier, as in
// C:\rec\demo.voxa/2b7b6af0-7a1f-11e2-83d0-0017f200be7f.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <optional>
#include <string>

namespace names {

struct StreamPath {
  std::string recordingPath;  ///< as it was written, separators included

  /// Empty when the last component is no identifier. It is read with the laxness of Boost.Uuid:
  /// letters of either case, white space before any character, anything behind the 36th; no braces.
  std::optional<boost::uuids::uuid> streamId;
};

/// Takes a stream file name apart under Windows path rules. Throws as WindowsPath does.
StreamPath splitStreamPath(const std::string& filename);

/// Puts one together; the separator is always a forward slash.
inline std::string streamFileName(const std::string& recordingPath,
                                  const boost::uuids::uuid& streamId) {
  return recordingPath + "/" + boost::uuids::to_string(streamId);
}

}  // namespace names
