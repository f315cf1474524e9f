// A temporary folder, which its destructor deletes.
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

  /// The UTF-8 path of `leaf` in the folder.
  std::string name(const std::string& leaf) const;

  /// Writes a file and returns its UTF-8 path.
  std::string file(const std::string& leaf, const std::string& bytes) const;

 private:
  std::filesystem::path m_path;
};

/// The bytes of a file. Fails the test if the file cannot be opened.
std::string bytesOfFile(const std::string& name);

}  // namespace testing_support
