// A list of callees, called in the order in which they were added. The list may change during a
// round of calls.
#pragma once

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace calls {

/// Not synchronised. `T` is compared with ==.
template <class T>
class CallList {
 public:
  bool empty() const { return m_entries.empty(); }

  bool contains(const T& callee) const {
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [&callee](const Entry& entry) { return entry.callee == callee; });
  }

  void add(const T& callee) {
    if (m_entries.size() == m_entries.max_size()) throw std::length_error("list<T> too long");
    m_entries.push_back({m_nextSerial, callee});
    ++m_nextSerial;
  }

  /// Removes every occurrence.
  void remove(const T& callee) {
    m_entries.erase(
        std::remove_if(m_entries.begin(), m_entries.end(),
                       [&callee](const Entry& entry) { return entry.callee == callee; }),
        m_entries.end());
  }

  /// One round of calls. A callee that is removed during the round is not called any more; one that
  /// is added during it waits for the next round.
  class Round {
   public:
    explicit Round(const CallList& list) : m_end(list.m_nextSerial) {}

    /// Returns the next callee of the round that is still in the list, or null at the end. A change
    /// of the list invalidates the pointer.
    const T* next(const CallList& list) {
      const auto entry = std::lower_bound(
          list.m_entries.begin(), list.m_entries.end(), m_next,
          [](const Entry& candidate, std::uint64_t serial) { return candidate.serial < serial; });
      if (entry == list.m_entries.end() || entry->serial >= m_end) return nullptr;
      m_next = entry->serial + 1;
      return &entry->callee;
    }

   private:
    std::uint64_t m_next = 0;
    const std::uint64_t m_end;
  };

 private:
  struct Entry {
    std::uint64_t serial;  // ascending and unique
    T callee;
  };

  std::vector<Entry> m_entries;
  std::uint64_t m_nextSerial = 0;
};

}  // namespace calls
