// Loads and unloads the module and a copy of it in both orders, many times: unload MODULE COPY,
// where COPY is the path that the copy is written to, in the folder of the module, so that it finds
// the same libraries.
#include <windows.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  if (CopyFileA(argv[1], argv[2], FALSE) == 0) return 1;
  for (int round = 0; round < 50; ++round) {
    HMODULE modules[2] = {};
    for (int which = 0; which < 2; ++which) {
      modules[which] = LoadLibraryA(argv[1 + which]);
      if (modules[which] == nullptr) {
        std::fprintf(stderr, "not loaded: %lu\n", GetLastError());
        return 1;
      }
      if (GetProcAddress(modules[which], "_ZTV15VOXAStatsLoader") == nullptr) return 1;
    }
    if (modules[0] == modules[1]) return 1;
    const int first = round % 2;
    FreeLibrary(modules[first]);
    FreeLibrary(modules[1 - first]);
    for (const char* const file : {argv[1], argv[2]}) {
      if (GetModuleHandleA(file) != nullptr) return 1;
    }
  }
  return 0;
}
