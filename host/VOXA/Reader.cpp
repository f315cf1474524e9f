#include "host/VOXA/Reader.h"

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "host/VOXA/TrackTable.h"

namespace VOXA {

namespace {

class TrackReader final : public MP4TrackReader {
 public:
  explicit TrackReader(const Track& track)
      : MP4TrackReader(track.width, track.height), m_track(track) {}

  int kind() const override { return m_track.kind; }
  unsigned int rate() const override { return m_track.timescale; }
  long long length() const override { return static_cast<long long>(m_track.duration); }
  unsigned int tag() const override { return m_track.tag; }

 private:
  const Track m_track;
};

template <class Measure>
unsigned int largest(const std::vector<boost::shared_ptr<MP4TrackReader>>& tracks,
                     Measure measure) {
  unsigned int maximum = 0;
  for (const auto& track : tracks) {
    if (track->kind() == 0) maximum = std::max(maximum, measure(*track));
  }
  return maximum;
}

}  // namespace

boost::shared_ptr<Reader> Reader::create(const std::string& filename, const AudioFormat& /*format*/,
                                         AACDecoderFactory* /*decoders*/) {
  try {
    MovieFile file(filename);
    std::vector<boost::shared_ptr<MP4TrackReader>> readers;
    for (const Track& track : readTracks(file, file.require(file.whole(), atomType("moov")))) {
      if (track.duration > static_cast<std::uint64_t>(std::numeric_limits<long long>::max())) {
        throw Malformed("track duration exceeds 2^63 - 1");
      }
      readers.push_back(boost::make_shared<TrackReader>(track));
    }
    return boost::make_shared<Reader>(std::move(readers));
  } catch (const Malformed&) {
    return nullptr;
  }
}

Reader::Reader(std::vector<boost::shared_ptr<MP4TrackReader>> tracks)
    : m_tracks(std::move(tracks)) {}

Reader::~Reader() = default;

unsigned int Reader::maxWidth() const {
  return largest(m_tracks, [](const MP4TrackReader& track) { return track.width(); });
}

unsigned int Reader::maxHeight() const {
  return largest(m_tracks, [](const MP4TrackReader& track) { return track.height(); });
}

std::vector<boost::shared_ptr<MP4TrackReader>> Reader::tracks() const {
  return m_tracks;
}

AudioFormat AudioFormat::create16BitSignedInterleaved(int sampleRate, int channelCount) {
  return {sampleRate, channelCount};
}

MP4TrackReader::MP4TrackReader(unsigned int width, unsigned int height)
    : m_width(width), m_height(height) {}

MP4TrackReader::~MP4TrackReader() = default;

}  // namespace VOXA
