// Reads the durations of tracks whose samples are in movie fragments ("moof" atoms).
#pragma once

#include <vector>

#include "host/VOXA/TrackTable.h"

namespace VOXA {

/// Reads the fragments of the whole file and raises the duration of each track to the end of its
/// fragments if that is later. A fragment begins at its "tfdt" time; without one it follows the
/// track's fragments before it, the first of which begins at 0, because the duration of a media
/// header ("mdhd") may include the fragments. `mvex` is the atom of the movie header that announces
/// fragments. Throws Malformed.
///
/// Source: ISO/IEC 14496-12, sections 8.8 (movie fragments) and 8.8.12 (track fragment decode
/// time).
void applyFragments(MovieFile& file, const Atom& mvex, std::vector<Track>& tracks);

}  // namespace VOXA
