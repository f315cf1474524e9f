// What the host writes as an XML element.
#pragma once

#include <ostream>
#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

/// `text` for the content of an element or attribute of XML 1.0: markup and line ends as
/// references, characters that XML forbids left out, what is no UTF-8 as U+FFFD.
KESTOVA_API std::string xml_representation(const std::string& text);

/// What elements may refer to. Shared by all XML-able parts of one object.
class KESTOVA_API XMLIdentified {
 public:
  virtual ~XMLIdentified();
};

/// An object that writes itself as one element.
class KESTOVA_API XMLable : public virtual XMLIdentified {
 public:
  ~XMLable() override;
};

}  // namespace Kestova
