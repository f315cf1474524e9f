#include <fcntl.h>
#include <io.h>
#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <cstdio>
#include <filesystem>
#include <vector>

#include "tools/voxa/Program.h"

namespace {

// The arguments as typed. The narrow ones of main are in the system's code page.
std::vector<std::string> utf8Arguments() {
  std::vector<std::string> arguments;
  int count = 0;
  if (LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &count)) {
    for (int index = 1; index < count; ++index) {
      arguments.push_back(std::filesystem::path(wide[index]).u8string());
    }
    LocalFree(static_cast<void*>(wide));
  }
  return arguments;
}

}  // namespace

int main() {
  // The output has the same bytes on every platform: no line end is translated.
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  return voxa::run(utf8Arguments());
}
