// On Windows, Boost.Filesystem applies the rules of the platform.
#include <boost/filesystem/path.hpp>
#include <string>

#include "names/Utf16.h"
#include "names/WindowsPath.h"

namespace names {

WindowsPath::WindowsPath(const std::string& name) {
  const boost::filesystem::path path(toUtf16(name));
  m_filename = toUtf8(path.filename().native());
  m_parentPath = toUtf8(path.parent_path().native());
}

}  // namespace names
