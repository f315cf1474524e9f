#include "tools/voxa/Extension.h"

#include <algorithm>
#include <filesystem>

namespace voxa {

std::string extensionOf(const std::string& file) {
  std::string extension = std::filesystem::u8path(file).extension().u8string();
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension;
}

}  // namespace voxa
