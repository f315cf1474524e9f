// Loads one stream of a recording as a keyframed parameter.
//
// Thread rule of the module: loading it sets the path locale of Boost.Filesystem, and unloading it
// puts the previous one back. Boost.Filesystem does not guard its path locale. No other thread may
// convert a boost::filesystem::path between narrow and wide text, or imbue a path locale, while the
// module is being loaded or unloaded. On Windows the rule does not apply, because the module
// contains a copy of Boost.Filesystem of its own.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <list>
#include <string>

#include "host/Kestova/ScreenMetaDataLoader.h"
#include "module/Export.h"

/// Each load operation opens the recording that `filename`, a stream file name, refers to, indexes
/// it, decodes the one stream and returns a Kestova::LeftParameter named `identifier`. Its times
/// are frame numbers at `editRate`. Each frame has at most one keyframe; the last record of a frame
/// wins. The caller owns the parameter, which belongs to the project `owner`.
///
/// The parameter is empty when the recording does not hold the stream, when it cannot be opened,
/// and when the stream has another format version; the last is reported on standard output.
///
/// Throws std::runtime_error "invalid meta data entry" or std::length_error for a damaged stream,
/// boost::system::system_error for a name that is not UTF-8, and Kestova::KestovaException when
/// `editRate` has expired. No partly loaded parameter is returned.
///
/// Stateless: several threads may use one object.
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

  /// Returns an empty parameter, because no stream holds lists of rectangles. Opens no file and
  /// does not use `editRate`.
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

  /// Each value is a reference to an image: stream identifier, "/", image identifier. The images
  /// themselves are discarded.
  boost::shared_ptr<Kestova::Parameter<std::string>> loadCursorImagePaths(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;

  /// Calls the virtual `loadDoubles`, so overriding it affects this too.
  boost::shared_ptr<Kestova::Parameter<double>> loadCursorOpacity(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;
  boost::shared_ptr<Kestova::Parameter<Kestova::int64>> loadInt64(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const Kestova::ThreadSafe>& owner,
      const boost::weak_ptr<const Kestova::ProjectEditRate>& editRate) const override;

  /// Returns true when a file or a directory exists at the recording path of a stream file name,
  /// and false for an empty name. Throws boost::filesystem::filesystem_error when the system cannot
  /// tell, and boost::system::system_error for a name that is not UTF-8.
  bool fileExists(const std::string& filename) const override;
};
