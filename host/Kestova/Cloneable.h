// An object that can be copied without knowing its class.
#pragma once

namespace Kestova {

class Cloneable {
 public:
  virtual ~Cloneable() = default;

  /// Returns a new copy of the most derived class. The caller owns it.
  virtual Cloneable* clone() const = 0;
};

}  // namespace Kestova
