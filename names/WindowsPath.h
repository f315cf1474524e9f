// The components of a path name under Windows rules, on every platform: hosts on Windows name the
// recordings, and a name must mean the same everywhere.
//
// "/" and "\" both separate components and stay as written. A drive ("C:") or share ("\\server\")
// is split off. A trailing separator makes the last component ".". Boost.Filesystem implements the
// rules on Windows, WindowsPathRules.cpp on other platforms. tests/data/windows-paths.json tests
// both.
#pragma once

#include <cstddef>
#include <string>

namespace names {

/// A name, split into its components. A value type.
class WindowsPath {
 public:
  /// Throws boost::system::system_error "boost::filesystem::path codecvt to wstring: ..." for a
  /// name that is not UTF-8.
  explicit WindowsPath(const std::string& name);

  /// The last component; "." when the name ends with a separator.
  const std::string& filename() const { return m_filename; }

  /// The part before the last component, without the separator between them.
  const std::string& parentPath() const { return m_parentPath; }

  /// The last component from its last dot on. Empty when it has no dot, and for "." and "..".
  std::string extension() const;

 private:
  std::string m_filename;
  std::string m_parentPath;
};

}  // namespace names
