#include <sys/mman.h>

#include <new>

#include "params/LargeBlock.h"

namespace Kestova {

void* allocateLargeBlock(std::size_t size) {
  void* const block = ::operator new (size, std::align_val_t{kHugePageSize});
#if defined(MADV_HUGEPAGE)
  madvise(block, size, MADV_HUGEPAGE);  // if it fails, the block has small pages
#endif
  return block;
}

void freeLargeBlock(void* block) noexcept {
  ::operator delete (block, std::align_val_t{kHugePageSize});
}

}  // namespace Kestova
