// The root of the host's objects.
#pragma once

#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

class KESTOVA_API KvObject {
 public:
  virtual ~KvObject();

  /// Returns a text for logs: the name of the most derived class, unless a class overrides it.
  virtual std::string description() const;

 protected:
  KvObject() = default;
  KvObject(const KvObject&) = default;
  KvObject& operator=(const KvObject&) = default;
};

}  // namespace Kestova
