// Large blocks of memory from the system, for which it may use huge pages.
#pragma once

#include <cstddef>

namespace Kestova {

/// The size of a block in bytes: that of a huge page of x86-64.
constexpr std::size_t kSlabPagesSize = std::size_t{2} << 20U;

/// Throws std::bad_alloc. The caller owns the block.
void* allocateSlabPages();

void freeSlabPages(void* block) noexcept;

}  // namespace Kestova
