#include "tools/formats/HeatMap.h"

#include <algorithm>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Picture.h"
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

// The stream asked for, or the only one of positions.
ChosenStream choosePoints(ZRKMetaData::MetaDataParser& parser, const HeatMapOptions& options) {
  std::vector<std::string> names;
  if (!options.stream.empty()) names.push_back(options.stream);
  std::vector<ChosenStream> streams = chooseStreams(parser, options.file, names, options.types);
  const auto isOther = [](const ChosenStream& stream) {
    return stream.type != series::recordTypeOf<Point>();
  };
  streams.erase(std::remove_if(streams.begin(), streams.end(), isOther), streams.end());
  if (streams.size() == 1) return streams.front();
  if (streams.empty()) {
    throw Failure(Status::WrongUse, options.file + ": " +
                                        (options.stream.empty() ? "no stream" : options.stream) +
                                        " holds no points; name a stream and use --as points");
  }
  std::string keys;
  for (const ChosenStream& stream : streams) keys += " " + stream.name;
  throw Failure(Status::WrongUse,
                options.file + ": several streams hold points; name one of" + keys);
}

}  // namespace

void drawHeatMap(const HeatMapOptions& options) {
  const Draw draw = writerFor(options.out);
  const series::TimeRange range = timeRangeOf(options.times);
  const auto parser = openRecording(options.file, options.container);
  const ChosenStream stream = choosePoints(*parser, options);
  const auto screen = screenSizeOf(options.file, options.screen);
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
