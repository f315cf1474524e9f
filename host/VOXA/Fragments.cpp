#include "host/VOXA/Fragments.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <vector>

namespace VOXA {

namespace {

// Flags of "tfhd" and "trun" that state which optional fields are present.
constexpr std::uint32_t kHasBaseOffset = 0x1;
constexpr std::uint32_t kHasDescriptionIndex = 0x2;
constexpr std::uint32_t kHasDefaultDuration = 0x8;
constexpr std::uint32_t kHasDataOffset = 0x1;
constexpr std::uint32_t kHasFirstFlags = 0x4;
constexpr std::uint32_t kHasDurations = 0x100;
constexpr std::uint32_t kPerSampleFields[] = {kHasDurations, 0x200, 0x400, 0x800};

struct FragmentedTrack {
  Track* track;
  std::uint64_t defaultDuration;
  std::uint64_t end;  // the end of the fragments read so far, in units of the timescale
};
using FragmentedTracks = std::map<std::uint32_t, FragmentedTrack>;

void add(std::uint64_t& sum, std::uint64_t more) {
  if (more > std::numeric_limits<std::uint64_t>::max() - sum)
    throw Malformed("track duration exceeds 2^64 - 1");
  sum += more;
}

std::uint64_t runDuration(MovieFile& file, const Atom& trun, std::uint64_t defaultDuration) {
  const std::uint32_t flags = file.big32(trun, 0);
  const std::uint64_t count = file.big32(trun, 4);
  if ((flags & kHasDurations) == 0) return count * defaultDuration;  // both have 32 bits

  std::uint64_t offset = 8;
  if ((flags & kHasDataOffset) != 0) offset += 4;
  if ((flags & kHasFirstFlags) != 0) offset += 4;
  std::uint64_t sampleSize = 0;
  for (const std::uint32_t field : kPerSampleFields) {
    if ((flags & field) != 0) sampleSize += 4;
  }
  std::uint64_t duration = 0;  // the duration is the first of the fields
  for (std::uint64_t sample = 0; sample < count; ++sample) {
    duration += file.big32(trun, offset + sample * sampleSize);
  }
  return duration;
}

void applyTrackFragment(MovieFile& file, const Atom& traf, FragmentedTracks& tracks) {
  const Atom tfhd = file.require(traf, atomType("tfhd"));
  const std::uint32_t flags = file.big32(tfhd, 0);
  const auto found = tracks.find(file.big32(tfhd, 4));
  if (found == tracks.end()) return;
  FragmentedTrack& track = found->second;
  std::uint64_t defaultDuration = track.defaultDuration;
  if ((flags & kHasDefaultDuration) != 0) {
    std::uint64_t offset = 8;
    if ((flags & kHasBaseOffset) != 0) offset += 8;
    if ((flags & kHasDescriptionIndex) != 0) offset += 4;
    defaultDuration = file.big32(tfhd, offset);
  }

  std::uint64_t end = track.end;  // without "tfdt", a fragment follows those before it
  Atom tfdt;
  if (file.find(traf, atomType("tfdt"), tfdt)) {
    end = file.big32(tfdt, 0) >> 24U != 0 ? file.big64(tfdt, 4) : file.big32(tfdt, 4);
  }
  Atom rest = traf;
  Atom child;
  while (file.take(rest, child)) {
    if (child.type == atomType("trun")) add(end, runDuration(file, child, defaultDuration));
  }
  track.end = std::max(track.end, end);
}

// Takes the next atom at top level. Returns false for an atom that the end of the file truncates,
// as in an interrupted recording, so that the fragments before it count.
bool takeWhole(MovieFile& file, Atom& rest, Atom& next) {
  try {
    return file.take(rest, next);
  } catch (const Malformed&) {
    return false;
  }
}

}  // namespace

void applyFragments(MovieFile& file, const Atom& mvex, std::vector<Track>& tracks) {
  FragmentedTracks fragmented;
  for (Track& track : tracks) fragmented.try_emplace(track.id, FragmentedTrack{&track, 0, 0});
  Atom rest = mvex;
  Atom child;
  while (file.take(rest, child)) {
    if (child.type != atomType("trex")) continue;
    const auto found = fragmented.find(file.big32(child, 4));
    if (found != fragmented.end()) found->second.defaultDuration = file.big32(child, 12);
  }

  Atom topLevel = file.whole();
  while (takeWhole(file, topLevel, child)) {
    if (child.type != atomType("moof")) continue;
    Atom fragments = child;
    Atom traf;
    while (file.take(fragments, traf)) {
      if (traf.type == atomType("traf")) applyTrackFragment(file, traf, fragmented);
    }
  }
  for (const auto& [id, found] : fragmented) {
    found.track->duration = std::max(found.track->duration, found.end);
  }
}

}  // namespace VOXA
