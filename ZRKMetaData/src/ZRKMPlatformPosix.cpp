#include <sys/stat.h>

#include <cstdio>

#include "ZRKMetaData/src/ZRKMPlatform.h"

namespace ZRKMetaData {

void openForReading(std::ifstream& file, const std::string& name) {
  // File names of the system are UTF-8. Opening a pipe would block, and a directory would open but
  // fail at the first read.
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) return;
  if (S_ISREG(status.st_mode) || S_ISBLK(status.st_mode)) {
    file.open(name, std::ios::in | std::ios::binary);
  }
}

void writeAssertionReport(const char* expression, const char* unit, int line) {
  std::fprintf(stderr, "%s:%d: assertion failed: %s\n", unit, line, expression);
}

}  // namespace ZRKMetaData
