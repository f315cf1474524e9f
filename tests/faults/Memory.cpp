#include "tests/faults/Memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::ptrdiff_t> g_live{0};
std::atomic<std::ptrdiff_t> g_untilFailure{-1};  // negative: none, or it has failed

}  // namespace

void* operator new(std::size_t size) {
  if (g_untilFailure >= 0 && g_untilFailure-- == 0) throw std::bad_alloc();
  void* const memory = std::malloc(size != 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  ++g_live;
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) --g_live;
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace faults {

std::ptrdiff_t liveAllocations() {
  return g_live;
}

FailingAllocation::FailingAllocation(std::ptrdiff_t count) {
  g_untilFailure = count;
}
FailingAllocation::~FailingAllocation() {
  g_untilFailure = -1;
}
bool FailingAllocation::hasFailed() const {
  return g_untilFailure < 0;
}

}  // namespace faults
