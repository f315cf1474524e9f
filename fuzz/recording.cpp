// Fuzzes the module with a whole recording: its statistics, and every load operation on its
// streams. The first byte of the input selects the container, the second the edit rate; the rest is
// the file.
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/MetaDataUUID.h"
#include "ZRKMetaData/src/ZRKMAssert.h"
#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "fuzz/Fuzz.h"
#include "fuzz/TempFile.h"
#include "host/Kestova/KestovaException.h"
#include "loader/FrameNumber.h"
#include "loader/VOXAScreenMetaDataLoader.h"
#include "params/Parameter.h"
#include "stats/VOXAStatsLoader.h"
#include "tests/support/PlainReading.h"
#include "tools/host/FixedEditRate.h"

namespace {

using hosting::FixedEditRate;
using Kestova::int64;
using Kestova::MediaFileStats;
using Kestova::RationalTime;
using ZRKMetaData::isReadableVersion;
using ZRKMetaData::MetaDataParser;
using ZRKMetaData::readHeaderAt;

constexpr std::size_t kMaxStreamNames = 262144;
constexpr int kMaxStreams = 3;  // the number of streams loaded per file

const boost::rational<unsigned int> kRates[] = {30, {30000, 1001}, 4294967295U, {1, 4294967295U}};

// The value of a keyframe and that of its record have the same bytes.
template <class Number>
std::string bytesOf(const Number& number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}
std::string valueOf(int value, const std::string&) {
  return bytesOf(value);
}
std::string valueOf(int64 value, const std::string&) {
  return bytesOf(value);
}
std::string valueOf(double value, const std::string&) {
  return bytesOf(value);
}
std::string valueOf(const std::string& value, const std::string&) {
  return value;
}
std::string valueOf(const Kestova::KeystrokeData& value, const std::string&) {
  return bytesOf(value.character()) + bytesOf(value.eventFlags());
}
std::string valueOf(const ZRKMetaData::KeyStroke& value, const std::string&) {
  return bytesOf(int{value.character}) + bytesOf(long{value.eventFlags});
}
std::string valueOf(const Kestova::Point& value, const std::string&) {
  return bytesOf(value.x) + bytesOf(value.y);
}
std::string valueOf(const ZRKMetaData::Point& value, const std::string&) {
  return bytesOf(static_cast<double>(value.x)) + bytesOf(static_cast<double>(value.y));
}
std::string valueOf(const Kestova::Rect<float>& value, const std::string&) {
  return bytesOf(value.x) + bytesOf(value.y) + bytesOf(value.width) + bytesOf(value.height);
}
std::string valueOf(const ZRKMetaData::Rect& value, const std::string&) {
  std::string bytes;
  for (const auto coordinate : value.coordinates) bytes += bytesOf(static_cast<float>(coordinate));
  return bytes;
}
std::string valueOf(const ZRKMetaData::CursorImage& value, const std::string& stream) {
  return stream + "/" + std::to_string(value.m_imageId);
}

struct LoadResult {
  std::map<int64, std::string> keyFrames;
  std::string error;

  bool operator==(const LoadResult& other) const {
    return keyFrames == other.keyFrames && error == other.error;
  }
};

// Computes the keyframes of a stream from a plain read of its records.
template <class Record>
class Model final : public ZRKMetaData::DataStreamObserver<Record> {
 public:
  Model(const FixedEditRate& rate, std::string stream)
      : m_framesPerSecond(loader::framesPerSecond(rate.editRate())), m_stream(std::move(stream)) {}

  bool onData(double seconds, const Record& record) override {
    if (const auto frame = loader::frameNumber(m_framesPerSecond, seconds)) {
      outcome.keyFrames[*frame] = valueOf(record, m_stream);
    }
    return true;
  }

  LoadResult outcome;

 private:
  const double m_framesPerSecond;
  const std::string m_stream;
};

template <class Read>
std::string errorOf(Read read) {
  try {
    read();
  } catch (const std::runtime_error& error) {
    return error.what();
  } catch (const std::length_error& error) {
    return error.what();
  }
  return {};
}

class Recording {
 public:
  Recording(std::string file, const boost::shared_ptr<const FixedEditRate>& rate)
      : m_file(std::move(file)), m_rate(rate) {}

  template <class Operation>
  auto load(const std::string& stream, Operation operation) const {
    return (m_loader.*operation)(m_file + "/" + stream, "fuzzed", m_project, m_rate);
  }

  void loadAll(const std::string& stream) const {
    using Loader = VOXAScreenMetaDataLoader;
    compare<int>(stream, &Loader::loadInts);
    compare<double>(stream, &Loader::loadDoubles);
    compare<double>(stream, &Loader::loadCursorOpacity);
    compare<ZRKMetaData::int64>(stream, &Loader::loadInt64);
    compare<std::string>(stream, &Loader::loadStrings);
    compare<ZRKMetaData::KeyStroke>(stream, &Loader::loadKeystrokeData);
    compare<ZRKMetaData::Point>(stream, &Loader::loadPoints);
    compare<ZRKMetaData::Rect>(stream, &Loader::loadRects);
    compare<ZRKMetaData::CursorImage>(stream, &Loader::loadCursorImagePaths);
    const auto lists = load(stream, &Loader::loadRectCollection);
    fuzz::require(lists->numKeyFrames() == 0, "no stream holds lists of rectangles");
  }

 private:
  template <class Record, class Operation>
  void compare(const std::string& stream, Operation operation) const {
    LoadResult loaded;
    loaded.error = errorOf([&] {
      const auto parameter = load(stream, operation);
      const auto times = parameter->keyFrameTimes();
      for (const RationalTime& time : *times) {
        fuzz::require(time.isWhole(), "times are frame numbers");
        const auto keyFrame = parameter->keyFrameAt(time);
        fuzz::require(keyFrame->leadInLength() == RationalTime(0), "there are no lead-ins");
        loaded.keyFrames[time.numerator()] = valueOf(keyFrame->value(), stream);
      }
      fuzz::require(loaded.keyFrames.size() == parameter->numKeyFrames(),
                    "a frame has one keyframe");
    });
    fuzz::require(loaded == expected<Record>(stream),
                  "a load is a plain reading in which the last record of a frame wins");
  }

  template <class Record>
  LoadResult expected(const std::string& stream) const {
    Model<Record> model(*m_rate, stream);
    const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForFile(m_file));
    for (const auto& [id, location] : parser->locations()) {
      if (to_string(id) != stream ||
          !isReadableVersion(readHeaderAt(parser->stream(), location.offset)))
        continue;
      model.outcome.error = errorOf([&, extent = location] {
        testing_support::readPlainly(model, parser->stream(), extent.offset, extent.size);
      });
    }
    if (!model.outcome.error.empty()) model.outcome.keyFrames.clear();  // nothing half-loaded
    return model.outcome;
  }

  const std::string m_file;
  const boost::shared_ptr<const FixedEditRate> m_rate;
  const boost::shared_ptr<Kestova::ThreadSafe> m_project =
      boost::make_shared<Kestova::ThreadSafe>();
  const VOXAScreenMetaDataLoader m_loader;
};

void checkStats(const std::string& file, const std::vector<std::string>& streams) {
  MediaFileStats stats;
  bool isRead = true;
  try {
    VOXAStatsLoader().loadStats(file, &stats);
  } catch (const Kestova::KestovaException&) {
    isRead = false;
  }
  fuzz::require(!isRead || stats.filename() == file, "the statistics are the file's");
  std::size_t names = 0;
  for (std::size_t track = 0; track < stats.trackStats().size(); ++track) {
    const auto& each = stats.trackStats()[track];
    fuzz::require(each.index == static_cast<int>(track), "tracks are in file order");
    const bool isScreen =
        each.type == MediaFileStats::VideoType && each.tag == MediaFileStats::ScreenTrack;
    fuzz::require(each.metaDataFilenames == (isScreen ? streams : std::vector<std::string>()),
                  "a screen track names the streams of the index, other tracks none");
    names += each.metaDataFilenames.size();
  }
  fuzz::require(names <= kMaxStreamNames, "the number of stream names is bounded");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Quiet quiet;
  ZRKMetaData::setAssertionHandler([](const char*, const char*, int) {});
  static const fuzz::TempFile kFiles[] = {fuzz::TempFile(".voxa"), fuzz::TempFile(".avi"),
                                          fuzz::TempFile(".dat")};
  fuzz::Input input(data, size);
  const fuzz::TempFile& file = kFiles[input.take<std::uint8_t>() % 3];
  const auto rate = boost::make_shared<FixedEditRate>(kRates[input.take<std::uint8_t>() % 4]);
  file.write(input.rest());

  std::vector<std::string> names;
  const Recording recording(file.name(), rate);
  int loaded = 0;
  const std::unique_ptr<MetaDataParser> parser(MetaDataParser::createForFile(file.name()));
  for (const auto& id : parser->streamIds()) {
    names.push_back(file.name() + "/" + to_string(id));
    if (loaded++ < kMaxStreams) recording.loadAll(to_string(id));
  }
  if (names.empty()) recording.loadAll("2b7b6af0-7a1f-11e2-83d0-0017f200be7f");
  checkStats(file.name(), names);
  return 0;
}
