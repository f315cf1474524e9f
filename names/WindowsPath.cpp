#include "names/WindowsPath.h"

#include <string>

namespace names {

std::string WindowsPath::extension() const {
  if (m_filename == "." || m_filename == "..") return {};
  const auto dot = m_filename.rfind('.');
  return dot == std::string::npos ? std::string() : m_filename.substr(dot);
}

}  // namespace names
