#include "tools/formats/HeatMap.h"

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/series/RecordStream.h"
#include "tools/series/Summary.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Extension.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Picture.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using ZRKMetaData::Point;

namespace {

using Draw = std::string (*)(const formats::HeatGrid&, std::string_view);

Draw writerFor(const std::string& out) {
  const std::string extension = extensionOf(out);
  if (extension == ".png") return formats::heatMapPng;
  if (extension == ".svg" || out == "-") return formats::heatMapSvg;
  throw Failure(Status::WrongUse, out + ": unknown extension; use .png or .svg");
}

}  // namespace

void drawHeatMap(const HeatMapOptions& options) {
  const Draw draw = writerFor(options.out);
  const series::TimeRange range = timeRangeOf(options.times);
  const auto parser = openRecording(options.file, options.container);
  requireOtherFile(options.out, options.file);
  const ChosenStream stream = chooseOfType(*parser, options.file, options.stream, options.types,
                                           series::recordTypeOf<Point>());
  const auto screen = screenSizeOf(options.file, options.screen);
  Output out({options.out, options.force});
  const Progress progress(options.file, (screen ? 1 : 2) * bytesOf(*parser, {stream}));
  std::string damage;
  const auto forEachPoint = [&](auto visitor) {
    const QuietModule quiet;
    try {
      series::forEachRecord<Point>(*parser, stream.id, range, visitor);
    } catch (const series::DamagedStream& error) {
      damage = error.message(options.file);
    }
  };
  formats::PointBounds bounds;
  if (!screen) forEachPoint([&bounds](double, const Point& point) { bounds.add(point); });
  formats::HeatGrid grid(stream.name, series::infoOf(stream.type).label, screen, bounds.area(),
                         options.cell);
  forEachPoint([&grid](double seconds, const Point& point) { grid.add(seconds, point); });
  out.write(draw(grid, series::titleOf(options.file)));
  out.finish();
  if (!damage.empty()) {
    throw Failure(Status::DamagedData, damage + "; the picture shows the records before");
  }
}

}  // namespace voxa
