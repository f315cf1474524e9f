// Gives a parameter the edit rate of the times that it holds.
#pragma once

#include "host/Kestova/Export.h"
#include "host/Kestova/SafeRational.h"

namespace Kestova {

class KESTOVA_API EditRateSource {
 public:
  virtual ~EditRateSource();

  /// In frames per unit of the parameter's times.
  virtual SafeRational editRate() const = 0;
};

}  // namespace Kestova
