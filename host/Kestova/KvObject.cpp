#include "host/Kestova/KvObject.h"

#include <boost/core/demangle.hpp>
#include <typeinfo>

namespace Kestova {

KvObject::~KvObject() = default;

std::string KvObject::description() const {
  return boost::core::demangle(typeid(*this).name());
}

}  // namespace Kestova
