#include "stats/VOXAStatsLoader.h"

#include <boost/system/system_error.hpp>
#include <memory>

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

std::vector<std::string> streamFileNames(const std::string& filename) {
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForFile(filename));
  std::vector<std::string> streamNames;
  for (const auto& id : parser->streamIds()) {
    streamNames.push_back(names::streamFileName(filename, id));
  }
  return streamNames;
}

Kestova::Rect<int> frame(unsigned int width, unsigned int height) {
  return {0, 0, static_cast<int>(width), static_cast<int>(height)};
}

MediaFileStats::TrackStats statsOf(const VOXA::MP4TrackReader& track, int index,
                                   const std::string& filename) {
  MediaFileStats::TrackStats stats;
  stats.range = {0, track.length()};
  stats.rate = track.rate();
  stats.rect = frame(track.width(), track.height());
  stats.tag = VOXAStatsLoader::trackTagFromVOXATrackTag(track.tag());
  stats.index = index;
  if (track.kind() == kVideoKind) {
    stats.type = MediaFileStats::VideoType;
    if (stats.tag == MediaFileStats::ScreenTrack) {
      stats.metaDataFilenames = streamFileNames(filename);
    }
  } else if (track.kind() == kAudioKind) {
    stats.type = MediaFileStats::AudioType;
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
  int index = 0;
  for (const auto& track : reader->tracks()) {
    stats->addTrackStats(statsOf(*track, index, filename));
    ++index;
  }
}

MediaFileStats::TrackTag VOXAStatsLoader::trackTagFromVOXATrackTag(unsigned int tag) {
  switch (tag) {
    case 100:
      return MediaFileStats::ScreenTrack;
    case 101:
      return MediaFileStats::CameraTrack;
    case 102:
      return MediaFileStats::FourthTrack;
    case 103:
      return MediaFileStats::ThirdTrack;
    default:
      return MediaFileStats::NoTag;
  }
}
