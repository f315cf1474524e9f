#include <fmt/format.h>

#include <cmath>

#include "tools/formats/SummaryJson.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/NamedTypes.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Sources.h"
#include "tools/voxa/Summary.h"
#include "tools/voxa/Terminal.h"

namespace voxa {

using series::RecordingSummary;
using series::StreamSummary;
using series::TrackSummary;

namespace {

constexpr const char* kNone = "-";

std::string secondsText(std::optional<double> seconds) {
  if (!seconds) return kNone;
  constexpr double kLargestPlain = 1e9;
  return std::abs(*seconds) < kLargestPlain ? fmt::format("{:.3f}", *seconds)
                                            : fmt::format("{:.3e}", *seconds);
}

std::string typeText(const StreamSummary& stream) {
  if (stream.type) return infoOf(*stream.type).name;
  return stream.isEmpty ? "empty" : "unknown";
}

std::string soundText(const TrackSummary& track) {
  if (track.sampleRate == 0) return kNone;
  return fmt::format("{} Hz, {} ch, {} bit", track.sampleRate, track.channelCount,
                     track.bitsPerSample);
}

void writeHeading(Output& out, const char* text) {
  const bool isBold = usesColors(StandardStream::Out);
  out.write(fmt::format("\n{}{}{}\n", isBold ? "\x1b[1m" : "", text, isBold ? "\x1b[0m" : ""));
}

void writeTracks(Output& out, const RecordingSummary& recording) {
  if (recording.tracks.empty()) return;
  constexpr auto kRow = "  {:<5}  {:<5}  {:<6}  {:>11}  {:>12}  {:>10}  {}\n";
  writeHeading(out, "Tracks");
  out.write(fmt::format(kRow, "index", "kind", "tag", "size", "rate", "seconds", "sound"));
  for (const TrackSummary& track : recording.tracks) {
    const std::string size =
        track.width > 0 ? fmt::format("{}x{}", track.width, track.height) : kNone;
    out.write(fmt::format(kRow, track.index, track.kind, track.tag.empty() ? kNone : track.tag,
                          size, track.rate, secondsText(track.seconds), soundText(track)));
  }
}

void writeStreams(Output& out, const RecordingSummary& recording) {
  if (recording.streams.empty()) return;
  constexpr auto kRow =
      "  {:<3}  {:<13}  {:>9}  {:>10}  {:>10}  {:>10}  {:>8}  {:>10}  {:>7}  {}\n";
  writeHeading(out, "Streams");
  out.write(fmt::format(kRow, "key", "type", "records", "first, s", "last, s", "duration", "per s",
                        "bytes", "version", "slot"));
  for (const StreamSummary& stream : recording.streams) {
    const auto rate = stream.meanRate();
    out.write(fmt::format(kRow, stream.key, typeText(stream),
                          stream.hasRecords() ? fmt::format("{}", stream.recordCount) : kNone,
                          secondsText(stream.first), secondsText(stream.last),
                          secondsText(stream.duration()),
                          rate ? fmt::format("{:.4g}", *rate) : kNone, stream.location.size,
                          stream.version, stream.slot.empty() ? kNone : stream.slot));
  }
}

void writeTable(Output& out, const RecordingSummary& recording) {
  const TrackSummary* const screen = recording.screen();
  out.writePrintable(recording.file);
  out.write(
      fmt::format("\n  container  {}\n  bytes      {}\n  seconds    {}\n  screen     {}\n",
                  recording.container, recording.byteCount, secondsText(recording.duration()),
                  screen != nullptr ? fmt::format("{}x{}", screen->width, screen->height) : kNone));
  writeTracks(out, recording);
  writeStreams(out, recording);
  if (!recording.warnings.empty()) writeHeading(out, "Warnings");
  for (const std::string& warning : recording.warnings) {
    out.write("  ");
    out.writePrintable(warning);
    out.write("\n");
  }
}

}  // namespace

void showInfo(const InfoOptions& options) {
  Output out;
  const bool isJson = options.format == Format::Json;
  const char* before = isJson ? "{\"files\":[" : "";
  const Status worst = forEachIndexedSource(options.sources, [&](const IndexedSource& source) {
    const auto ids = streamsNamed(source.parser, source.file, source.streams);
    const Progress progress(source.file, bytesOf(source.parser, ids));
    const RecordingSummary recording =
        summarise(source.parser, source.file,
                  {ids, series::TimeRange(), namedTypes(source.parser, source.file, source.types)});
    out.write(before);
    if (isJson) {
      out.write(formats::jsonText(formats::summaryJson(recording)));
    } else {
      writeTable(out, recording);
    }
    before = isJson ? "," : "\n";
    if (recording.isDamaged()) throw Failure(Status::DamagedData, "");  // its warnings say so
  });
  if (isJson) out.write(*before == ',' ? "]}\n" : "{\"files\":[]}\n");
  out.flush();
  endWith(worst);
}

}  // namespace voxa
