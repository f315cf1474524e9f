// Movie headers with tagged tracks: what statistics of a recording are read from.
//
// A tag says what a track shows. It stands as a big-endian 32-bit number in a "VTAG" atom inside
// the track's user data ("udta").
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/recording/Bytes.h"

namespace recording {

constexpr std::uint32_t kScreenTag = 100;
constexpr std::uint32_t kCameraTag = 101;

/// One track of a movie without samples.
struct TrackDescription {
  bool isVideo = true;
  std::uint32_t timescale = 1;  ///< time units per second
  std::uint32_t duration = 0;   ///< in time units
  std::uint16_t width = 0;      ///< in pixels
  std::uint16_t height = 0;
  std::uint32_t tag = 0;  ///< 0 for none
};

/// A file type and a movie header (ISO/IEC 14496-12) with these tracks.
Bytes movie(const std::vector<TrackDescription>& tracks);

/// The movie of a sample of so many seconds: the screen, the camera, and sound.
Bytes sampleMovie(double seconds);

/// The payload of a movie header with its first video track tagged as the screen and its second as
/// the camera. Tracks that have a tag keep it. Throws std::runtime_error when the header cannot be
/// taken apart.
Bytes taggedMovieHeader(const Bytes& moovPayload);

/// True when a movie header says that samples follow in fragments.
bool isFragmented(const Bytes& moovPayload);

}  // namespace recording
