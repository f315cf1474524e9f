#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tools/files/Target.h"

namespace files {

namespace {

[[noreturn]] void fail(DWORD error) {
  throw std::system_error(static_cast<int>(error), std::system_category());
}

class Handle {
 public:
  explicit Handle(HANDLE handle) : m_handle(handle) {}
  ~Handle() { close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return m_handle; }

  void close() {
    if (isOpen()) CloseHandle(m_handle);
    m_handle = INVALID_HANDLE_VALUE;
  }

  void write(std::string_view bytes) const {
    constexpr std::size_t kMaxWriteBytes = 1U << 24U;
    while (!bytes.empty()) {
      DWORD written = 0;
      const auto count = static_cast<DWORD>(std::min(bytes.size(), kMaxWriteBytes));
      if (WriteFile(m_handle, bytes.data(), count, &written, nullptr) == 0) fail(GetLastError());
      bytes.remove_prefix(written);
    }
  }

 private:
  HANDLE m_handle;
};

class Device final : public Target {
 public:
  explicit Device(const std::wstring& name)
      : m_file(CreateFileW(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, 0, nullptr)) {
    if (!m_file.isOpen()) fail(GetLastError());
  }

  void write(std::string_view bytes) override { m_file.write(bytes); }
  void commit() override { m_file.close(); }

 private:
  Handle m_file;
};

// A name beside `name` that no other output file of the system uses.
std::wstring temporaryName(const std::wstring& name) {
  static unsigned count = 0;
  const auto folder = name.find_last_of(L"\\/:");
  return name.substr(0, folder == std::wstring::npos ? 0 : folder + 1) + L".voxa-" +
         std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
}

class Regular final : public Target {
 public:
  Regular(std::wstring name, Existing existing)
      : m_name(std::move(name)),
        m_temporary(temporaryName(m_name)),
        m_existing(existing),
        m_file(CreateFileW(m_temporary.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_DELETE, nullptr,
                           CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    if (!m_file.isOpen()) fail(GetLastError());
    removeAtClose(true);
  }

  void write(std::string_view bytes) override { m_file.write(bytes); }

  void commit() override {
    removeAtClose(false);
    m_file.close();
    const DWORD how = m_existing == Existing::Replace ? MOVEFILE_REPLACE_EXISTING : 0;
    if (MoveFileExW(m_temporary.c_str(), m_name.c_str(), how) != 0) return;
    const DWORD error = GetLastError();
    DeleteFileW(m_temporary.c_str());
    if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) {
      throw std::runtime_error(kFileExists);
    }
    fail(error);
  }

 private:
  // Windows closes the handle whenever the process ends, and then removes the file.
  void removeAtClose(bool isRemoved) const {
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = static_cast<BOOLEAN>(isRemoved);
    if (SetFileInformationByHandle(m_file.get(), FileDispositionInfo, &disposition,
                                   sizeof disposition) == 0) {
      fail(GetLastError());
    }
  }

  const std::wstring m_name;
  const std::wstring m_temporary;
  const Existing m_existing;
  Handle m_file;
};

// Resolves symbolic links.
std::wstring finalName(const Handle& file, const std::wstring& name) {
  constexpr DWORD kMaxNameLength = 32768;  // the limit of Windows, in characters
  std::wstring target(kMaxNameLength, L'\0');
  const DWORD size =
      GetFinalPathNameByHandleW(file.get(), target.data(), kMaxNameLength, FILE_NAME_NORMALIZED);
  if (size == 0 || size >= kMaxNameLength) return name;
  target.resize(size);
  return target;
}

}  // namespace

std::unique_ptr<Target> Target::open(const std::string& utf8Name, Existing existing) {
  const std::wstring name = std::filesystem::u8path(utf8Name).native();
  if (name.rfind(L"\\\\.\\", 0) == 0) return std::make_unique<Device>(name);
  const Handle file(CreateFileW(name.c_str(), 0,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.isOpen()) return std::make_unique<Regular>(name, existing);
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return std::make_unique<Device>(name);
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileInformationByHandle(file.get(), &information) == 0) fail(GetLastError());
  if ((information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    throw std::runtime_error(kIsFolder);
  }
  if (existing == Existing::Refuse) throw std::runtime_error(kFileExists);
  return std::make_unique<Regular>(finalName(file, name), existing);
}

}  // namespace files
