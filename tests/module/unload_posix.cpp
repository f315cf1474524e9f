// Loads and unloads the module and a copy of it in a process that keeps Boost.Filesystem loaded:
// unload MODULE COPY, where COPY is the path that the copy is written to. Returns 0 if paths
// convert after each step and every row ends with the expected path locale. A locale whose code has
// been unloaded would crash.
#include <dlfcn.h>

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <cstdio>
#include <locale>
#include <map>
#include <string>

namespace {

namespace fs = boost::filesystem;

// The path locale can only be read by replacing it.
std::locale pathLocale() {
  const std::locale present = fs::path::imbue(std::locale::classic());
  fs::path::imbue(present);
  return present;
}

bool convertsUtf8() {
  return fs::path(std::wstring{L'a', 0x20AC, 0xD83D, 0xDE00}).string() ==
         "a\xE2\x82\xAC\xF0\x9F\x98\x80";
}

std::locale hostLocale() {
  return {std::locale::classic(), new std::numpunct<char>};
}

// One character per step: A and B load the module and its copy, a and b unload them, H imbues a
// locale of the host, u expects UTF-8 conversions, h the last locale of the host, p ASCII
// conversions.
bool passes(const std::string& steps, const std::map<char, std::string>& files) {
  std::map<char, void*> modules;
  std::locale host = hostLocale();
  fs::path::imbue(host);
  for (const char step : steps) {
    bool isGood = true;
    if (step == 'A' || step == 'B') {
      modules[step] = dlopen(files.at(step).c_str(), RTLD_NOW | RTLD_LOCAL);
      isGood = modules[step] != nullptr &&
               dlsym(modules[step], "_ZTV15VOXAStatsLoader") != nullptr && convertsUtf8();
    } else if (step == 'a' || step == 'b') {
      const char loaded = step == 'a' ? 'A' : 'B';
      dlclose(modules[loaded]);
      isGood = dlopen(files.at(loaded).c_str(), RTLD_NOW | RTLD_NOLOAD) == nullptr;
    } else if (step == 'H') {
      host = hostLocale();
      fs::path::imbue(host);
    } else {
      isGood = step == 'u' ? convertsUtf8() : step != 'h' || pathLocale() == host;
    }
    if (!isGood || fs::path(std::wstring(L"plain")).string() != "plain") {
      std::fprintf(stderr, "%s: failed at %c\n", steps.c_str(), step);
      return false;
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  fs::copy_file(argv[1], argv[2], fs::copy_option::overwrite_if_exists);
  const std::map<char, std::string> files = {{'A', argv[1]}, {'B', argv[2]}};
  bool isGood = true;
  for (const char* const steps :
       {"Aah", "AaAah", "AHhah", "ABuuabpu", "ABubuah", "ABaAubuap", "ABHhahbh", "ABaHbh"}) {
    isGood = passes(steps, files) && isGood;
  }
  return isGood ? 0 : 1;
}
