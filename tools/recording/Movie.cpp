#include "tools/recording/Movie.h"

#include <algorithm>
#include <cmath>

#include "tools/recording/Container.h"
#include "tools/recording/TrackTags.h"

namespace recording {

namespace {

constexpr std::uint32_t kMovieTimescale = 1000;

Bytes zeros(std::size_t count) {
  return Bytes(count, '\0');
}

Bytes big16(std::uint32_t number) {
  return bigEndian(static_cast<std::uint16_t>(number));
}
Bytes big32(std::uint32_t number) {
  return bigEndian(number);
}

// An atom whose payload begins with a version, 0, and flags.
Bytes fullAtom(const char* type, const Bytes& payload, std::uint32_t flags = 0) {
  return atom(type, big32(flags) + payload);
}

Bytes unityMatrix() {
  return big32(0x10000) + zeros(12) + big32(0x10000) + zeros(12) + big32(0x40000000);
}

std::uint32_t inMovieTime(const TrackDescription& track) {
  return static_cast<std::uint32_t>(std::uint64_t{track.duration} * kMovieTimescale /
                                    std::max(track.timescale, 1U));
}

Bytes movieHeader(const std::vector<TrackDescription>& tracks) {
  std::uint32_t duration = 0;
  for (const TrackDescription& track : tracks) duration = std::max(duration, inMovieTime(track));
  return fullAtom("mvhd", zeros(8) + big32(kMovieTimescale) + big32(duration) + big32(0x10000) +
                              big16(0x100) + zeros(10) + unityMatrix() + zeros(24) +
                              big32(static_cast<std::uint32_t>(tracks.size() + 1)));
}

Bytes trackHeader(const TrackDescription& track, std::uint32_t id) {
  constexpr std::uint32_t kEnabledInMovie = 3;
  return fullAtom("tkhd",
                  zeros(8) + big32(id) + zeros(4) + big32(inMovieTime(track)) + zeros(12) +
                      big16(track.isVideo ? 0 : 0x100) + zeros(2) + unityMatrix() +
                      big32(std::uint32_t{track.width} << 16U) +
                      big32(std::uint32_t{track.height} << 16U),
                  kEnabledInMovie);
}

Bytes sampleEntry(const TrackDescription& track) {
  const Bytes start = zeros(6) + big16(1);  // reserved, and the first of the data references
  if (track.isVideo) {
    return atom("raw ", start + zeros(16) + big16(track.width) + big16(track.height) +
                            big32(0x480000) + big32(0x480000) + zeros(4) + big16(1) + zeros(32) +
                            big16(24) + big16(0xFFFF));
  }
  return atom("sowt",
              start + zeros(8) + big16(1) + big16(16) + zeros(4) + big32(track.timescale << 16U));
}

Bytes sampleTables(const TrackDescription& track) {
  return atom("stbl", fullAtom("stsd", big32(1) + sampleEntry(track)) + fullAtom("stts", big32(0)) +
                          fullAtom("stsc", big32(0)) + fullAtom("stsz", zeros(8)) +
                          fullAtom("stco", big32(0)));
}

Bytes media(const TrackDescription& track) {
  constexpr std::uint32_t kUndetermined = 0x55C4;  // the language "und"
  const Bytes mediaHeader =
      fullAtom("mdhd", zeros(8) + big32(track.timescale) + big32(track.duration) +
                           big16(kUndetermined) + zeros(2));
  const Bytes handler =
      fullAtom("hdlr", zeros(4) + (track.isVideo ? "vide" : "soun") + zeros(12) + zeros(1));
  const Bytes kindHeader =
      track.isVideo ? fullAtom("vmhd", zeros(8), 1) : fullAtom("smhd", zeros(4));
  const Bytes dataInThisFile = atom("dinf", fullAtom("dref", big32(1) + fullAtom("url ", "", 1)));
  return atom("mdia", mediaHeader + handler +
                          atom("minf", kindHeader + dataInThisFile + sampleTables(track)));
}

Bytes trackAtom(const TrackDescription& track, std::uint32_t id) {
  return atom("trak", trackHeader(track, id) + media(track) +
                          (track.tag != 0 ? atom("udta", tagAtom(track.tag)) : Bytes()));
}

}  // namespace

Bytes movie(const std::vector<TrackDescription>& tracks) {
  Bytes header = movieHeader(tracks);
  std::uint32_t id = 0;
  for (const TrackDescription& track : tracks) header += trackAtom(track, ++id);
  return atom("ftyp", "isom" + big32(0x200) + "isommp41") + atom("moov", header);
}

Bytes sampleMovie(double seconds) {
  constexpr std::uint32_t kVideoTimescale = 600;
  constexpr std::uint32_t kAudioTimescale = 44100;
  const auto units = [seconds](std::uint32_t timescale) {
    return static_cast<std::uint32_t>(
        std::min(std::floor(seconds * timescale), 4294967294.0));  // the last that is known
  };
  return movie({{true, kVideoTimescale, units(kVideoTimescale), 1920, 1080, kScreenTag},
                {true, kVideoTimescale, units(kVideoTimescale), 640, 480, kCameraTag},
                {false, kAudioTimescale, units(kAudioTimescale), 0, 0, 0}});
}

}  // namespace recording
