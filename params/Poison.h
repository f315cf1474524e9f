// Tells the address sanitizer which memory of a slab is in use. Without the sanitizer does nothing.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define KESTOVA_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KESTOVA_ADDRESS_SANITIZER
#endif
#endif

#if defined(KESTOVA_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

namespace Kestova {

#if defined(KESTOVA_ADDRESS_SANITIZER)
inline void poison(const void* memory, std::size_t size) {
  ASAN_POISON_MEMORY_REGION(memory, size);
}
inline void unpoison(const void* memory, std::size_t size) {
  ASAN_UNPOISON_MEMORY_REGION(memory, size);
}
#else
inline void poison(const void* /*memory*/, std::size_t /*size*/) {}
inline void unpoison(const void* /*memory*/, std::size_t /*size*/) {}
#endif

}  // namespace Kestova
