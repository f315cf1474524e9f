// Who is to be called, in order of joining. The list may change while a round of calls is under
// way: one that leaves is not called any more, one that joins waits for the next round.
#pragma once

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "host/Kestova/Integers.h"

namespace Kestova {

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

  /// One round of calls over those who are in the list when it begins.
  class Round {
   public:
    explicit Round(const CallList& list) : m_end(list.m_nextSerial) {}

    /// The next callee of the round that is still in the list, or null at the end. The pointer is
    /// good until the list changes.
    const T* next(const CallList& list) {
      const auto entry = std::lower_bound(
          list.m_entries.begin(), list.m_entries.end(), m_next,
          [](const Entry& candidate, uint64 serial) { return candidate.serial < serial; });
      if (entry == list.m_entries.end() || entry->serial >= m_end) return nullptr;
      m_next = entry->serial + 1;
      return &entry->callee;
    }

   private:
    uint64 m_next = 0;
    const uint64 m_end;
  };

 private:
  struct Entry {
    uint64 serial;  // ascending, never given twice
    T callee;
  };

  std::vector<Entry> m_entries;
  uint64 m_nextSerial = 0;
};

}  // namespace Kestova
