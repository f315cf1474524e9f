// What the movie header of a file says of its tracks.
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

/// Reads the tracks of the movie header `moov`, in file order. In a fragmented file a duration that
/// the header does not know comes from the fragments, which are looked for in the whole file, or,
/// where a track has none, from the duration of the whole movie. Throws Malformed.
std::vector<Track> readTracks(MovieFile& file, const Atom& moov);

}  // namespace VOXA
