#include "stats/VOXAStatsLoader.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>

#include "host/Kestova/KestovaException.h"
#include "text/Counted.h"
#include "tools/recording/TopLevel.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"

namespace voxa {

using Kestova::MediaFileStats;

namespace {

// The module reports only that it failed.
std::string whyUnreadable(const std::string& file) {
  std::ifstream media(std::filesystem::u8path(file), std::ios::binary);
  bool hasAtoms = false;
  bool hasMovie = false;
  std::string damage;
  try {
    recording::eachStructure(media, recording::Layout::Atoms, [&](const auto& atom) {
      hasAtoms = true;
      hasMovie = hasMovie || atom.type == "moov";
    });
  } catch (const std::runtime_error& error) {
    if (hasAtoms) damage = std::string(" (") + error.what() + ")";
  }
  if (hasMovie) return "the movie header is damaged" + damage;
  return "no movie header; stats reads MP4 and MOV" + damage;
}

void load(VOXAStatsLoader& loader, const std::string& file, MediaFileStats& stats) {
  const QuietModule quiet;
  try {
    loader.loadStats(file, &stats);
  } catch (const Kestova::KestovaException& error) {
    std::string message = error.what();  // which ends with a line feed
    message.erase(message.find_last_not_of('\n') + 1);
    throw Failure(Status::Failed, message + ": " + whyUnreadable(file));
  }
}

std::string rateOf(const MediaFileStats::TrackStats& track) {
  return fmt::format("{}/{}", track.rate.numerator(), track.rate.denominator());
}

template <class Row>
void describe(Row& row, const Kestova::Rect<int>& rect) {
  const int values[] = {rect.x, rect.y, rect.width, rect.height};
  row.numbers("rect", {"x", "y", "width", "height"}, values);
}

void writeJson(Output& out, const MediaFileStats::TrackStats& track) {
  JsonRow row(out);
  row.field("index", track.index);
  row.field("type", track.type);
  row.field("tag", static_cast<int>(track.tag));
  row.field("rate", rateOf(track));
  row.field("length", track.range.length);
  describe(row, track.rect);
  row.field("sampleRate", track.sampleRate);
  row.field("channelCount", track.channelCount);
  row.field("bitsPerSample", track.bitsPerSample);
  row.field("bytesPerSample", track.bytesPerSample);
  row.array("metaDataFilenames", track.metaDataFilenames,
            [&out](const std::string& name) { out.writeJsonString(name); });
  row.end();
}

void writeJson(Output& out, const std::string& file, bool isClaimed, const MediaFileStats& stats) {
  JsonRow row(out);
  row.field("file", file);
  row.field("claimed", isClaimed);
  describe(row, stats.rect());
  row.array("tracks", stats.trackStats(), [&out](const auto& track) { writeJson(out, track); });
  row.end();
  out.write("\n");
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
  out.writePrintable(file);
  out.write(fmt::format(": {} x {}, {}{}\n", stats.rect().width, stats.rect().height,
                        text::counted(stats.trackStats().size(), "track"),
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
    for (const std::string& name : track.metaDataFilenames) {
      out.writePrintable(name);
      out.write("\n");
    }
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
