#include "ZRKMetaData/src/ZRKMAssert.h"

#include <atomic>

#include "ZRKMetaData/src/ZRKMPlatform.h"

namespace ZRKMetaData {

namespace {

std::atomic<AssertionHandler> g_handler{&writeAssertionReport};

}  // namespace

AssertionHandler setAssertionHandler(AssertionHandler handler) {
  return g_handler.exchange(handler != nullptr ? handler : &writeAssertionReport);
}

void reportAssertion(const char* expression, const char* unit, int line) {
  g_handler.load()(expression, unit, line);
}

}  // namespace ZRKMetaData
