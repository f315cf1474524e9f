// Loads the module, unloads it, and goes on using the library that both share: a locale that the
// module left behind would take the program down at the end.
#include <dlfcn.h>

#include <boost/filesystem/path.hpp>
#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  void* const module = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  const bool isFound = dlsym(module, "_ZTV15VOXAStatsLoader") != nullptr;
  const boost::filesystem::path whileLoaded(std::wstring{L'a', 0x20AC});
  const bool isUtf8 = whileLoaded.string() == "a\xE2\x82\xAC";
  dlclose(module);
  const bool isGone = dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) == nullptr;
  const boost::filesystem::path afterwards(std::wstring(L"plain"));
  return isFound && isUtf8 && isGone && afterwards.string() == "plain" ? 0 : 1;
}
