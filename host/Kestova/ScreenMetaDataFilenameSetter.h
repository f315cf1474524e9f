// What files stream names under their slots: a host interface that modules implement.
#pragma once

#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

class ScreenMetaData;

class KESTOVA_API ScreenMetaDataFilenameSetter {
 public:
  virtual ~ScreenMetaDataFilenameSetter();

  /// Called before the first name is filed.
  virtual void initScreenMetaData(ScreenMetaData* metaData) = 0;

  /// Files a stream file name in `metaData`, which is the caller's.
  virtual void setScreenMetaData(ScreenMetaData* metaData, const std::string& filename) = 0;
};

}  // namespace Kestova
