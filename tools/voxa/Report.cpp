#include "tools/formats/Report.h"

#include <vector>

#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Masks.h"
#include "tools/voxa/NamedTypes.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Summary.h"
#include "tools/voxa/Version.h"

namespace voxa {

void writeReport(const ReportOptions& options) {
  const series::TimeRange range = timeRangeOf(options.times);
  const auto parser = openRecording(options.file, options.container);
  requireOtherFile(options.out.file, options.file);
  const auto streams = streamsNamed(*parser, options.file, options.streams);
  const auto types = namedTypes(*parser, options.file, options.types);
  Output out(options.out);
  constexpr int kReadings = 2;  // for the summary and for the rows
  const Progress progress(options.file, kReadings * bytesOf(*parser, streams));
  const series::RecordingSummary recording =
      summarise(*parser, options.file, {streams, range, types});
  std::vector<ChosenStream> shown;
  for (const series::StreamSummary& stream : recording.streams) {
    if (stream.type) shown.push_back({stream.id, stream.key, *stream.type});
  }
  requireMasks(*parser, options.file, shown, options.redaction);
  formats::ReportSource source{
      recording, range, parser->locations().size() - streams.size(), {}, kVersion};
  source.addRecords = [&](std::size_t index, formats::ReportRows& rows) {
    const series::StreamSummary& stream = recording.streams[index];
    const QuietModule quiet;
    try {
      series::forEachRecord(
          *parser, stream.id, *stream.type, range,
          series::redacting(options.redaction, [&rows](double seconds, const auto& record) {
            rows.add(seconds, record);
          }));
    } catch (const series::DamagedStream&) {
      // The summary says so.
    }
  };
  formats::writeReport(source, [&out](std::string_view text) { out.write(text); });
  out.finish();
  if (recording.isDamaged()) {
    throw Failure(Status::DamagedData, options.file + ": " + recording.warnings.front() +
                                           "; the page holds what was read");
  }
}

}  // namespace voxa
