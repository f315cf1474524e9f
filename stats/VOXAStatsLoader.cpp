#include "stats/VOXAStatsLoader.h"

#include <boost/system/system_error.hpp>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "host/Kestova/KestovaException.h"
#include "host/VOXA/Reader.h"
#include "names/StreamFileName.h"
#include "names/WindowsPath.h"

using Kestova::MediaFileStats;

namespace {

constexpr int kSampleRate = 44100;
constexpr int kChannelCount = 1;
constexpr int kBitsPerSample = 16;

constexpr int kVideoKind = 0;
constexpr int kAudioKind = 1;

// The host's numbers for the type of a track; the host defines no names for them.
constexpr int kVideoType = 0;
constexpr int kAudioType = 2;

// Screen tracks carry the metadata.
constexpr auto kScreenTag = static_cast<MediaFileStats::TrackTag>(1);

// The stream file names of a recording, with limits on the cost of hostile files.
class StreamNames {
 public:
  explicit StreamNames(const std::string& filename) : m_filename(filename) {}

  // Returns the names for the screen track at `index`. The reference is valid until the next call.
  const std::vector<std::string>& forTrack(int index) {
    if (m_scans < kMaxScans) {
      scan(index);
      ++m_scans;
    } else {
      count(m_names.size(), index);
    }
    return m_names;
  }

 private:
  // Recordings have one screen track. A hostile file of a few megabytes could have many thousands
  // of tracks, each of which would cost a scan and list every stream of the file.
  static constexpr int kMaxScans = 16;
  static constexpr std::size_t kMaxNames = 262'144;  // about 30 MB with a path of usual length

  void scan(int index) {
    const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
        ZRKMetaData::MetaDataParser::createForFile(m_filename));
    const auto ids = parser->streamIds();
    count(ids.size(), index);
    m_names.clear();
    for (const auto& id : ids) m_names.push_back(names::streamFileName(m_filename, id));
  }

  void count(std::size_t more, int index) {
    m_count += more;
    if (m_count <= kMaxNames) return;
    throw Kestova::KestovaException(m_filename + ": track " + std::to_string(index) +
                                    " would bring the stream names to " + std::to_string(m_count) +
                                    "; the maximum is " + std::to_string(kMaxNames));
  }

  const std::string& m_filename;
  std::vector<std::string> m_names;
  std::size_t m_count = 0;
  int m_scans = 0;
};

Kestova::Rect<int> frame(unsigned int width, unsigned int height) {
  return {0, 0, static_cast<int>(width), static_cast<int>(height)};
}

MediaFileStats::TrackStats statsOf(const VOXA::MP4TrackReader& track, int index,
                                   StreamNames& streamNames) {
  MediaFileStats::TrackStats stats;
  stats.range = {0, track.length()};
  stats.rate = track.rate();
  stats.rect = frame(track.width(), track.height());
  stats.tag = VOXAStatsLoader::trackTagFromVOXATrackTag(track.tag());
  stats.index = index;
  if (track.kind() == kVideoKind) {
    stats.type = kVideoType;
    if (stats.tag == kScreenTag) {
      stats.metaDataFilenames = streamNames.forTrack(index);
    }
  } else if (track.kind() == kAudioKind) {
    stats.type = kAudioType;
    stats.sampleRate = kSampleRate;
    stats.channelCount = kChannelCount;
    stats.bitsPerSample = kBitsPerSample;
    stats.bytesPerSample = kBitsPerSample / 8;
  }
  return stats;
}

}  // namespace

VOXAStatsLoader::VOXAStatsLoader() = default;

bool VOXAStatsLoader::canOpenFile(const std::string& filename) {
  try {
    return names::WindowsPath(filename).extension() == ".voxa";
  } catch (const boost::system::system_error&) {
    return false;
  }
}

void VOXAStatsLoader::loadStats(const std::string& filename, MediaFileStats* stats) {
  const auto format = VOXA::AudioFormat::create16BitSignedInterleaved(kSampleRate, kChannelCount);
  const auto reader = VOXA::Reader::create(filename, format, nullptr);
  if (!reader) {
    throw Kestova::KestovaException("Unable to create VOXA::Reader for " + filename + "\n");
  }
  stats->setFilename(filename);
  stats->setRect(frame(reader->maxWidth(), reader->maxHeight()));
  StreamNames streamNames(filename);
  int index = 0;
  for (const auto& track : reader->tracks()) {
    stats->addTrackStats(statsOf(*track, index, streamNames));
    ++index;
  }
}

MediaFileStats::TrackTag VOXAStatsLoader::trackTagFromVOXATrackTag(unsigned int tag) {
  switch (tag) {
    case 100:
      return kScreenTag;
    case 101:
      return static_cast<MediaFileStats::TrackTag>(2);
    case 102:  // crosses with 103 on purpose
      return static_cast<MediaFileStats::TrackTag>(4);
    case 103:
      return static_cast<MediaFileStats::TrackTag>(3);
    default:
      return static_cast<MediaFileStats::TrackTag>(0);
  }
}
