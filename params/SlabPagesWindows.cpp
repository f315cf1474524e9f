#include <new>

#include "params/SlabPages.h"

namespace Kestova {

// Small pages: huge ones need a privilege there that few users have.
void* allocateSlabPages() {
  return ::operator new(kSlabPagesSize);
}

void freeSlabPages(void* block) noexcept {
  ::operator delete(block);
}

}  // namespace Kestova
