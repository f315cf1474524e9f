#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "tools/voxa/Terminal.h"

namespace voxa {

namespace {

int descriptorOf(StandardStream stream) {
  return stream == StandardStream::Out ? STDOUT_FILENO : STDERR_FILENO;
}

}  // namespace

Connection connectionOf(StandardStream stream) {
  const int descriptor = descriptorOf(stream);
  if (isatty(descriptor) == 1) return Connection::Terminal;
  struct stat status {};
  const bool isFile = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  return isFile ? Connection::File : Connection::Other;
}

bool knowsColors(StandardStream stream) {
  const char* const terminal = std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe)
  return connectionOf(stream) == Connection::Terminal && terminal != nullptr &&
         std::string_view(terminal) != "dumb";
}

}  // namespace voxa
