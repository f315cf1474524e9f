// Dispatches on the class of a parameter: one operation per class. `accept` of the
// parameter calls it on the same thread, with a pointer that is never null.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include "host/Kestova/Export.h"
#include "host/Kestova/ValueTypes.h"

namespace Kestova {

template <class T>
class LeftParameter;

#define KESTOVA_VISIT(T) \
  virtual void visit(const boost::shared_ptr<LeftParameter<T>>& parameter) = 0;
#define KESTOVA_VISIT_CONST(T) \
  virtual void visit(const boost::shared_ptr<const LeftParameter<T>>& parameter) = 0;

/// For parameters that the visitor may change.
class KESTOVA_API ParameterVisitor {
 public:
  virtual ~ParameterVisitor();
  KESTOVA_FOR_EACH_VALUE_TYPE(KESTOVA_VISIT)
};

/// For parameters that the visitor may only read.
class KESTOVA_API ConstParameterVisitor {
 public:
  virtual ~ConstParameterVisitor();
  KESTOVA_FOR_EACH_VALUE_TYPE(KESTOVA_VISIT_CONST)
};

#undef KESTOVA_VISIT
#undef KESTOVA_VISIT_CONST

}  // namespace Kestova
