// A recording, open for reading.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>
#include <vector>

#include "host/VOXA/AudioFormat.h"
#include "host/VOXA/Export.h"
#include "host/VOXA/MP4TrackReader.h"

namespace VOXA {

class AACDecoderFactory;

/// Holds what the headers of the file say; the file itself is closed again. Constant after
/// construction; any thread may ask.
class VOXA_API Reader {
 public:
  /// Opens the MP4 or QuickTime file with this UTF-8 name. Null when it cannot be opened or its
  /// track tables are missing or damaged. Only headers are read, whatever the size of the file,
  /// through a window of a few kilobytes. `decoders` is for those who decode audio; it may be null.
  static boost::shared_ptr<Reader> create(const std::string& filename, const AudioFormat& format,
                                          AACDecoderFactory* decoders);

  explicit Reader(std::vector<boost::shared_ptr<MP4TrackReader>> tracks);
  ~Reader();

  // The largest width and the largest height of the video tracks, in pixels.
  unsigned int maxWidth() const;
  unsigned int maxHeight() const;

  /// In the order of the file.
  std::vector<boost::shared_ptr<MP4TrackReader>> tracks() const;

 private:
  const std::vector<boost::shared_ptr<MP4TrackReader>> m_tracks;
};

}  // namespace VOXA
