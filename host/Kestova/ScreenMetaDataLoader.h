// Loads the screen metadata of recordings. Modules implement this interface.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>
#include <list>
#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"
#include "host/Kestova/ProjectEditRate.h"
#include "host/Kestova/ThreadSafe.h"
#include "host/Kestova/ValueTypes.h"

namespace Kestova {

template <class T>
class Parameter;

/// Every load operation takes the stream file name, the identifier of the new parameter, the owner
/// whose lock will guard it and the source of the edit rate, in frames per second, at which times
/// are rounded to frames. No operation returns a null pointer. The caller owns the result.
class KESTOVA_API ScreenMetaDataLoader {
 public:
  virtual ~ScreenMetaDataLoader();

  virtual boost::shared_ptr<Parameter<Rect<float>>> loadRects(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<Point>> loadPoints(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<KeystrokeData>> loadKeystrokeData(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<int>> loadInts(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<std::list<Rect<float>>>> loadRectCollection(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<double>> loadDoubles(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<std::string>> loadStrings(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<std::string>> loadCursorImagePaths(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<double>> loadCursorOpacity(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;
  virtual boost::shared_ptr<Parameter<int64>> loadInt64(
      const std::string& filename, const std::string& identifier,
      const boost::weak_ptr<const ThreadSafe>& owner,
      const boost::weak_ptr<const ProjectEditRate>& editRate) const = 0;

  /// Returns true if the recording that the stream file name names exists.
  virtual bool fileExists(const std::string& filename) const = 0;
};

}  // namespace Kestova
