// Memory for objects of one size, such as the keyframes of a parameter. A slab has space for as
// many objects as all slabs before it, up to 32 MiB, so that few objects take little memory and a
// million objects take few pages of the system.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>

namespace Kestova {

/// The first object sets the size; objects of another size come from operator new. Threads may
/// allocate and deallocate at the same time. The space of a freed object is used for the next one;
/// all slabs are freed when no object is left, and none before (docs/decisions/slabs.md).
class Slabs {
 public:
  /// Ends the owner's use of the slabs. They are destroyed once no object is left, which may be
  /// later, because a keyframe may outlive its parameter.
  struct Release {
    void operator()(Slabs* slabs) const noexcept { slabs->release(); }
  };
  using Pointer = std::unique_ptr<Slabs, Release>;

  static Pointer create() { return Pointer(new Slabs); }

  Slabs(const Slabs&) = delete;
  Slabs& operator=(const Slabs&) = delete;

  /// Returns space for one object of a type of `size` bytes, aligned for it unless it has extended
  /// alignment. Throws std::bad_alloc.
  void* allocate(std::size_t size);

  void deallocate(void* object, std::size_t size) noexcept;

 private:
  // The start of a slab. Its objects follow.
  struct alignas(std::max_align_t) Slab {
    Slab* next;
    std::size_t size;  // in bytes, this header included
  };
  struct Free {
    Free* next;
  };

  Slabs() = default;
  ~Slabs() = default;

  void release() noexcept;
  void addSlab();
  void freeSlabs() noexcept;

  std::mutex m_mutex;       // guards what follows
  std::size_t m_space = 0;  // of an object, in bytes; 0 before the first one
  Slab* m_slabs = nullptr;
  std::size_t m_slabBytes = 0;  // of the space for objects, in all slabs
  char* m_unused = nullptr;     // the space of the newest slab that was never used
  char* m_end = nullptr;
  Free* m_freed = nullptr;
  std::size_t m_objectCount = 0;  // of any size
  bool m_isReleased = false;
};

}  // namespace Kestova
