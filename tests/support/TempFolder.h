// A folder of a test's own, gone when the test ends.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace testing_support {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  /// The UTF-8 name of `leaf` in the folder.
  std::string name(const std::string& leaf) const;

  /// Writes a file and returns its UTF-8 name.
  std::string file(const std::string& leaf, const std::string& bytes) const;

 private:
  std::filesystem::path m_path;
};

/// All bytes of a file; fails the test when there is none.
std::string bytesOfFile(const std::string& name);

}  // namespace testing_support
