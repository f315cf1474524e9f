#include <new>

#include "params/LargeBlock.h"

namespace Kestova {

// With small pages: huge ones need a privilege there that few users have.
void* allocateLargeBlock(std::size_t size) {
  return ::operator new(size);
}

void freeLargeBlock(void* block) noexcept {
  ::operator delete(block);
}

}  // namespace Kestova
