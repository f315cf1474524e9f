// Memory that runs out on purpose: operator new of the whole program, with a fuse.
#pragma once

#include <cstddef>

namespace faults {

/// How many allocations are alive.
std::ptrdiff_t liveAllocations();

/// While it lives, the allocation number `count` from now on throws std::bad_alloc, and no other.
class Fuse {
 public:
  explicit Fuse(std::ptrdiff_t count);
  ~Fuse();
  Fuse(const Fuse&) = delete;
  Fuse& operator=(const Fuse&) = delete;

  bool isBlown() const;
};

}  // namespace faults
