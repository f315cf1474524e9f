#include "tools/formats/Plot.h"

#include "tools/series/RecordStream.h"
#include "tools/series/Summary.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Extension.h"
#include "tools/voxa/Masks.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Picture.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"

namespace voxa {

namespace {

// Another picture format would be a file that no viewer opens by its name.
void requireSvg(const std::string& out) {
  for (const char* const other : {".png", ".jpg", ".jpeg", ".gif", ".webp", ".pdf"}) {
    if (extensionOf(out) != other) continue;
    throw Failure(Status::WrongUse, out + ": a plot is SVG; name it .svg, and convert that");
  }
}

}  // namespace

void drawPlot(const PlotOptions& options) {
  requireSvg(options.out);
  const series::TimeRange range = timeRangeOf(options.times);
  const auto parser = openRecording(options.file, options.container);
  requireOtherFile(options.out, options.file);
  const auto streams = chooseStreams(*parser, options.file, options.streams, options.types);
  requireMasks(*parser, options.file, streams, options.redaction);
  const Progress progress(options.file, bytesOf(*parser, streams));
  formats::Plot plot({series::titleOf(options.file), screenSizeOf(options.file, options.screen)});
  Output out({options.out, options.force});
  std::string damage;
  for (const ChosenStream& stream : streams) {
    if (stream.isEmpty) continue;
    plot.beginStream(stream.name, stream.type);
    const QuietModule quiet;
    try {
      series::forEachRecord(
          *parser, stream.id, stream.type, range,
          series::redacting(options.redaction, [&plot](double seconds, const auto& record) {
            plot.add(seconds, record);
          }));
    } catch (const series::DamagedStream& error) {
      if (damage.empty()) damage = error.message(options.file);
    }
  }
  out.write(plot.svg());
  out.finish();
  if (!damage.empty()) {
    throw Failure(Status::DamagedData, damage + "; the picture shows the records before");
  }
}

}  // namespace voxa
