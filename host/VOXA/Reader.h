// Reads the tracks of a recording.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>
#include <vector>

#include "host/VOXA/AudioFormat.h"
#include "host/VOXA/Export.h"
#include "host/VOXA/MP4TrackReader.h"

namespace VOXA {

class AACDecoderFactory;

/// Holds the contents of the headers; the file is closed after `create`. Immutable after
/// construction: several threads may use one object.
class VOXA_API Reader {
 public:
  /// Reads the headers of the MP4 or QuickTime file with this UTF-8 name, through a buffer of a few
  /// kilobytes. Returns null when the file cannot be opened and when its track tables are missing
  /// or damaged. `format` and `decoders` are for readers that decode audio; `decoders` may be null.
  static boost::shared_ptr<Reader> create(const std::string& filename, const AudioFormat& format,
                                          AACDecoderFactory* decoders);

  explicit Reader(std::vector<boost::shared_ptr<MP4TrackReader>> tracks);
  ~Reader();

  // The largest width and the largest height of the video tracks, in pixels.
  unsigned int maxWidth() const;
  unsigned int maxHeight() const;

  /// The tracks, in file order.
  std::vector<boost::shared_ptr<MP4TrackReader>> tracks() const;

 private:
  const std::vector<boost::shared_ptr<MP4TrackReader>> m_tracks;
};

}  // namespace VOXA
