#include <windows.h>

#include "tools/voxa/Terminal.h"

namespace voxa {

namespace {

HANDLE handleOf(StandardStream stream) {
  return GetStdHandle(stream == StandardStream::Out ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

}  // namespace

Connection connectionOf(StandardStream stream) {
  DWORD mode = 0;
  if (GetConsoleMode(handleOf(stream), &mode) != 0) return Connection::Terminal;
  return GetFileType(handleOf(stream)) == FILE_TYPE_DISK ? Connection::File : Connection::Other;
}

bool knowsColors(StandardStream stream) {
  constexpr DWORD kProcessesSequences = 0x0004;  // ENABLE_VIRTUAL_TERMINAL_PROCESSING
  DWORD mode = 0;
  return GetConsoleMode(handleOf(stream), &mode) != 0 &&
         SetConsoleMode(handleOf(stream), mode | kProcessesSequences) != 0;
}

}  // namespace voxa
