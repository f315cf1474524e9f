#include "tests/stats/ScriptedReader.h"

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>

#include "host/VOXA/Reader.h"

namespace testing_support {

Script& script() {
  static Script current;
  return current;
}

}  // namespace testing_support

namespace VOXA {

namespace {

using testing_support::script;
using testing_support::ScriptedTrack;

class Track final : public MP4TrackReader {
 public:
  explicit Track(const ScriptedTrack& track)
      : MP4TrackReader(track.width, track.height), m_track(track) {}
  int kind() const override {
    script().calls += "kind ";
    return m_track.kinds[std::min(m_kindCalls++, m_track.kinds.size() - 1)];
  }
  unsigned int rate() const override { return m_track.rate; }
  long long length() const override { return m_track.length; }
  unsigned int tag() const override { return m_track.tag; }

 private:
  const ScriptedTrack m_track;
  mutable std::size_t m_kindCalls = 0;
};

}  // namespace

AudioFormat AudioFormat::create16BitSignedInterleaved(int sampleRate, int channelCount) {
  return {sampleRate, channelCount};
}

MP4TrackReader::MP4TrackReader(unsigned int width, unsigned int height)
    : m_width(width), m_height(height) {}
MP4TrackReader::~MP4TrackReader() = default;

boost::shared_ptr<Reader> Reader::create(const std::string& filename, const AudioFormat& format,
                                         AACDecoderFactory* decoders) {
  script().calls += "create " + filename + " " + std::to_string(format.sampleRate()) + " " +
                    std::to_string(format.channelCount()) +
                    (decoders == nullptr ? " null " : " decoders ");
  if (!script().opens) return nullptr;
  std::vector<boost::shared_ptr<MP4TrackReader>> tracks;
  for (const auto& track : script().tracks) tracks.push_back(boost::make_shared<Track>(track));
  return boost::make_shared<Reader>(tracks);
}

Reader::Reader(std::vector<boost::shared_ptr<MP4TrackReader>> tracks)
    : m_tracks(std::move(tracks)) {}
Reader::~Reader() = default;

unsigned int Reader::maxWidth() const {
  return 1920;
}
unsigned int Reader::maxHeight() const {
  return 1080;
}
std::vector<boost::shared_ptr<MP4TrackReader>> Reader::tracks() const {
  return m_tracks;
}

}  // namespace VOXA
