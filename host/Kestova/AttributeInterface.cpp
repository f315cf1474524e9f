#include "host/Kestova/AttributeInterface.h"

namespace Kestova {

AttributeInterface::~AttributeInterface() = default;

void AttributeInterface::setupSharedClone(const boost::shared_ptr<AttributeInterface>&) const {}

}  // namespace Kestova
