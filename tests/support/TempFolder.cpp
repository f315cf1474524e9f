#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>

namespace testing_support {

namespace fs = std::filesystem;

TempFolder::TempFolder()
    : m_path(fs::temp_directory_path() / ("kestova-" + std::to_string(std::random_device()()))) {
  fs::create_directories(m_path);
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
}

std::string TempFolder::name(const std::string& leaf) const {
  return (m_path / fs::u8path(leaf)).generic_u8string();
}

std::string TempFolder::file(const std::string& leaf, const std::string& bytes) const {
  std::string path = name(leaf);
  std::ofstream(fs::u8path(path), std::ios::binary) << bytes;
  return path;
}

std::string bytesOfFile(const std::string& name) {
  std::ifstream file(fs::u8path(name), std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace testing_support
