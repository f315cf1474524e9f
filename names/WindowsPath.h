// The parts of a path name under Windows rules, whatever the platform: recordings are named by
// hosts on Windows, and a name means the same everywhere.
//
// "/" and "\" both separate and stay as they were written; a drive ("C:") or share ("\\server\")
// is split off; a trailing separator makes the last component ".". On Windows Boost.Filesystem
// answers, elsewhere our own rules do (WindowsPathRules.cpp); tests/data/windows-paths.json holds
// both to the same answers.
#pragma once

#include <cstddef>
#include <string>

namespace names {

/// A name taken apart. A plain value.
class WindowsPath {
 public:
  /// Throws boost::system::system_error "boost::filesystem::path codecvt to wstring: ..." for a
  /// name that is not UTF-8.
  explicit WindowsPath(const std::string& name);

  /// The last component, "." behind a trailing separator.
  const std::string& filename() const { return m_filename; }

  /// What stands before the last component, without the separator in front of it.
  const std::string& parentPath() const { return m_parentPath; }

  /// The last component from its last dot on; empty for none, for "." and for "..".
  std::string extension() const;

 private:
  std::string m_filename;
  std::string m_parentPath;
};

}  // namespace names
