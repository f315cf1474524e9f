// Durations of tracks whose samples stand in movie fragments ("moof" atoms).
#pragma once

#include <vector>

#include "host/VOXA/TrackTable.h"

namespace VOXA {

/// Walks the fragments of the whole file and raises the duration of each track to where its last
/// fragment ends. `mvex` is the atom of the movie header that announces fragments. Throws
/// Malformed.
void applyFragments(MovieFile& file, const Atom& mvex, std::vector<Track>& tracks);

}  // namespace VOXA
