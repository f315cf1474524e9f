#include <fcntl.h>
#include <io.h>
#include <windows.h>
// after windows.h
#include <shellapi.h>

#include <cstdio>
#include <filesystem>

#include "tools/voxa/Program.h"

namespace {

// The narrow arguments of main are in the system's code page; these are what was typed.
std::vector<std::string> utf8Arguments() {
  std::vector<std::string> arguments;
  int count = 0;
  if (LPWSTR* const wide = CommandLineToArgvW(GetCommandLineW(), &count)) {
    for (int place = 1; place < count; ++place) {
      arguments.push_back(std::filesystem::path(wide[place]).u8string());
    }
    LocalFree(static_cast<void*>(wide));
  }
  return arguments;
}

}  // namespace

int main() {
  // The same bytes as everywhere: line ends are ours to choose.
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  return voxa::run(utf8Arguments());
}
