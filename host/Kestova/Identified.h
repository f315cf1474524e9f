// An object whose name can be changed and observed.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

template <class T>
class Attribute;

class KESTOVA_API Identified {
 public:
  virtual ~Identified();

  /// Returns the attribute that holds the name. The object shares it.
  virtual boost::shared_ptr<Attribute<std::string>> identifier() = 0;
  virtual boost::shared_ptr<const Attribute<std::string>> identifier() const = 0;
};

}  // namespace Kestova
