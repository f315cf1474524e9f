// A file in the system's folder for temporary files, for code that only takes names.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace fuzz {

/// A name that no other file has, as UTF-8. The destructor removes the file.
class TempFile {
 public:
  explicit TempFile(const std::string& extension = {})
      : m_path(std::filesystem::temp_directory_path() /
               ("kestova-fuzz-" + std::to_string(std::random_device()()) + extension)) {}
  /// The name of `other` with another extension.
  TempFile(const TempFile& other, const std::string& extension)
      : m_path(std::filesystem::path(other.m_path).replace_extension(extension)) {}
  ~TempFile() { remove(); }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  std::string name() const { return m_path.u8string(); }
  bool exists() const { return std::filesystem::exists(m_path); }

  void remove() const {
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
  }

  void write(const std::string& bytes) const {
    std::ofstream(m_path, std::ios::binary | std::ios::trunc) << bytes;
  }

  std::string read() const {
    std::ifstream file(m_path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  const std::filesystem::path m_path;
};

}  // namespace fuzz
