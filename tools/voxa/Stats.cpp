#include "stats/VOXAStatsLoader.h"

#include <nlohmann/json.hpp>

#include "host/Kestova/KestovaException.h"
#include "host/Kestova/Utf8.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using Kestova::MediaFileStats;
using nlohmann::ordered_json;

namespace {

void load(VOXAStatsLoader& loader, const std::string& file, MediaFileStats& stats) {
  const QuietModule quiet;
  try {
    loader.loadStats(file, &stats);
  } catch (const Kestova::KestovaException& error) {
    std::string message = error.what();  // which ends its own line
    message.erase(message.find_last_not_of('\n') + 1);
    throw Failure(Status::Failed, message);
  }
}

std::string rateOf(const MediaFileStats::TrackStats& track) {
  return fmt::format("{}/{}", track.rate.numerator(), track.rate.denominator());
}

ordered_json jsonOf(const Kestova::Rect<int>& rect) {
  return {rect.x, rect.y, rect.width, rect.height};
}

ordered_json jsonOf(const MediaFileStats::TrackStats& track) {
  auto filenames = ordered_json::array();
  for (const std::string& name : track.metaDataFilenames) {
    filenames.push_back(Kestova::wellFormedUtf8(name));
  }
  return {{"index", track.index},
          {"type", track.type},
          {"tag", track.tag},
          {"rate", rateOf(track)},
          {"length", track.range.length},
          {"rect", jsonOf(track.rect)},
          {"sampleRate", track.sampleRate},
          {"channelCount", track.channelCount},
          {"bitsPerSample", track.bitsPerSample},
          {"bytesPerSample", track.bytesPerSample},
          {"metaDataFilenames", std::move(filenames)}};
}

void writeJson(Output& out, const std::string& file, bool isClaimed, const MediaFileStats& stats) {
  auto tracks = ordered_json::array();
  for (const auto& track : stats.trackStats()) tracks.push_back(jsonOf(track));
  const ordered_json document = {{"file", Kestova::wellFormedUtf8(file)},
                                 {"claimed", isClaimed},
                                 {"rect", jsonOf(stats.rect())},
                                 {"tracks", std::move(tracks)}};
  out.write(document.dump() + "\n");
}

const char* typeName(int type) {
  if (type == MediaFileStats::VideoType) return "video";
  return type == MediaFileStats::AudioType ? "audio" : "other";
}

std::string secondsOf(const MediaFileStats::TrackStats& track) {
  if (track.rate.numerator() == 0) return "-";
  return fmt::format("{:.3f}", static_cast<double>(track.range.length) / track.rate.numerator() *
                                   track.rate.denominator());
}

void writeTable(Output& out, const std::string& file, bool isClaimed, const MediaFileStats& stats) {
  out.write(fmt::format("{}: {} x {}, {} tracks{}\n", printable(file), stats.rect().width,
                        stats.rect().height, stats.trackStats().size(),
                        isClaimed ? "" : " (the host would not ask for this name)"));
  constexpr auto kRow = "{:>5}  {:<5}  {:>3}  {:>12}  {:>16}  {:>12}  {:<11}  {:>7}\n";
  out.write(fmt::format(kRow, "index", "type", "tag", "rate", "length (units)", "seconds", "size",
                        "streams"));
  for (const auto& track : stats.trackStats()) {
    out.write(fmt::format(kRow, track.index, typeName(track.type), static_cast<int>(track.tag),
                          rateOf(track), track.range.length, secondsOf(track),
                          fmt::format("{}x{}", track.rect.width, track.rect.height),
                          track.metaDataFilenames.size()));
  }
  for (const auto& track : stats.trackStats()) {
    for (const std::string& name : track.metaDataFilenames) out.write(printable(name) + "\n");
  }
}

}  // namespace

void showStats(const FileOptions& options) {
  requireOpens(options.file);
  VOXAStatsLoader loader;
  MediaFileStats stats;
  load(loader, options.file, stats);
  const bool isClaimed = loader.canOpenFile(options.file);
  Output out;
  if (options.format == Format::Json) {
    writeJson(out, options.file, isClaimed, stats);
  } else {
    writeTable(out, options.file, isClaimed, stats);
  }
  out.flush();
}

}  // namespace voxa
