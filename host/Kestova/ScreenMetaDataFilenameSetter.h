// Stores stream file names in the slots of a ScreenMetaData. Modules implement this interface.
#pragma once

#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

class ScreenMetaData;

class KESTOVA_API ScreenMetaDataFilenameSetter {
 public:
  virtual ~ScreenMetaDataFilenameSetter();

  /// Called before the first name is stored.
  virtual void initScreenMetaData(ScreenMetaData* metaData) = 0;

  /// Stores a stream file name in `metaData`, which the caller owns.
  virtual void setScreenMetaData(ScreenMetaData* metaData, const std::string& filename) = 0;
};

}  // namespace Kestova
