#include "loader/VOXAScreenMetaDataLoader.h"

#include <boost/filesystem/operations.hpp>
#include <boost/rational.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <list>
#include <memory>
#include <string>
#include <utility>

#include "ZRKMetaData/src/ZRKMMetaDataParser.h"
#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "host/Kestova/KestovaException.h"
#include "loader/FrameNumber.h"
#include "names/StreamFileName.h"
#include "names/WindowsPath.h"
#include "params/LeftParameter.h"
#include "params/TimeLimits.h"

using Kestova::KeystrokeData;
using Kestova::LeftParameter;
using Kestova::Parameter;
using Kestova::Point;
using Kestova::ProjectEditRate;
using Kestova::RationalTime;
using Kestova::Rect;
using Kestova::ThreadSafe;

namespace {

// Returns the last component of the stream file name as written, "/", and the identifier of the
// image, as in 2b7b6af7-7a1f-11e2-83d0-0017f200be7f/42. Throws the exceptions of
// names::WindowsPath.
std::string cursorImageReference(const std::string& filename, ZRKMetaData::uint64 imageId) {
  return names::WindowsPath(filename).filename() + '/' + std::to_string(imageId);
}

// Returns the value of a keyframe for a record. Only cursor images use the stream file name.
template <class Value>
const Value& keyFrameValue(const Value& record, const std::string& /*filename*/) {
  return record;
}
KeystrokeData keyFrameValue(const ZRKMetaData::KeyStroke& record, const std::string& /*filename*/) {
  KeystrokeData data;
  data.setCharacter(record.character);
  data.setEventFlags(record.eventFlags);
  return data;
}
Point keyFrameValue(const ZRKMetaData::Point& record, const std::string& /*filename*/) {
  return {static_cast<double>(record.x), static_cast<double>(record.y), 0.0};
}
Rect<float> keyFrameValue(const ZRKMetaData::Rect& record, const std::string& /*filename*/) {
  const auto& from = record.coordinates;
  return {static_cast<float>(from[0]), static_cast<float>(from[1]), static_cast<float>(from[2]),
          static_cast<float>(from[3])};
}
std::string keyFrameValue(const ZRKMetaData::CursorImage& record, const std::string& filename) {
  return cursorImageReference(filename, record.m_imageId);
}

template <class Src, class Target>
class ParamSetter;

/// Adds a keyframe per record to a parameter. Takes no lock, because no other thread can access the
/// parameter before the load operation returns it.
template <class Src, class Dst>
class ParamSetter<Src, Parameter<Dst>> final : public ZRKMetaData::DataStreamObserver<Src> {
 public:
  /// `editRate` is in frames per second. The setter shares ownership of `parameter`.
  ParamSetter(const boost::rational<unsigned int>& editRate,
              boost::shared_ptr<Parameter<Dst>> parameter, std::string filename)
      : m_framesPerSecond(loader::framesPerSecond(editRate)),
        m_parameter(std::move(parameter)),
        m_filename(std::move(filename)) {}
  virtual ~ParamSetter() = default;

  /// Adds a keyframe with lead-in 0 at the frame of `seconds`; a keyframe that is already there is
  /// replaced. A record whose time has no frame number is skipped. Returns true.
  bool onData(double seconds, const Src& record) override {
    const auto frame = loader::frameNumber(m_framesPerSecond, seconds);
    if (!frame) return true;
    const RationalTime time(*frame);
    if (time > m_latest) {  // the usual case, which needs no look-up
      m_latest = time;
    } else if (m_parameter->keyFrameExists(time)) {
      m_parameter->removeKeyFrame(time);
    }
    m_parameter->addKeyFrame(time, keyFrameValue(record, m_filename), RationalTime(0));
    return true;
  }

 private:
  const double m_framesPerSecond;
  const boost::shared_ptr<Parameter<Dst>> m_parameter;
  const std::string m_filename;
  RationalTime m_latest = Kestova::beforeAllTimes();
};

template <class T>
boost::shared_ptr<Parameter<T>> makeParameter(const std::string& identifier,
                                              const boost::weak_ptr<const ThreadSafe>& owner) {
  return boost::make_shared<LeftParameter<T>>(owner, identifier, nullptr);
}

// The common implementation of the load operations.
template <class Src, class Dst>
boost::shared_ptr<Parameter<Dst>> loadParameter(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) {
  auto result = makeParameter<Dst>(identifier, owner);
  const names::StreamPath path = names::splitStreamPath(filename);
  const std::unique_ptr<ZRKMetaData::MetaDataParser> parser(
      ZRKMetaData::MetaDataParser::createForFile(path.recordingPath));
  const auto rate = editRate.lock();
  if (!rate) throw Kestova::KestovaException("no edit rate to load " + filename + " at");
  ParamSetter<Src, Parameter<Dst>> setter(rate->editRate(), result, filename);
  if (!path.streamId) return result;
  const auto found = parser->locations().find(*path.streamId);
  if (found != parser->locations().end()) {
    const auto& [offset, size] = found->second;
    ZRKMetaData::MetaDataReader<Src>().parseFile(setter, parser->stream(), offset, size);
  }
  return result;
}

}  // namespace

VOXAScreenMetaDataLoader::VOXAScreenMetaDataLoader() = default;
VOXAScreenMetaDataLoader::~VOXAScreenMetaDataLoader() = default;

boost::shared_ptr<Parameter<Rect<float>>> VOXAScreenMetaDataLoader::loadRects(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<ZRKMetaData::Rect, Rect<float>>(filename, identifier, owner, editRate);
}

boost::shared_ptr<Parameter<Point>> VOXAScreenMetaDataLoader::loadPoints(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<ZRKMetaData::Point, Point>(filename, identifier, owner, editRate);
}

boost::shared_ptr<Parameter<KeystrokeData>> VOXAScreenMetaDataLoader::loadKeystrokeData(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<ZRKMetaData::KeyStroke, KeystrokeData>(filename, identifier, owner,
                                                              editRate);
}

boost::shared_ptr<Parameter<int>> VOXAScreenMetaDataLoader::loadInts(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<int, int>(filename, identifier, owner, editRate);
}

boost::shared_ptr<Parameter<std::list<Rect<float>>>> VOXAScreenMetaDataLoader::loadRectCollection(
    const std::string& /*filename*/, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& /*editRate*/) const {
  return makeParameter<std::list<Rect<float>>>(identifier, owner);
}

boost::shared_ptr<Parameter<double>> VOXAScreenMetaDataLoader::loadDoubles(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<double, double>(filename, identifier, owner, editRate);
}

boost::shared_ptr<Parameter<std::string>> VOXAScreenMetaDataLoader::loadStrings(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<std::string, std::string>(filename, identifier, owner, editRate);
}

boost::shared_ptr<Parameter<std::string>> VOXAScreenMetaDataLoader::loadCursorImagePaths(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<ZRKMetaData::CursorImage, std::string>(filename, identifier, owner,
                                                              editRate);
}

boost::shared_ptr<Parameter<double>> VOXAScreenMetaDataLoader::loadCursorOpacity(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadDoubles(filename, identifier, owner, editRate);
}

boost::shared_ptr<Parameter<Kestova::int64>> VOXAScreenMetaDataLoader::loadInt64(
    const std::string& filename, const std::string& identifier,
    const boost::weak_ptr<const ThreadSafe>& owner,
    const boost::weak_ptr<const ProjectEditRate>& editRate) const {
  return loadParameter<Kestova::int64, Kestova::int64>(filename, identifier, owner, editRate);
}

bool VOXAScreenMetaDataLoader::fileExists(const std::string& filename) const {
  if (filename.empty()) return false;
  return boost::filesystem::exists(names::splitStreamPath(filename).recordingPath);
}
