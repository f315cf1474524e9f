#include <windows.h>

#include <filesystem>

#include "tests/support/TempFolder.h"
#include "tests/tools/Voxa.h"

namespace testing_support {

namespace {

// A file that a child process writes to.
class Sink {
 public:
  explicit Sink(const std::string& name) {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    m_handle = CreateFileW(std::filesystem::u8path(name).c_str(), GENERIC_WRITE, 0, &inherited,
                           CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  }
  ~Sink() { CloseHandle(m_handle); }
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  HANDLE handle() const { return m_handle; }

 private:
  HANDLE m_handle;
};

int runAndWait(const std::string& command, const Sink& out, const Sink& error) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = out.handle();
  startup.hStdError = error.handle();
  PROCESS_INFORMATION process{};
  std::wstring line = std::filesystem::u8path(command).native();
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                      &process)) {
    return -1;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(status);
}

}  // namespace

Result voxa(const std::vector<std::string>& arguments) {
  const TempFolder folder;
  std::string command = "\"" KESTOVA_VOXA "\"";
  for (const std::string& argument : arguments) command += " \"" + argument + "\"";
  Result result;
  {
    const Sink out(folder.name("out"));
    const Sink error(folder.name("error"));
    result.status = runAndWait(command, out, error);
  }
  result.out = bytesOfFile(folder.name("out"));
  result.error = bytesOfFile(folder.name("error"));
  return result;
}

}  // namespace testing_support
