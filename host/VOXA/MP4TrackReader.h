// One track of a recording, as its headers describe it.
#pragma once

#include "host/VOXA/Export.h"

namespace VOXA {

/// Constant after construction; any thread may ask.
class VOXA_API MP4TrackReader {
 public:
  MP4TrackReader(unsigned int width, unsigned int height);
  virtual ~MP4TrackReader();
  MP4TrackReader(const MP4TrackReader&) = delete;
  MP4TrackReader& operator=(const MP4TrackReader&) = delete;

  // The size of a picture in whole pixels, 0 for a track without pictures.
  unsigned int width() const { return m_width; }
  unsigned int height() const { return m_height; }

  /// 0 is a video track, 1 an audio track.
  virtual int kind() const = 0;

  /// Time units per second.
  virtual unsigned int rate() const = 0;

  /// In time units.
  virtual long long length() const = 0;

  /// What the track shows: 100 the screen, 101 the camera; 0 where nothing says so.
  virtual unsigned int tag() const = 0;

 private:
  const unsigned int m_width;
  const unsigned int m_height;
};

}  // namespace VOXA
