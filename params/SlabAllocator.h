// Lets a container or a shared pointer take its memory from slabs.
#pragma once

#include <cstddef>
#include <new>
#include <type_traits>

#include "params/Slabs.h"

namespace Kestova {

/// Takes arrays of `kCount` objects from slabs and others from operator new. If it has no slabs,
/// everything comes from operator new. Copies share the slabs, which outlive what was allocated.
template <class T, std::size_t kCount>
class SlabAllocator {
 public:
  using value_type = T;
  using propagate_on_container_move_assignment = std::true_type;
  using propagate_on_container_swap = std::true_type;
  template <class Other>
  struct rebind {
    using other = SlabAllocator<Other, kCount>;
  };

  SlabAllocator() = default;
  explicit SlabAllocator(Slabs* slabs) : m_slabs(slabs) {}
  template <class Other>
  SlabAllocator(const SlabAllocator<Other, kCount>& other)  // NOLINT(google-explicit-constructor)
      : m_slabs(other.slabs()) {}

  T* allocate(std::size_t count) {
    static_assert(alignof(T) <= alignof(std::max_align_t));
    if (isFromSlabs(count)) return static_cast<T*>(m_slabs->allocate(count * sizeof(T)));
    return static_cast<T*>(::operator new(count * sizeof(T)));
  }
  void deallocate(T* objects, std::size_t count) noexcept {
    if (isFromSlabs(count)) return m_slabs->deallocate(objects, count * sizeof(T));
    ::operator delete(objects);
  }

  Slabs* slabs() const { return m_slabs; }

 private:
  bool isFromSlabs(std::size_t count) const { return count == kCount && m_slabs != nullptr; }

  Slabs* m_slabs = nullptr;
};

template <class T, class Other, std::size_t kCount>
bool operator==(const SlabAllocator<T, kCount>& left, const SlabAllocator<Other, kCount>& right) {
  return left.slabs() == right.slabs();
}
template <class T, class Other, std::size_t kCount>
bool operator!=(const SlabAllocator<T, kCount>& left, const SlabAllocator<Other, kCount>& right) {
  return !(left == right);
}

}  // namespace Kestova
