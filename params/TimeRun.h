// Rising times in one array: 8 bytes each while all are whole, as frame numbers are, and 16 bytes
// otherwise.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "host/Kestova/Integers.h"
#include "host/Kestova/RationalTime.h"
#include "params/Run.h"
#include "params/SortedSearch.h"

namespace Kestova {

inline bool isWhole(const RationalTime& time) {
  return time.denominator() == 1;
}

/// `Memory<T>` is an allocator of `T`. Not synchronised.
template <template <class> class Memory>
class TimeRun {
 public:
  using WholeMemory = Memory<int64>;
  using ExactMemory = Memory<RationalTime>;
  using Exact = Run<RationalTime, ExactMemory>;

  TimeRun() = default;
  TimeRun(const WholeMemory& wholeMemory, const ExactMemory& exactMemory, bool takesWholeOnly)
      : m_whole(wholeMemory),
        m_exact(takesWholeOnly ? nullptr : std::make_unique<Exact>(exactMemory)) {}

  /// True while the run has the form that takes whole times only.
  bool takesWholeOnly() const { return m_exact == nullptr; }

  std::size_t size() const { return m_exact ? m_exact->size() : m_whole.size(); }
  bool empty() const { return size() == 0; }
  std::size_t capacity() const { return m_exact ? m_exact->capacity() : m_whole.capacity(); }
  RationalTime operator[](std::size_t index) const {
    return m_exact ? (*m_exact)[index] : RationalTime(m_whole[index]);
  }
  RationalTime back() const { return (*this)[size() - 1]; }

  /// Returns the index of the first time that is not before `time`, or the size.
  std::size_t lowerBound(const RationalTime& time) const {
    if (m_exact) return sortedLowerBound(m_exact->begin(), m_exact->size(), time);
    return sortedLowerBound(m_whole.begin(), m_whole.size(), firstWholeFrom(time));
  }

  /// The same, faster when the result is near `guess`, which is at most the size.
  std::size_t lowerBoundNear(const RationalTime& time, std::size_t guess) const {
    if (m_exact) return sortedLowerBoundNear(m_exact->begin(), m_exact->size(), time, guess);
    return sortedLowerBoundNear(m_whole.begin(), m_whole.size(), firstWholeFrom(time), guess);
  }

  /// Loads all times into the cache at once. A search by itself waits for one line after the other.
  void prefetch() const {
    constexpr std::size_t kCacheLine = 64;
    const char* const first = m_exact ? reinterpret_cast<const char*>(m_exact->begin())
                                      : reinterpret_cast<const char*>(m_whole.begin());
    const std::size_t bytes = size() * (m_exact ? sizeof(RationalTime) : sizeof(int64));
    for (std::size_t at = 0; at < bytes; at += kCacheLine) __builtin_prefetch(first + at);
  }

  void reserve(std::size_t count) { m_exact ? m_exact->reserve(count) : m_whole.reserve(count); }

  /// Ensures that the insertion of `time` does not allocate. See Run::reserveOneMore.
  void reserveFor(const RationalTime& time, const ExactMemory& exactMemory,
                  std::size_t maxCapacity) {
    if (!m_exact && !isWhole(time)) becomeExact(exactMemory);
    m_exact ? m_exact->reserveOneMore(maxCapacity) : m_whole.reserveOneMore(maxCapacity);
  }

  /// Requires: size() < capacity(), and `time` is whole if the run takes only whole times.
  void insert(std::size_t index, const RationalTime& time) {
    m_exact ? m_exact->insert(index, time) : m_whole.insert(index, time.numerator());
  }
  void erase(std::size_t index) { m_exact ? m_exact->erase(index) : m_whole.erase(index); }
  void truncate(std::size_t count) { m_exact ? m_exact->truncate(count) : m_whole.truncate(count); }

 private:
  static int64 firstWholeFrom(const RationalTime& time) {
    if (isWhole(time)) return time.numerator();
    const int64 towardsZero = time.numerator() / time.denominator();
    return time.numerator() > 0 ? towardsZero + 1 : towardsZero;
  }

  // Changes nothing if it throws.
  void becomeExact(const ExactMemory& exactMemory) {
    auto exact = std::make_unique<Exact>(exactMemory);
    exact->reserve(m_whole.capacity());
    for (std::size_t index = 0; index < m_whole.size(); ++index) {
      exact->insert(index, RationalTime(m_whole[index]));
    }
    m_exact = std::move(exact);
    m_whole = Run<int64, WholeMemory>(m_whole.allocator());
  }

  Run<int64, WholeMemory> m_whole;
  std::unique_ptr<Exact> m_exact;  // all times instead of m_whole, or null
};

}  // namespace Kestova
