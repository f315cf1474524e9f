#include "host/VOXA/TrackTable.h"

#include <cstdint>
#include <limits>
#include <vector>

#include "host/VOXA/Fragments.h"

namespace VOXA {

namespace {

// The first byte of a "full box" is its version; version 1 has 64-bit times.
bool hasWideTimes(MovieFile& file, const Atom& atom) {
  return file.big32(atom, 0) >> 24U != 0;
}

// A duration with all bits set means "unknown".
std::uint64_t durationAt(MovieFile& file, const Atom& atom, std::uint64_t offset, bool isWide) {
  if (isWide) {
    const std::uint64_t duration = file.big64(atom, offset);
    return duration == std::numeric_limits<std::uint64_t>::max() ? 0 : duration;
  }
  const std::uint32_t duration = file.big32(atom, offset);
  return duration == std::numeric_limits<std::uint32_t>::max() ? 0 : duration;
}

void readTrackHeader(MovieFile& file, const Atom& tkhd, Track& track) {
  const bool isWide = hasWideTimes(file, tkhd);
  track.id = file.big32(tkhd, isWide ? 20 : 12);
  const std::uint64_t size = isWide ? 88 : 76;  // 16.16 fixed-point numbers
  track.width = file.big32(tkhd, size) >> 16U;
  track.height = file.big32(tkhd, size + 4) >> 16U;
}

void readMediaHeader(MovieFile& file, const Atom& mdhd, Track& track) {
  const bool isWide = hasWideTimes(file, mdhd);
  track.timescale = file.big32(mdhd, isWide ? 20 : 12);
  track.duration = durationAt(file, mdhd, isWide ? 24 : 16, isWide);
}

int kindOfHandler(std::uint32_t handler) {
  if (handler == atomType("vide")) return 0;
  return handler == atomType("soun") ? 1 : 2;
}

// Reads the frame size from the first sample entry, for track headers that state 0.
void readSampleSize(MovieFile& file, const Atom& mdia, Track& track) {
  const Atom stbl = file.require(file.require(mdia, atomType("minf")), atomType("stbl"));
  const Atom stsd = file.require(stbl, atomType("stsd"));
  Atom entries{0, stsd.begin, stsd.end};
  constexpr std::uint64_t kCountsSize = 8;
  if (entries.end - entries.begin < kCountsSize) throw Malformed("truncated sample table");
  entries.begin += kCountsSize;
  Atom entry;
  if (!file.take(entries, entry)) return;
  if (track.width == 0) track.width = file.big16(entry, 24);
  if (track.height == 0) track.height = file.big16(entry, 26);
}

Track readTrack(MovieFile& file, const Atom& trak) {
  Track track;
  readTrackHeader(file, file.require(trak, atomType("tkhd")), track);
  const Atom mdia = file.require(trak, atomType("mdia"));
  readMediaHeader(file, file.require(mdia, atomType("mdhd")), track);
  track.kind = kindOfHandler(file.big32(file.require(mdia, atomType("hdlr")), 8));
  if (track.kind == 0 && (track.width == 0 || track.height == 0)) {
    readSampleSize(file, mdia, track);
  }
  Atom udta;
  Atom vtag;
  if (file.find(trak, atomType("udta"), udta) && file.find(udta, atomType("VTAG"), vtag)) {
    track.tag = file.big32(vtag, 0);
  }
  return track;
}

// Sets unknown durations to the duration of the movie, which includes the fragments.
void applyMovieDuration(MovieFile& file, const Atom& moov, const Atom& mvex,
                        std::vector<Track>& tracks) {
  Atom mehd;
  if (!file.find(mvex, atomType("mehd"), mehd)) return;
  const Atom mvhd = file.require(moov, atomType("mvhd"));
  const std::uint32_t movieTimescale = file.big32(mvhd, hasWideTimes(file, mvhd) ? 20 : 12);
  const std::uint64_t duration = durationAt(file, mehd, 4, hasWideTimes(file, mehd));
  if (movieTimescale == 0) throw Malformed("movie without a timescale");
  for (Track& track : tracks) {
    if (track.duration != 0) continue;
    __extension__ using uint128 = unsigned __int128;
    const uint128 scaled =
        (uint128{duration} * track.timescale + movieTimescale / 2) / movieTimescale;
    if (scaled > std::numeric_limits<std::uint64_t>::max())
      throw Malformed("movie duration exceeds 2^64 - 1");
    track.duration = static_cast<std::uint64_t>(scaled);
  }
}

}  // namespace

std::vector<Track> readTracks(MovieFile& file, const Atom& moov) {
  std::vector<Track> tracks;
  Atom rest = moov;
  Atom child;
  while (file.take(rest, child)) {
    if (child.type == atomType("trak")) tracks.push_back(readTrack(file, child));
  }
  Atom mvex;
  if (file.find(moov, atomType("mvex"), mvex)) {
    applyFragments(file, mvex, tracks);
    applyMovieDuration(file, moov, mvex, tracks);
  }
  return tracks;
}

}  // namespace VOXA
