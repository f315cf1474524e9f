#include <boost/lexical_cast.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/system/system_error.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <exception>
#include <sstream>

#include "host/Kestova/KestovaException.h"
#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/MediaFileStats.h"
#include "host/Kestova/ThreadSafe.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/Parameter.h"
#include "params/ParameterIterator.h"
#include "stats/VOXAStatsLoader.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/Describe.h"
#include "tools/voxa/Messages.h"
#include "tools/voxa/QuietModule.h"
#include "tools/voxa/Rates.h"
#include "tools/voxa/Recording.h"

namespace voxa {

using Kestova::Parameter;
using Kestova::RationalTime;

namespace {

class FixedEditRate final : public Kestova::ProjectEditRate {
 public:
  explicit FixedEditRate(const boost::rational<unsigned int>& rate) : m_rate(rate) {}
  boost::rational<unsigned int> editRate() const override { return m_rate; }

 private:
  const boost::rational<unsigned int> m_rate;
};

struct Request {
  const LoadOptions& options;
  boost::rational<unsigned int> rate;
  std::string streamFileName;
  std::string identifier;
};

double secondsOf(const RationalTime& time, const boost::rational<unsigned int>& rate) {
  return time.toDouble() * rate.denominator() / rate.numerator();
}

// What the host would get, with the project for as long as it is looked at.
template <class T>
struct Loaded {
  boost::shared_ptr<Kestova::ThreadSafe> project = boost::make_shared<Kestova::ThreadSafe>();
  boost::shared_ptr<const Parameter<T>> parameter;
};

template <class T>
using LoadOperation = boost::shared_ptr<Parameter<T>> (Kestova::ScreenMetaDataLoader::*)(
    const std::string&, const std::string&, const boost::weak_ptr<const Kestova::ThreadSafe>&,
    const boost::weak_ptr<const Kestova::ProjectEditRate>&) const;

Failure damaged(const Request& request, const std::exception& error) {
  return {Status::DamagedData,
          request.options.file + ": stream " + request.identifier + ": " + error.what()};
}

template <class T>
Loaded<T> load(const Request& request, LoadOperation<T> operation) {
  const QuietModule quiet;
  const VOXAScreenMetaDataLoader loader;
  const boost::shared_ptr<const Kestova::ProjectEditRate> editRate =
      boost::make_shared<FixedEditRate>(request.rate);
  Loaded<T> loaded;
  try {
    loaded.parameter =
        (loader.*operation)(request.streamFileName, request.identifier, loaded.project, editRate);
  } catch (const boost::system::system_error& error) {  // its name, not what is in it
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
  row.value([&](auto& fields) { describe(fields, value); });
}

template <class T>
void printRows(const Request& request, const Parameter<T>& parameter, RowWriter& rows) {
  const auto print = [&](const RationalTime& time, const T& value) {
    rows.write([&](auto& row) { describeKeyFrame(row, request, time, value); });
  };
  rows.header([&](auto& row) { describeKeyFrame(row, request, RationalTime(), T()); });
  if (request.options.at.empty()) {
    const Kestova::ReadWriteMutex::ScopedReadLock lock(parameter.mutex());  // once for all rows
    for (Kestova::ParameterIterator<T> at(parameter); !at.atEnd(); at.next()) {
      print(at.time(), at.keyFrame()->value());
    }
  } else if (parameter.numKeyFrames() != 0) {
    const RationalTime time = parseTime(request.options.at, request.rate);
    print(time, parameter.valueAt(time));
  }
}

boost::rational<unsigned int> screenTrackRate(const std::string& file) {
  Kestova::MediaFileStats stats;
  try {
    const QuietModule quiet;
    VOXAStatsLoader().loadStats(file, &stats);
  } catch (const Kestova::KestovaException&) {  // no tracks, then
  }
  for (const auto& track : stats.trackStats()) {
    if (track.tag != Kestova::MediaFileStats::ScreenTrack || track.rate.numerator() == 0) continue;
    say(fmt::format("{}: --rate is that of the screen track: {}/{}", file, track.rate.numerator(),
                    track.rate.denominator()));
    return track.rate;
  }
  throw Failure(Status::WrongUse, file + ": no screen track to take the rate from; use --rate");
}

bool isHostForm(Format format) {
  return format == Format::HostXml || format == Format::HostJson;
}

// The forms that the host writes itself, as they are.
template <class T>
void printHostForm(const Request& request, const Parameter<T>& parameter, Output& out) {
  std::ostringstream text;
  text.exceptions(std::ios::badbit);  // so that nobody gets half of it
  if (request.options.format == Format::HostXml) {
    Kestova::XMLOptions options(text);
    parameter.toXML(options, 0, "");
  } else {
    parameter.toJSON(Kestova::JSONOptions(text), 0, "", "");
    text << '\n';
  }
  out.write(text.str());
  out.flush();
}

template <class T>
void loadAndPrint(const Request& request, LoadOperation<T> operation) {
  const Loaded<T> loaded = load(request, operation);
  Output out;
  if (isHostForm(request.options.format)) {
    return printHostForm(request, *loaded.parameter, out);
  }
  RowWriter rows(out, request.options.format);
  const bool isJson = request.options.format == Format::Json;
  if (isJson) {
    out.write("{\"name\":");
    out.writeJsonString(loaded.parameter->name());
    out.write(fmt::format(",\"type\":\"{}\",\"rate\":\"{}/{}\",\"keyframes\":[",
                          request.options.type, request.rate.numerator(),
                          request.rate.denominator()));
  }
  printRows(request, *loaded.parameter, rows);
  if (isJson) out.write("]}\n");
  out.flush();
}

void loadAs(const std::string& type, const Request& request) {
  using Loader = Kestova::ScreenMetaDataLoader;
  if (type == "ints") return loadAndPrint<int>(request, &Loader::loadInts);
  if (type == "doubles") return loadAndPrint<double>(request, &Loader::loadDoubles);
  if (type == "opacity") return loadAndPrint<double>(request, &Loader::loadCursorOpacity);
  if (type == "int64s") return loadAndPrint<Kestova::int64>(request, &Loader::loadInt64);
  if (type == "strings") return loadAndPrint<std::string>(request, &Loader::loadStrings);
  if (type == "cursor-images") {
    return loadAndPrint<std::string>(request, &Loader::loadCursorImagePaths);
  }
  if (type == "keystrokes") {
    return loadAndPrint<Kestova::KeystrokeData>(request, &Loader::loadKeystrokeData);
  }
  if (type == "points") return loadAndPrint<Kestova::Point>(request, &Loader::loadPoints);
  if (type == "rects") return loadAndPrint<Kestova::Rect<float>>(request, &Loader::loadRects);
  if (type == "rect-collections") {
    return loadAndPrint<std::list<Kestova::Rect<float>>>(request, &Loader::loadRectCollection);
  }
  throw Failure(Status::WrongUse, "no parameters of type " + type);
}

}  // namespace

void loadParameter(const LoadOptions& options) {
  if (isHostForm(options.format) && !options.at.empty()) {
    throw Failure(Status::WrongUse, "--at prints one value, which has no host form; omit one");
  }
  if (options.rate.empty() && !isInSeconds(options.at)) {
    throw Failure(Status::WrongUse, "--rate is required, except with --at in seconds");
  }
  Request request{options, parseRate(options.rate.empty() ? "1" : options.rate), {}, {}};
  if (!options.at.empty()) parseTime(options.at, request.rate);
  const auto parser = openForModule(options.file);
  if (options.rate.empty()) {
    request.rate = screenTrackRate(options.file);
    parseTime(options.at, request.rate);
  }
  std::exception_ptr absent;
  try {
    request.identifier = boost::uuids::to_string(findStream(*parser, options.file, options.stream));
  } catch (const Failure& failure) {
    if (failure.status() != Status::NoSuchStream) throw;
    absent = std::current_exception();
    request.identifier = options.stream;
  }
  request.streamFileName = options.file + "/" + request.identifier;
  try {
    loadAs(options.type, request);
  } catch (const Kestova::KeyFrameException&) {
    // The host's JSON has no form for a parameter without keyframes.
    if (absent) std::rethrow_exception(absent);
    throw Failure(Status::Failed, options.file + ": stream " + request.identifier +
                                      ": there is no keyframe to write");
  }
  if (absent) std::rethrow_exception(absent);
}

}  // namespace voxa
