// Loads the module, unloads it many times, and ends well.
#include <windows.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  for (int round = 0; round < 50; ++round) {
    const HMODULE module = LoadLibraryA(argv[1]);
    if (module == nullptr) {
      std::fprintf(stderr, "not loaded: %lu\n", GetLastError());
      return 1;
    }
    if (GetProcAddress(module, "_ZTV15VOXAStatsLoader") == nullptr) return 1;
    FreeLibrary(module);
    if (GetModuleHandleA("KestovaVOXASupport.dll") != nullptr) return 1;
  }
  return 0;
}
