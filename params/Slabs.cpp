#include "params/Slabs.h"

#include <algorithm>
#include <new>

#include "params/LargeBlock.h"
#include "params/Poison.h"

namespace Kestova {

namespace {

constexpr std::size_t kMaxSlabSize = 16 * kHugePageSize;

constexpr std::size_t roundedUp(std::size_t size, std::size_t unit) {
  return (size + unit - 1) / unit * unit;
}

// The size of a type is a multiple of its alignment, so objects that follow each other are aligned.
// Their space must also take a link to the next free one.
std::size_t spaceOf(std::size_t size) {
  return roundedUp(size, sizeof(void*));
}

}  // namespace

void* Slabs::allocate(std::size_t size) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_space == 0) m_space = spaceOf(size);
  void* object = m_freed;
  if (m_space != spaceOf(size)) {
    object = ::operator new(size);
  } else if (object != nullptr) {
    unpoison(object, m_space);
    m_freed = m_freed->next;
  } else {
    if (m_unused == m_end) addSlab();
    object = m_unused;
    unpoison(object, m_space);
    m_unused += m_space;
  }
  ++m_objectCount;
  return object;
}

void Slabs::deallocate(void* object, std::size_t size) noexcept {
  std::unique_lock<std::mutex> lock(m_mutex);
  if (m_space != spaceOf(size)) {
    ::operator delete(object);
  } else {
    m_freed = new (object) Free{m_freed};
    poison(object, m_space);
  }
  if (--m_objectCount != 0) return;
  freeSlabs();
  if (!m_isReleased) return;
  lock.unlock();
  delete this;
}

void Slabs::release() noexcept {
  std::unique_lock<std::mutex> lock(m_mutex);
  m_isReleased = true;
  if (m_objectCount != 0) return;
  lock.unlock();
  delete this;
}

void Slabs::addSlab() {
  const std::size_t asBefore = std::min(m_slabBytes, kMaxSlabSize - sizeof(Slab));
  std::size_t size = sizeof(Slab) + std::max(m_space, asBefore);
  if (size >= kHugePageSize) size = roundedUp(size, kHugePageSize);
  void* const memory = size < kHugePageSize ? ::operator new(size) : allocateLargeBlock(size);
  m_slabs = new (memory) Slab{m_slabs, size};
  const std::size_t bytes = (size - sizeof(Slab)) / m_space * m_space;
  m_unused = reinterpret_cast<char*>(m_slabs + 1);
  m_end = m_unused + bytes;
  m_slabBytes += bytes;
  poison(m_unused, bytes);
}

void Slabs::freeSlabs() noexcept {
  while (m_slabs != nullptr) {
    Slab* const slab = m_slabs;
    m_slabs = slab->next;
    unpoison(slab, slab->size);
    if (slab->size < kHugePageSize) {
      ::operator delete(slab);
    } else {
      freeLargeBlock(slab);
    }
  }
  m_slabBytes = 0;
  m_unused = nullptr;
  m_end = nullptr;
  m_freed = nullptr;
}

}  // namespace Kestova
