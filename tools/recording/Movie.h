// Movie headers without media: the statistics of a recording are read from such a header.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/recording/Bytes.h"

namespace recording {

/// One track of a movie without samples.
struct TrackDescription {
  bool isVideo = true;
  std::uint32_t timescale = 1;  ///< time units per second
  std::uint32_t duration = 0;   ///< in time units
  std::uint16_t width = 0;      ///< in pixels
  std::uint16_t height = 0;
  std::uint32_t tag = 0;  ///< TrackTags.h; 0 for none
};

/// A file type and a movie header (ISO/IEC 14496-12) with these tracks.
Bytes movie(const std::vector<TrackDescription>& tracks);

/// The movie of a sample of `seconds`: a screen track, a camera track and a sound track.
Bytes sampleMovie(double seconds);

}  // namespace recording
