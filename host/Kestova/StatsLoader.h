// What finds out about media files: a host interface that modules implement.
#pragma once

#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

class MediaFileStats;

class KESTOVA_API StatsLoader {
 public:
  virtual ~StatsLoader();

  /// True when this loader is the one for the file with this UTF-8 name.
  virtual bool canOpenFile(const std::string& filename) = 0;

  /// Fills `stats`, which is the caller's and not null.
  virtual void loadStats(const std::string& filename, MediaFileStats* stats) = 0;
};

}  // namespace Kestova
