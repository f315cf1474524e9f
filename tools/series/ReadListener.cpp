#include "tools/series/ReadListener.h"

#include <utility>

namespace series {

namespace {

thread_local ReadListener* g_listener = nullptr;

}  // namespace

ReadListener* setReadListener(ReadListener* listener) {
  return std::exchange(g_listener, listener);
}

void reportBytesRead(ZRKMetaData::int64 byteCount) {
  if (g_listener != nullptr) g_listener->onBytesRead(byteCount);
}

}  // namespace series
