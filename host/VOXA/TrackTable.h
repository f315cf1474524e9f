// Reads the tracks of a movie header ("moov" atom).
#pragma once

#include <cstdint>
#include <vector>

#include "host/VOXA/MovieFile.h"

namespace VOXA {

struct Track {
  std::uint32_t id = 0;
  int kind = 2;  ///< 0 video, 1 audio, 2 anything else
  std::uint32_t timescale = 0;
  std::uint64_t duration = 0;  ///< in units of the timescale, without edit lists
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t tag = 0;
};

/// Returns the tracks of the movie header `moov`, in file order. In a fragmented file, a duration
/// that the header does not state comes from the fragments in the file, or, for a track without
/// fragments, from the duration of the movie. Throws Malformed.
///
/// Source: ISO/IEC 14496-12, section 8 ("box structures").
std::vector<Track> readTracks(MovieFile& file, const Atom& moov);

}  // namespace VOXA
