// An ordered map from exact times to values, optimised for lookups, iteration and appending. Times
// are stored in sorted chunks of up to 64, whole times in half of the space of others, and the last
// times of all chunks in one array, so that a lookup touches few cache lines and an insertion moves
// the elements of at most one chunk.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include "host/Kestova/RationalTime.h"
#include "params/Run.h"
#include "params/SlabAllocator.h"
#include "params/Slabs.h"
#include "params/SortedSearch.h"
#include "params/TimeRun.h"

namespace Kestova {

/// Requires: moving a `Value` does not throw. Not synchronised. Every change invalidates iterators,
/// but the position of an iterator stays valid as a hint for `lowerBound`.
template <class Value>
class ChunkedMap {
 public:
  /// The position of an entry. Fits in a lock-free atomic.
  struct alignas(std::uint64_t) Position {
    std::uint32_t chunk = 0;
    std::uint32_t index = 0;

    bool operator==(const Position& other) const {
      return chunk == other.chunk && index == other.index;
    }
    bool operator!=(const Position& other) const { return !(*this == other); }
  };

  class const_iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = std::pair<RationalTime, Value>;
    using difference_type = std::ptrdiff_t;
    using reference = std::pair<RationalTime, const Value&>;
    using pointer = void;

    RationalTime time() const { return chunk().times[m_position.index]; }
    const Value& value() const { return chunk().values[m_position.index]; }
    reference operator*() const { return {time(), value()}; }
    Position position() const { return m_position; }

    const_iterator& operator++() {
      if (++m_position.index == chunk().times.size()) m_position = {m_position.chunk + 1, 0};
      return *this;
    }
    const_iterator& operator--() {
      if (m_position.index == 0) {
        --m_position.chunk;
        m_position.index = static_cast<std::uint32_t>(chunk().times.size());
      }
      --m_position.index;
      return *this;
    }
    /// Return the time and the value of the previous entry. Require: this is not the first entry.
    RationalTime previousTime() const {
      if (m_position.index == 0) return m_map->m_lastTimes[m_position.chunk - 1];
      return chunk().times[m_position.index - 1];
    }
    const Value& previousValue() const {
      if (m_position.index == 0) return m_map->m_chunks[m_position.chunk - 1].values.back();
      return chunk().values[m_position.index - 1];
    }
    bool operator==(const const_iterator& other) const { return m_position == other.m_position; }
    bool operator!=(const const_iterator& other) const { return m_position != other.m_position; }

   private:
    friend class ChunkedMap;
    const_iterator(const ChunkedMap& map, Position position) : m_map(&map), m_position(position) {}
    const auto& chunk() const { return m_map->m_chunks[m_position.chunk]; }

    const ChunkedMap* m_map;
    Position m_position;
  };

  bool empty() const { return m_size == 0; }
  std::size_t size() const { return m_size; }
  const_iterator begin() const { return {*this, {}}; }
  const_iterator end() const { return at(m_lastTimes.size(), 0); }

  /// The first entry that is not before `time`.
  const_iterator lowerBound(const RationalTime& time) const {
    if (m_lastTimes.empty() || m_lastTimes.back() < time) return end();
    if (m_lastTimes.size() > kMaxSearchedChunks) return lowerBoundByGuess(time);
    const auto last = std::lower_bound(m_lastTimes.begin(), m_lastTimes.end(), time);
    const auto chunk = static_cast<std::size_t>(last - m_lastTimes.begin());
    const Times& times = m_chunks[chunk].times;
    times.prefetch();
    return at(chunk, times.lowerBound(time));
  }

  /// The same. Faster when the result is at `hint` or shortly after it. Any position is a valid
  /// hint, also one from before a change.
  const_iterator lowerBound(const RationalTime& time, Position hint) const {
    std::size_t chunk = hint.chunk;
    std::size_t index = hint.index;
    if (chunk < m_lastTimes.size() && m_lastTimes[chunk] < time) {
      ++chunk;
      index = 0;
    }
    if (chunk >= m_lastTimes.size() || m_lastTimes[chunk] < time) return lowerBound(time);
    const Times& times = m_chunks[chunk].times;
    if (index >= times.size()) return lowerBound(time);
    const const_iterator start = at(chunk, index);
    if (start != begin() && !(start.previousTime() < time)) return lowerBound(time);
    constexpr std::size_t kMaxSteps = 4;
    for (std::size_t steps = 0; steps < kMaxSteps; ++steps) {
      if (!(times[index] < time)) return at(chunk, index);
      ++index;  // stays inside the chunk, whose last time is not before `time`
    }
    return at(chunk, times.lowerBound(time));
  }

  /// Inserts an entry before `next`. Requires: `next` is the lower bound of `time`, which has no
  /// entry. When an allocation fails, nothing is changed.
  void insert(const_iterator next, const RationalTime& time, Value value) {
    const auto [number, index] = reserveBefore(next.position(), time);
    Chunk& chunk = m_chunks[number];
    chunk.times.insert(index, time);
    chunk.values.insert(index, std::move(value));
    m_lastTimes[number] = chunk.times.back();
    ++m_size;
  }

  /// Removes an entry and returns its value. Requires: `entry` is not the end.
  Value erase(const_iterator entry) {
    const auto [number, index] = entry.position();
    Chunk& chunk = m_chunks[number];
    Value erased = std::move(chunk.values[index]);
    chunk.times.erase(index);
    chunk.values.erase(index);
    --m_size;
    if (chunk.times.empty()) {
      eraseChunk(number);
    } else {
      m_lastTimes[number] = chunk.times.back();
      if (number != 0) mergeIfSmall(number - 1U);
    }
    return erased;
  }

  /// Replaces the value of an entry and returns the previous value.
  Value exchange(const_iterator entry, Value value) {
    const auto [number, index] = entry.position();
    return std::exchange(m_chunks[number].values[index], std::move(value));
  }

 private:
  // Bounds what an insertion moves.
  static constexpr std::size_t kMaxChunkSize = 64;

  // What the search of a larger map waits for is memory, and not comparisons.
  static constexpr std::size_t kMaxSearchedChunks = 256;

  template <class T>
  using Memory = SlabAllocator<T, kMaxChunkSize>;
  using Times = TimeRun<Memory>;

  struct Chunk {
    Times times;
    Run<Value, Memory<Value>> values;
  };

  template <class Number, class Index>
  const_iterator at(Number chunk, Index index) const {
    return {*this, {static_cast<std::uint32_t>(chunk), static_cast<std::uint32_t>(index)}};
  }

  // Guesses from the times at both ends. Where times are about evenly spaced, as those of
  // recordings are, it loads one line of each array, and the values while it waits for the times.
  // Requires: `time` is not after all entries, and there are several chunks.
  const_iterator lowerBoundByGuess(const RationalTime& time) const {
    const double wanted = time.toDouble();
    const std::size_t count = m_lastTimes.size();
    const std::size_t number = sortedLowerBoundNear(
        m_lastTimes.begin(), count, time,
        evenIndex(wanted, m_lastTimes[0].toDouble(), m_lastTimes.back().toDouble(), count - 1));
    const Chunk& chunk = m_chunks[number];
    if (number == 0) return at(number, chunk.times.lowerBound(time));
    const std::size_t guess = evenIndex(wanted, m_lastTimes[number - 1].toDouble(),
                                        m_lastTimes[number].toDouble(), chunk.times.size());
    __builtin_prefetch(&chunk.values[guess]);
    return at(number, chunk.times.lowerBoundNear(time, guess));
  }

  // Allocates space for an entry before `next`; returns the position at which to insert it.
  Position reserveBefore(Position next, const RationalTime& time) {
    if (next.index == 0 && next.chunk != 0) {  // the end of the previous chunk is equivalent
      const std::uint32_t before = next.chunk - 1;
      const std::size_t size = m_chunks[before].times.size();
      if (size < kMaxChunkSize) {
        reserveFor(time, m_chunks[before]);
        return {before, static_cast<std::uint32_t>(size)};
      }
    }
    const bool isBetween = next.chunk == m_chunks.size() ||
                           (next.index == 0 && m_chunks[next.chunk].times.size() == kMaxChunkSize);
    if (isBetween) {
      insertChunk(next.chunk, isWhole(time));
    } else if (m_chunks[next.chunk].times.size() == kMaxChunkSize) {
      next = split(next);
    }
    reserveFor(time, m_chunks[next.chunk]);
    return next;
  }

  void reserveFor(const RationalTime& time, Chunk& chunk) {
    chunk.times.reserveFor(time, Memory<RationalTime>(m_slabs.get()), kMaxChunkSize);
    chunk.values.reserveOneMore(kMaxChunkSize);
  }

  // The only chunk of a map may stay small; others are expected to fill.
  void insertChunk(std::size_t number, bool hasWholeTimes) {
    if (!m_slabs && !m_chunks.empty()) {
      m_wholeTimeSlabs = Slabs::create();
      m_slabs = Slabs::create();
    }
    Slabs* const slabs = m_slabs.get();
    Chunk chunk{
        Times(Memory<int64>(m_wholeTimeSlabs.get()), Memory<RationalTime>(slabs), hasWholeTimes),
        Run<Value, Memory<Value>>(Memory<Value>(slabs))};
    const std::size_t capacity = m_chunks.empty() ? 1 : kMaxChunkSize;
    chunk.times.reserve(capacity);
    chunk.values.reserve(capacity);
    m_lastTimes.reserveOneMore();
    m_chunks.reserveOneMore();
    m_chunks.insert(number, std::move(chunk));
    m_lastTimes.insert(number, RationalTime());
  }

  void eraseChunk(std::size_t number) {
    m_chunks.erase(number);
    m_lastTimes.erase(number);
  }

  // Moves the second half of a full chunk to a new chunk; returns the new position of `entry`.
  Position split(Position entry) {
    constexpr std::uint32_t kHalf = kMaxChunkSize / 2;
    insertChunk(entry.chunk + 1U, m_chunks[entry.chunk].times.takesWholeOnly());
    Chunk& full = m_chunks[entry.chunk];
    moveTail(full, kHalf, m_chunks[entry.chunk + 1U]);
    m_lastTimes[entry.chunk + 1U] = m_lastTimes[entry.chunk];
    m_lastTimes[entry.chunk] = full.times.back();
    if (entry.index <= kHalf) return entry;
    return {entry.chunk + 1, entry.index - kHalf};
  }

  static void moveTail(Chunk& from, std::size_t first, Chunk& to) {
    for (std::size_t index = first; index < from.times.size(); ++index) {
      to.times.insert(to.times.size(), from.times[index]);
      to.values.insert(to.values.size(), std::move(from.values[index]));
    }
    from.times.truncate(first);
    from.values.truncate(first);
  }

  // Merges a chunk with the next one when together they fill at most half a chunk and need no
  // allocation.
  void mergeIfSmall(std::size_t number) {
    Chunk& left = m_chunks[number];
    Chunk& right = m_chunks[number + 1];
    const std::size_t size = left.times.size() + right.times.size();
    const bool mustConvert = left.times.takesWholeOnly() && !right.times.takesWholeOnly();
    if (mustConvert || size > kMaxChunkSize / 2 || left.times.capacity() < size ||
        left.values.capacity() < size) {
      return;
    }
    moveTail(right, 0, left);
    m_lastTimes[number] = left.times.back();
    eraseChunk(number + 1);
  }

  // Of the arrays of full size, but for those of the first chunk. Null before the second one.
  Slabs::Pointer m_wholeTimeSlabs;
  Slabs::Pointer m_slabs;

  Run<Chunk> m_chunks;            // none is empty
  Run<RationalTime> m_lastTimes;  // of each chunk
  std::size_t m_size = 0;
};

}  // namespace Kestova
