#include "tools/formats/HeatMap.h"

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Picture.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using ZRKMetaData::Point;

namespace {

bool hasEnding(const std::string& name, std::string_view ending) {
  return name.size() >= ending.size() &&
         name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
}

using Draw = std::string (*)(const formats::HeatGrid&, std::string_view);

Draw writerFor(const std::string& out) {
  if (hasEnding(out, ".png")) return formats::heatMapPng;
  if (hasEnding(out, ".svg") || out == "-") return formats::heatMapSvg;
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
  writeResult(options.out, options.force, draw(grid, titleOf(options.file)));
  if (!damage.empty()) {
    throw Failure(Status::DamagedData, damage + "; the picture shows the records before");
  }
}

}  // namespace voxa
