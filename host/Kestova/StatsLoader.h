// Loads the statistics of media files. Modules implement this interface.
#pragma once

#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

class MediaFileStats;

class KESTOVA_API StatsLoader {
 public:
  virtual ~StatsLoader();

  /// Returns true if this loader handles the file with this UTF-8 name.
  virtual bool canOpenFile(const std::string& filename) = 0;

  /// Fills `stats` from the file with this UTF-8 name. Throws KestovaException when the file cannot
  /// be read. Requires: `stats` is not null; the caller owns it.
  virtual void loadStats(const std::string& filename, MediaFileStats* stats) = 0;
};

}  // namespace Kestova
