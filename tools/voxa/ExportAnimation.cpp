#include <fmt/format.h>

#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>

#include "loader/FrameNumber.h"
#include "text/Counted.h"
#include "tools/formats/MltAnimation.h"
#include "tools/voxa/Export.h"
#include "tools/voxa/KeptRecords.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Sources.h"

namespace voxa {

using formats::MltAnimation;

namespace {

void requireField(const std::string& name, series::RecordType type) {
  const series::RecordTypeInfo& info = infoOf(type);
  if (name.empty()) return;
  const bool isImage = type == series::recordTypeOf<ZRKMetaData::CursorImage>();
  std::string names;
  for (const series::Field& field : info) {
    if (field.name == name && (!isImage || name == info.begin()->name)) return;
    if (!isImage || names.empty()) names += std::string(" ") + field.name;
  }
  throw Failure(Status::WrongUse, "--field: " + std::string(info.name) + " have no field '" + name +
                                      "'; use" + names);
}

// Writes the keys of a stream. Returns the damage at which they end, empty for none.
template <class Record>
std::string writeKeys(const ExportOptions& options, const Source& source,
                      const ChosenStream& stream, MltAnimation& animation) {
  const ReadOptions read = readOptionsOf(options);
  const int readings = read.tolerance ? 3 : 2;  // the first finds out whether the times fall
  const Progress progress(source.file, readings * bytesOf(source.parser, {stream}));
  const double framesPerSecond = loader::framesPerSecond(parseRate(options.times.rate));
  const bool isRising = timesNeverFall<Record>(source.parser, stream, read.range);
  std::map<std::int64_t, std::string> sorted;  // used where the times fall
  std::uint64_t leftOut = 0;
  std::string damage;
  try {
    forEachKept<Record>(source.parser, source.file, stream, read,
                        [&](double seconds, const Record& record) {
                          const auto frame = loader::frameNumber(framesPerSecond, seconds);
                          if (!frame || *frame > MltAnimation::kMaxFrame) {
                            ++leftOut;
                            return;
                          }
                          std::string value = formats::mltValue(record, options.field);
                          if (isRising) {
                            animation.add(*frame, std::move(value));
                          } else {
                            sorted.insert_or_assign(*frame, std::move(value));
                          }
                        });
  } catch (const series::DamagedStream& error) {
    damage = error.message(source.file);
  }
  for (auto& [frame, value] : sorted) animation.add(frame, std::move(value));
  if (leftOut != 0) {
    say(fmt::format("{}: {}: {} left out because of a time without a frame of 31 bits", source.file,
                    stream.name, text::counted(leftOut, "record")));
  }
  return damage;
}

}  // namespace

void exportAnimation(const ExportOptions& options) {
  readOptionsOf(options);  // refuses wrong ones before a file is opened
  endWith(forEachSource(options.sources, [&](const Source& source) {
    if (source.streams.size() != 1) {
      throw Failure(Status::WrongUse, "--format mlt holds one stream; use --streams KEY");
    }
    const ChosenStream& stream = source.streams.front();
    if (!stream.isEmpty) requireField(options.field, stream.type);
    Output out(options.out);
    formats::TextSink sink = sinkInto(out);
    MltAnimation animation(sink);
    animation.begin(options.property);
    const std::string damage = series::visitRecordType(stream.type, [&](const auto& row) {
      return writeKeys<typename std::decay_t<decltype(row)>::type>(options, source, stream,
                                                                   animation);
    });
    if (animation.isEmpty()) {
      if (!damage.empty()) throw Failure(Status::DamagedData, damage + "; nothing is written");
      throw Failure(Status::Failed, fmt::format("{}: {}: no records in the range; an animation "
                                                "without a key would be the number 0",
                                                source.file, stream.name));
    }
    animation.finish();
    sink.flush();
    out.finish();
    if (!damage.empty()) {
      throw Failure(Status::DamagedData, damage + "; the result holds the records before");
    }
  }));
}

}  // namespace voxa
