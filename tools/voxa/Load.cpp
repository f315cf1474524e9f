#include <fmt/format.h>

#include <boost/lexical_cast.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/system/system_error.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <exception>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

#include "host/Kestova/KestovaException.h"
#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/MediaFileStats.h"
#include "host/Kestova/ThreadSafe.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/Parameter.h"
#include "params/ParameterIterator.h"
#include "stats/VOXAStatsLoader.h"
#include "tools/host/FixedEditRate.h"
#include "tools/host/ParameterTypes.h"
#include "tools/series/RecordStream.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Describe.h"
#include "tools/voxa/Masks.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Recording.h"
#include "tools/voxa/Rows.h"
#include "tools/voxa/StreamChoice.h"

namespace voxa {

using Kestova::Parameter;
using Kestova::RationalTime;

namespace {

struct Request {
  const LoadOptions& options;
  boost::rational<unsigned int> rate;
  std::optional<RationalTime> at;    // in frames; none for the whole parameter
  std::optional<RationalTime> from;  // keyframes from this frame on, none for all
  std::optional<RationalTime> to;    // keyframes before this frame, none for all
  std::string type;
  std::string streamFileName;
  std::string identifier;
};

double secondsOf(const RationalTime& time, const boost::rational<unsigned int>& rate) {
  return time.toDouble() * rate.denominator() / rate.numerator();
}

// A parameter as the host gets it, and the project that must outlive its use.
template <class T>
struct Loaded {
  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
  boost::shared_ptr<const Parameter<T>> parameter;
};

// The offset of damage, which the module does not report: "byte 40: ", or nothing where it cannot
// be found.
std::string offsetOfDamage(const Request& request) {
  const auto type = series::recordTypeNamed(request.type);
  if (!type) return {};
  const SilentScan silent;
  const QuietModule quiet;
  const auto parser = openForModule(request.options.file, ScanMessages::Dropped);
  try {
    series::forEachRecord(*parser, boost::uuids::string_generator()(request.identifier), *type, {},
                          [](double, const auto&) {});
  } catch (const series::DamagedStream& damage) {
    return "byte " + std::to_string(damage.byteOffset()) + ": ";
  }
  return {};
}

Failure damaged(const Request& request, const std::exception& error) {
  return {Status::DamagedData, request.options.file + ": stream " + request.identifier + ": " +
                                   offsetOfDamage(request) + error.what() +
                                   "; voxa records prints the records before"};
}

Kestova::KeystrokeData redacted(Kestova::KeystrokeData key, series::Redaction redaction) {
  key.setCharacter(series::redactedCharacter(key.character(), redaction));
  return key;
}

using series::redacted;

// Masks the values of texts. Paths of cursor images are not what somebody typed.
template <class T>
void redact(const Request& request, Parameter<T>& parameter) {
  const series::Redaction redaction = request.options.redaction;
  if (redaction == series::Redaction::None) return;
  const auto type = series::recordTypeNamed(request.type);
  if (type == series::recordTypeOf<std::string>() ||
      type == series::recordTypeOf<ZRKMetaData::KeyStroke>()) {
    const auto times = parameter.keyFrameTimes();
    for (const RationalTime& time : *times) {
      parameter.setKeyFrameValue(time, redacted(parameter.valueAt(time), redaction));
    }
  }
}

template <class T>
Loaded<T> load(const Request& request, hosting::LoadOperation<T> operation) {
  const QuietModule quiet;
  const VOXAScreenMetaDataLoader loader;
  const boost::shared_ptr<const Kestova::ProjectEditRate> editRate =
      boost::make_shared<hosting::FixedEditRate>(request.rate);
  Loaded<T> loaded;
  try {
    const boost::shared_ptr<Parameter<T>> parameter =
        (loader.*operation)(request.streamFileName, request.identifier, loaded.project, editRate);
    redact(request, *parameter);
    loaded.parameter = parameter;
  } catch (const boost::system::system_error& error) {  // about the name, not the contents
    throw Failure(Status::Failed, request.options.file + ": " + error.what());
  } catch (const std::runtime_error& error) {
    throw damaged(request, error);
  } catch (const std::length_error& error) {
    throw damaged(request, error);
  }
  return loaded;
}

template <class Row, class T>
void describeKeyFrame(Row& row, const Request& request, const RationalTime& time, const T& value) {
  if (time.isWhole()) {
    row.field("frame", time.numerator());
  } else {
    row.field("frame", boost::lexical_cast<std::string>(time));
  }
  row.derivedField("seconds", secondsOf(time, request.rate));
  describe(row, value);
}

template <class T>
void printRows(const Request& request, const Parameter<T>& parameter, RowWriter& rows) {
  const auto print = [&](const RationalTime& time, const T& value) {
    rows.write([&](auto& row) { describeKeyFrame(row, request, time, value); });
  };
  rows.header([&](auto& row) { describeKeyFrame(row, request, RationalTime(), T()); });
  if (!request.at) {
    // The module reads without a report; printing takes longer.
    constexpr int kKeyFramesPerReport = 1024;
    Progress progress(request.options.file, static_cast<double>(parameter.numKeyFrames()));
    int unreported = 0;
    const Kestova::ReadWriteMutex::ScopedReadLock lock(parameter.mutex());  // once for all rows
    for (Kestova::ParameterIterator<T> at(parameter); !at.atEnd(); at.next()) {
      const bool isInRange =
          (!request.from || at.time() >= *request.from) && (!request.to || at.time() < *request.to);
      if (isInRange) print(at.time(), at.keyFrame()->value());
      if (++unreported == kKeyFramesPerReport) {
        progress.add(unreported);
        unreported = 0;
      }
    }
  } else if (parameter.numKeyFrames() != 0) {
    print(*request.at, parameter.valueAt(*request.at));
  }
}

boost::rational<unsigned int> screenTrackRate(const std::string& file) {
  Kestova::MediaFileStats stats;
  try {
    const SilentScan silent;  // the load that follows prints the messages
    const QuietModule quiet;
    VOXAStatsLoader().loadStats(file, &stats);
  } catch (const Kestova::KestovaException&) {  // the file has no tracks
  }
  for (const auto& track : stats.trackStats()) {
    if (track.tag != Kestova::MediaFileStats::ScreenTrack || track.rate.numerator() == 0) continue;
    note(fmt::format("{}: --rate is that of the screen track: {}/{}", file, track.rate.numerator(),
                     track.rate.denominator()));
    return track.rate;
  }
  throw Failure(Status::WrongUse, file + ": no screen track to take the rate from; use --rate");
}

bool isHostFormat(Format format) {
  return format == Format::HostXml || format == Format::HostJson;
}

// Prints the XML or JSON that the host writes.
template <class T>
void printHostFormat(const Request& request, const Parameter<T>& parameter, Output& out) {
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // a text cut short must not be printed
  if (request.options.format == Format::HostXml) {
    Kestova::XMLOptions options(text);
    parameter.toXML(options, 0, "");
  } else {
    parameter.toJSON(Kestova::JSONOptions(text), 0, "", "");
    text << '\n';
  }
  out.write(text.str());
  out.finish();
}

// Finds the stream, nothing where it is not indexed, and its type.
std::optional<boost::uuids::uuid> chooseLoaded(ZRKMetaData::MetaDataParser& parser,
                                               Request& request) {
  const LoadOptions& options = request.options;
  const auto id = lookUpStream(parser, options.file, options.stream);
  if (options.type.empty()) {
    request.type = infoOf(chooseStream(parser, options.file, options.stream, {}).type).name;
  } else if (id) {
    sayRefusedVersion(parser, options.file, *id, options.stream);
  }
  if (id) {
    const auto type = series::recordTypeNamed(request.type);
    requireMasks(parser, options.file,
                 {{*id, options.stream, type.value_or(series::recordTypeOf<double>())}},
                 options.redaction);
  }
  return id;
}

template <class T>
void loadAndPrint(const Request& request, hosting::LoadOperation<T> operation) {
  const Loaded<T> loaded = load(request, operation);
  Output out(request.options.out);
  if (isHostFormat(request.options.format)) {
    return printHostFormat(request, *loaded.parameter, out);
  }
  RowWriter rows(out, request.options.format);
  const bool isJson = request.options.format == Format::Json;
  if (isJson) {
    out.write("{\"name\":");
    out.writeJsonString(loaded.parameter->name());
    out.write(fmt::format(",\"type\":\"{}\",\"rate\":\"{}/{}\",\"keyframes\":[", request.type,
                          request.rate.numerator(), request.rate.denominator()));
  }
  printRows(request, *loaded.parameter, rows);
  if (isJson) out.write("]}\n");
  out.finish();
}

}  // namespace

void loadParameter(const LoadOptions& options) {
  if (isHostFormat(options.format) && !options.at.empty()) {
    throw Failure(Status::WrongUse, "--at prints one value, which has no host format; omit one");
  }
  const bool isRange = !options.from.empty() || !options.to.empty();
  if (isRange && (!options.at.empty() || isHostFormat(options.format))) {
    throw Failure(Status::WrongUse,
                  "--from and --to select keyframes of a table, CSV or JSON; omit --at");
  }
  std::optional<CommandTime> at;
  if (!options.at.empty()) at = parseTime(options.at);
  std::optional<boost::rational<unsigned int>> rate;
  if (!options.rate.empty()) rate = parseRate(options.rate);
  if (!rate && !(at && at->isSeconds)) {
    throw Failure(Status::WrongUse, "--rate is required, except with --at in seconds");
  }
  const auto parser = openForModule(options.file, ScanMessages::Dropped);
  Request request{options, {}, {}, {}, {}, options.type, {}, {}};
  std::optional<boost::uuids::uuid> id;
  try {
    request.rate = rate ? *rate : screenTrackRate(options.file);
    requireOtherFile(options.out.file, options.file);
    if (at) request.at = frameOf(*at, request.rate);
    if (const auto from = parseBound("--from", options.from, request.rate)) {
      request.from = RationalTime(firstFrameFrom(*from, request.rate));
    }
    if (const auto to = parseBound("--to", options.to, request.rate)) {
      request.to = RationalTime(firstFrameFrom(*to, request.rate));
    }
    id = chooseLoaded(*parser, request);
  } catch (const Failure&) {
    printDroppedMessages(options.file);
    throw;
  }
  request.identifier = id ? boost::uuids::to_string(*id) : options.stream;
  request.streamFileName = options.file + "/" + request.identifier;
  try {
    hosting::visitParameterType(request.type,
                                [&](const auto& row) { loadAndPrint(request, row.operation); });
  } catch (const Kestova::KeyFrameException&) {
    // The host's JSON cannot state a parameter without keyframes.
    if (id) {
      throw Failure(Status::Failed, options.file + ": stream " + request.identifier +
                                        ": there is no keyframe to write");
    }
  }
  if (!id) throw noSuchStream(options.file, options.stream);
}

}  // namespace voxa
