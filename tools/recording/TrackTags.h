// Tags of tracks. A tag says what a track shows: the screen or a camera.
//
// It is a big-endian 32-bit number in a "VTAG" atom inside the track's user data ("udta").
#pragma once

#include <cstdint>

#include "tools/recording/Bytes.h"

namespace recording {

constexpr std::uint32_t kScreenTag = 100;
constexpr std::uint32_t kCameraTag = 101;

/// The atom that holds `tag`.
Bytes tagAtom(std::uint32_t tag);

/// Returns a copy of the payload of a movie header ("moov") in which the first video track is
/// tagged as the screen and the second as the camera. Tracks that have a tag keep it. Throws
/// std::runtime_error when the header is malformed.
Bytes taggedMovieHeader(const Bytes& moovPayload);

/// True when the samples of the movie are in fragments. Throws as `taggedMovieHeader` does.
bool isFragmented(const Bytes& moovPayload);

}  // namespace recording
