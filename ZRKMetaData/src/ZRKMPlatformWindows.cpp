#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <ios>
#include <system_error>

#include "ZRKMetaData/src/ZRKMPlatform.h"

namespace ZRKMetaData {

namespace {

// Empty for invalid UTF-8. Without the flag U+FFFD would replace it, and a file whose name has that
// character would be opened.
std::wstring utf16Name(const std::string& name) {
  const int size = static_cast<int>(name.size());
  std::wstring wide(name.size(), L'\0');  // UTF-16 never has more units than UTF-8 has bytes
  const int units =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(units));
  return wide;
}

class WindowsFile final : public OpenFile {
 public:
  explicit WindowsFile(HANDLE handle) : m_handle(handle) {}
  ~WindowsFile() override { CloseHandle(m_handle); }

  std::size_t readAt(int64 position, char* destination, std::size_t count) const override {
    OVERLAPPED at{};
    at.Offset = static_cast<DWORD>(position);
    at.OffsetHigh = static_cast<DWORD>(static_cast<uint64>(position) >> 32U);
    constexpr std::size_t kMaxCount = 1U << 30U;
    DWORD got = 0;
    if (!ReadFile(m_handle, destination, static_cast<DWORD>(std::min(count, kMaxCount)), &got,
                  &at)) {
      const DWORD error = GetLastError();
      if (error == ERROR_HANDLE_EOF) return 0;
      throw std::ios_base::failure(
          "ReadFile", std::error_code(static_cast<int>(error), std::system_category()));
    }
    return got;
  }

  int64 size() const override {
    LARGE_INTEGER size{};
    return GetFileSizeEx(m_handle, &size) ? size.QuadPart : -1;
  }

 private:
  const HANDLE m_handle;
};

}  // namespace

std::unique_ptr<OpenFile> OpenFile::open(const std::string& name) {
  const std::filesystem::path path(utf16Name(name));
  const HANDLE handle = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  // A folder cannot be opened in this way.
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  auto file = std::make_unique<WindowsFile>(handle);
  if (GetFileType(handle) != FILE_TYPE_DISK) return nullptr;
  return file;
}

void writeAssertionReport(const char* expression, const char* unit, int line) {
  std::fprintf(stderr, "%s:%d: assertion failed: %s\n", unit, line, expression);
}

}  // namespace ZRKMetaData
