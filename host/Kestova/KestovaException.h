// A failure that the host must see.
#pragma once

#include <exception>
#include <string>

#include "host/Kestova/Export.h"

namespace Kestova {

class KESTOVA_API KestovaException : public std::exception {
 public:
  explicit KestovaException(const std::string& message);
  ~KestovaException() override;

  /// Returns the message. The pointer is valid as long as the exception.
  const char* what() const noexcept override { return m_message.c_str(); }

 private:
  std::string m_message;
};

}  // namespace Kestova
