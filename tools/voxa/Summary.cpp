#include "tools/voxa/Summary.h"

#include <fmt/format.h>

#include "host/Kestova/KestovaException.h"
#include "host/Kestova/MediaFileStats.h"
#include "names/StreamFileName.h"
#include "stats/VOXAStatsLoader.h"
#include "text/Utf8.h"
#include "tools/host/SlotFinder.h"
#include "tools/voxa/QuietModule.h"

namespace voxa {

using Kestova::MediaFileStats;
using series::RecordingSummary;
using series::TrackSummary;

namespace {

const char* kindOf(const MediaFileStats::TrackStats& track) {
  if (track.type == MediaFileStats::VideoType) return "video";
  return track.type == MediaFileStats::AudioType ? "audio" : "other";
}

const char* tagOf(const MediaFileStats::TrackStats& track) {
  if (track.tag == MediaFileStats::ScreenTrack) return "screen";
  return track.tag == MediaFileStats::CameraTrack ? "camera" : "";
}

TrackSummary summaryOf(const MediaFileStats::TrackStats& track) {
  TrackSummary summary;
  summary.index = track.index;
  summary.kind = kindOf(track);
  summary.tag = tagOf(track);
  const auto& rate = track.rate;
  summary.rate = rate.denominator() == 1
                     ? fmt::format("{}", rate.numerator())
                     : fmt::format("{}/{}", rate.numerator(), rate.denominator());
  if (rate.numerator() != 0) {
    summary.seconds =
        static_cast<double>(track.range.length) / rate.numerator() * rate.denominator();
  }
  summary.width = track.rect.width;
  summary.height = track.rect.height;
  if (track.type == MediaFileStats::AudioType) {
    summary.sampleRate = track.sampleRate;
    summary.channelCount = track.channelCount;
    summary.bitsPerSample = track.bitsPerSample;
  }
  return summary;
}

// Only atoms have tracks that the module can read.
void addTracks(RecordingSummary& recording) {
  VOXAStatsLoader loader;
  MediaFileStats stats;
  try {
    loader.loadStats(recording.file, &stats);
  } catch (const Kestova::KestovaException& error) {
    std::string message = error.what();  // which ends its own line
    message.erase(message.find_last_not_of('\n') + 1);
    recording.warnings.push_back("the tracks cannot be read: " + message);
  }
  for (const auto& track : stats.trackStats()) recording.tracks.push_back(summaryOf(track));
}

// The host refuses the stream names of a file whose own name is not UTF-8.
void addSlots(RecordingSummary& recording) {
  if (!text::isWellFormedUtf8(recording.file)) {
    recording.warnings.push_back(
        "the file name is not valid UTF-8: the host opens no stream of it; rename the file");
    return;
  }
  const hosting::SlotFinder slots;
  for (auto& stream : recording.streams) {
    stream.slot = slots.slotOf(names::streamFileName(recording.file, stream.id));
  }
}

}  // namespace

RecordingSummary summarise(ZRKMetaData::MetaDataParser& parser, const std::string& file,
                           const series::SummaryScope& scope) {
  const QuietModule quiet;
  RecordingSummary recording = series::summariseStreams(parser, file, scope);
  addSlots(recording);
  if (parser.containerKind() == ZRKMetaData::Atoms) addTracks(recording);
  return recording;
}

}  // namespace voxa
