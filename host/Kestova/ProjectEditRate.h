// The edit rate of a project.
#pragma once

#include <boost/rational.hpp>

#include "host/Kestova/Export.h"

namespace Kestova {

class KESTOVA_API ProjectEditRate {
 public:
  virtual ~ProjectEditRate();

  /// Returns the edit rate in frames per second.
  virtual boost::rational<unsigned int> editRate() const = 0;
};

}  // namespace Kestova
