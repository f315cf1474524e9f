#include "tests/support/Hex.h"

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>

#include "tests/support/TempFolder.h"

namespace testing_support {

std::string dataFile(const std::string& name) {
  return bytesOfFile(std::string(KESTOVA_TEST_DATA) + "/" + name);
}

std::string bytesFromHex(const std::string& text) {
  std::istringstream lines(text);
  std::string bytes;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line.substr(0, line.find('#')));
    for (std::string word; words >> word;) {
      const bool isByte = word.size() == 2 && std::isxdigit(word[0]) && std::isxdigit(word[1]);
      EXPECT_TRUE(isByte) << word;
      if (isByte) bytes += static_cast<char>(std::stoi(word, nullptr, 16));
    }
  }
  return bytes;
}

std::string hexDocument(const std::string& name) {
  std::string bytes = bytesFromHex(dataFile(name));
  EXPECT_FALSE(bytes.empty()) << name;
  return bytes;
}

}  // namespace testing_support
