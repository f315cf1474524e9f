// One track of a recording, as its headers describe it.
#pragma once

#include "host/VOXA/Export.h"

namespace VOXA {

/// Immutable after construction: several threads may use one object.
class VOXA_API MP4TrackReader {
 public:
  MP4TrackReader(unsigned int width, unsigned int height);
  virtual ~MP4TrackReader();
  MP4TrackReader(const MP4TrackReader&) = delete;
  MP4TrackReader& operator=(const MP4TrackReader&) = delete;

  // The frame size in pixels; 0 for a track without pictures.
  unsigned int width() const { return m_width; }
  unsigned int height() const { return m_height; }

  /// Returns 0 for a video track, 1 for an audio track and another number for any other track.
  virtual int kind() const = 0;

  /// Time units per second.
  virtual unsigned int rate() const = 0;

  /// The duration in time units.
  virtual long long length() const = 0;

  /// The contents of the track: 100 is the screen, 101 the camera; 0 when the file does not say.
  virtual unsigned int tag() const = 0;

 private:
  const unsigned int m_width;
  const unsigned int m_height;
};

}  // namespace VOXA
