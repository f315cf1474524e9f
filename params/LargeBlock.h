// Large blocks of memory, for which the system is asked for huge pages.
#pragma once

#include <cstddef>

namespace Kestova {

/// The size of a huge page of x86-64 in bytes.
constexpr std::size_t kHugePageSize = std::size_t{2} << 20U;

/// Allocates a multiple of `kHugePageSize` bytes as operator new does, so that the allocator of the
/// process decides what it keeps when the block is freed. Throws std::bad_alloc. The caller owns
/// the block.
void* allocateLargeBlock(std::size_t size);

void freeLargeBlock(void* block) noexcept;

}  // namespace Kestova
