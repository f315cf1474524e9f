#include <sys/mman.h>

#include <cstdint>
#include <new>

#include "params/SlabPages.h"

namespace Kestova {

void* allocateSlabPages() {
  // Twice the size contains an aligned block; what surrounds it is given back.
  void* const mapped =
      mmap(nullptr, 2 * kSlabPagesSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  const std::size_t before =
      (kSlabPagesSize - reinterpret_cast<std::uintptr_t>(mapped) % kSlabPagesSize) % kSlabPagesSize;
  char* const block = static_cast<char*>(mapped) + before;
  if (before != 0) munmap(mapped, before);
  munmap(block + kSlabPagesSize, kSlabPagesSize - before);
#if defined(MADV_HUGEPAGE)
  madvise(block, kSlabPagesSize, MADV_HUGEPAGE);  // if it fails, the block has small pages
#endif
  return block;
}

void freeSlabPages(void* block) noexcept {
  munmap(block, kSlabPagesSize);
}

}  // namespace Kestova
