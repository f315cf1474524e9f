// Loads one stream of a recording as a keyframed parameter.
#pragma once

#include "host/Kestova/ScreenMetaDataLoader.h"
#include "module/Export.h"

/// Every load operation opens the recording that the stream file name names, indexes it, decodes
/// the one stream and returns it as a Kestova::LeftParameter whose times are frame numbers at the
/// edit rate, one keyframe a frame, the later record of a frame winning. The parameter is the
/// caller's alone. It is empty when the recording does not hold the stream, cannot be opened, or
/// has another format version, which is said on standard output.
///
/// Throws: what the reader throws for a damaged stream (std::runtime_error "invalid meta data
/// entry", std::length_error), boost::system::system_error for a name that is not UTF-8, and
/// Kestova::KestovaException when the edit rate has gone. Nothing half-loaded is returned.
///
/// There is no state: one object serves any number of threads.
class KESTOVA_VOXA_SUPPORT_API VOXAScreenMetaDataLoader : public Kestova::ScreenMetaDataLoader {
 public:
  VOXAScreenMetaDataLoader();
  ~VOXAScreenMetaDataLoader() override;

  boost::shared_ptr<Kestova::Parameter<Kestova::Rect<float>>> loadRects(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;
  boost::shared_ptr<Kestova::Parameter<Kestova::Point>> loadPoints(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;
  boost::shared_ptr<Kestova::Parameter<Kestova::KeystrokeData>> loadKeystrokeData(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;
  boost::shared_ptr<Kestova::Parameter<int>> loadInts(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;

  /// No stream holds rectangle lists: an empty parameter, no file opened, no edit rate read.
  boost::shared_ptr<Kestova::Parameter<std::list<Kestova::Rect<float>>>> loadRectCollection(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;
  boost::shared_ptr<Kestova::Parameter<double>> loadDoubles(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;
  boost::shared_ptr<Kestova::Parameter<std::string>> loadStrings(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;

  /// The values are references, stream identifier "/" image identifier; images are not kept.
  boost::shared_ptr<Kestova::Parameter<std::string>> loadCursorImagePaths(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;

  /// `loadDoubles`, through the table of operations: who overrides that one changes this one too.
  boost::shared_ptr<Kestova::Parameter<double>> loadCursorOpacity(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;
  boost::shared_ptr<Kestova::Parameter<Kestova::int64>> loadInt64(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;

  /// True when anything, a directory included, stands at the recording path of a stream file name;
  /// false for the empty name. Throws boost::filesystem::filesystem_error when the system cannot
  /// tell, boost::system::system_error for a name that is not UTF-8.
  bool fileExists(const std::string& filename) const override;
};
