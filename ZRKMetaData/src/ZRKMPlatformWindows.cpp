#include <windows.h>

#include <cstdio>
#include <filesystem>

#include "ZRKMetaData/src/ZRKMPlatform.h"

namespace ZRKMetaData {

namespace {

// Invalid UTF-8 becomes U+FFFD. Such a name matches no file.
std::wstring utf16Name(const std::string& name) {
  const int size = static_cast<int>(name.size());
  std::wstring wide(name.size(), L'\0');  // UTF-16 never has more units than UTF-8 has bytes
  const int units = MultiByteToWideChar(CP_UTF8, 0, name.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(units));
  return wide;
}

}  // namespace

void openForReading(std::ifstream& file, const std::string& name) {
  const std::filesystem::path path(utf16Name(name));
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return;
  file.open(path, std::ios::in | std::ios::binary);
}

void writeAssertionReport(const char* expression, const char* unit, int line) {
  std::fprintf(stderr, "%s:%d: assertion failed: %s\n", unit, line, expression);
}

}  // namespace ZRKMetaData
