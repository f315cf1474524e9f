// Replaces operator new of the program, so that tests can make an allocation fail.
#pragma once

#include <cstddef>

namespace faults {

/// The number of live allocations.
std::ptrdiff_t liveAllocations();

/// During its lifetime, allocation number `count` (from 0) throws std::bad_alloc, and no other.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::ptrdiff_t count);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  bool hasFailed() const;
};

}  // namespace faults
