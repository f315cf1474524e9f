// The source of the edit rate of a parameter's times.
#pragma once

#include "host/Kestova/Export.h"
#include "host/Kestova/SafeRational.h"

namespace Kestova {

class KESTOVA_API EditRateSource {
 public:
  virtual ~EditRateSource();

  /// Returns the edit rate in frames per unit of the parameter's times.
  virtual SafeRational editRate() const = 0;
};

}  // namespace Kestova
