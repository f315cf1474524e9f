// JSON text as the host writes it.
#pragma once

#include <ostream>
#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

/// Where JSON goes. The stream must outlive it.
class JSONOptions {
 public:
  explicit JSONOptions(std::ostream& out) : m_out(out) {}

  std::ostream& outStream() const { return m_out; }

 private:
  std::ostream& m_out;
};

/// `text` as a JSON string, valid whatever its bytes: what is no UTF-8 becomes U+FFFD.
KESTOVA_API std::string json_representation(const std::string& text);

}  // namespace Kestova
