// An ordered map from exact times to values, made for walking, appending and looking up: times
// stand side by side in short sorted runs, and so do the last times of all runs. A look-up touches
// a few cache lines, an insertion moves at most one run.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

#include "host/Kestova/RationalTime.h"
#include "params/Run.h"

namespace Kestova {

/// Moving a `Value` must not throw. Not synchronised. Every change makes iterators worthless, but a
/// place that was taken from one may be tried again (`lowerBound`).
template <class Value>
class ChunkedMap {
 public:
  /// Where an entry stands: one word, so that it can be kept in an atomic.
  struct alignas(std::uint64_t) Place {
    std::uint32_t chunk = 0;
    std::uint32_t slot = 0;

    bool operator==(const Place& other) const { return chunk == other.chunk && slot == other.slot; }
    bool operator!=(const Place& other) const { return !(*this == other); }
  };

  class const_iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = std::pair<RationalTime, Value>;
    using difference_type = std::ptrdiff_t;
    using reference = std::pair<const RationalTime&, const Value&>;
    using pointer = void;

    const RationalTime& time() const { return chunk().times[m_place.slot]; }
    const Value& value() const { return chunk().values[m_place.slot]; }
    reference operator*() const { return {time(), value()}; }
    Place place() const { return m_place; }

    const_iterator& operator++() {
      if (++m_place.slot == chunk().times.size()) m_place = {m_place.chunk + 1, 0};
      return *this;
    }
    const_iterator& operator--() {
      if (m_place.slot == 0) {
        --m_place.chunk;
        m_place.slot = static_cast<std::uint32_t>(chunk().times.size());
      }
      --m_place.slot;
      return *this;
    }
    /// The entry before. Requires: this is not the first one.
    const_iterator previous() const {
      const_iterator entry = *this;
      return --entry;
    }
    bool operator==(const const_iterator& other) const { return m_place == other.m_place; }
    bool operator!=(const const_iterator& other) const { return m_place != other.m_place; }

   private:
    friend class ChunkedMap;
    const_iterator(const ChunkedMap& map, Place place) : m_map(&map), m_place(place) {}
    const auto& chunk() const { return m_map->m_chunks[m_place.chunk]; }

    const ChunkedMap* m_map;
    Place m_place;
  };

  bool empty() const { return m_size == 0; }
  std::size_t size() const { return m_size; }
  const_iterator begin() const { return {*this, {}}; }
  const_iterator end() const { return {*this, endPlace()}; }

  /// The first entry that is not before `time`.
  const_iterator lowerBound(const RationalTime& time) const {
    if (m_chunks.empty() || m_lastTimes.back() < time) return end();
    const auto last = std::lower_bound(m_lastTimes.begin(), m_lastTimes.end(), time);
    const auto chunk = last - m_lastTimes.begin();
    const Run<RationalTime>& times = m_chunks[static_cast<std::size_t>(chunk)].times;
    // The search jumps to and fro in the chunk; its cache lines may as well come side by side.
    constexpr std::size_t kTimesOfLine = 4;
    for (std::size_t slot = 0; slot < times.size(); slot += kTimesOfLine) {
      __builtin_prefetch(times.begin() + slot);
    }
    return at(chunk, std::lower_bound(times.begin(), times.end(), time) - times.begin());
  }

  /// The same, quickly when it is at `near` or a few entries behind. `near` may be any place, also
  /// one of before a change.
  const_iterator lowerBound(const RationalTime& time, Place near) const {
    constexpr int kNear = 4;
    if (near.chunk < m_chunks.size() && near.slot < m_chunks[near.chunk].times.size()) {
      const_iterator entry(*this, near);
      if (entry == begin() || entry.previous().time() < time) {
        for (int step = 0; step < kNear && entry != end(); ++step, ++entry) {
          if (!(entry.time() < time)) return entry;
        }
      }
    }
    return lowerBound(time);
  }

  /// Puts an entry in front of `place`. Requires: `place` is the lower bound of `time`, which has
  /// no entry. When memory cannot be had nothing is changed.
  void insert(const_iterator place, const RationalTime& time, Value value) {
    const Place spot = roomAt(place.place());
    Chunk& chunk = m_chunks[spot.chunk];
    chunk.times.insert(spot.slot, time);
    chunk.values.insert(spot.slot, std::move(value));
    m_lastTimes[spot.chunk] = chunk.times.back();
    ++m_size;
  }

  /// Takes the entry at `place`, which is not the end, out and returns its value.
  Value erase(const_iterator place) {
    const auto [number, slot] = place.place();
    Chunk& chunk = m_chunks[number];
    Value erased = std::move(chunk.values[slot]);
    chunk.times.erase(slot);
    chunk.values.erase(slot);
    --m_size;
    if (chunk.times.empty()) {
      dropChunk(number);
    } else {
      m_lastTimes[number] = chunk.times.back();
      if (number != 0) joinIfSmall(number - 1U);
    }
    return erased;
  }

  /// Puts `value` in the place of the value there, which is returned.
  Value exchange(const_iterator place, Value value) {
    const auto [number, slot] = place.place();
    return std::exchange(m_chunks[number].values[slot], std::move(value));
  }

 private:
  static constexpr std::size_t kCapacity = 64;  // entries of a chunk

  struct Chunk {
    Run<RationalTime> times;
    Run<Value> values;
  };

  template <class Chunks, class Slots>
  const_iterator at(Chunks chunk, Slots slot) const {
    return {*this, {static_cast<std::uint32_t>(chunk), static_cast<std::uint32_t>(slot)}};
  }

  Place endPlace() const { return {static_cast<std::uint32_t>(m_chunks.size()), 0}; }

  // Where an entry that belongs in front of `place` can be put without allocating any more.
  Place roomAt(Place place) {
    if (place.slot == 0 && place.chunk != 0) {  // then behind the one before will do
      const std::uint32_t before = place.chunk - 1;
      const std::size_t size = m_chunks[before].times.size();
      if (size < kCapacity) {
        growFor(m_chunks[before]);
        return {before, static_cast<std::uint32_t>(size)};
      }
    }
    const bool isBetween = place.chunk == m_chunks.size() ||
                           (place.slot == 0 && m_chunks[place.chunk].times.size() == kCapacity);
    if (isBetween) {
      addChunk(place.chunk);
    } else if (m_chunks[place.chunk].times.size() == kCapacity) {
      place = split(place);
    }
    growFor(m_chunks[place.chunk]);
    return place;
  }

  static void growFor(Chunk& chunk) {
    chunk.times.makeRoom(kCapacity);
    chunk.values.makeRoom(kCapacity);
  }

  // A chunk beside others will be filled; the first one may stay small.
  Chunk newChunk() const {
    Chunk chunk;
    const std::size_t room = m_chunks.empty() ? 1 : kCapacity;
    chunk.times.reserve(room);
    chunk.values.reserve(room);
    return chunk;
  }

  void addChunk(std::size_t number) {
    Chunk chunk = newChunk();
    constexpr std::size_t kAny = std::numeric_limits<std::uint32_t>::max();
    m_lastTimes.makeRoom(kAny);
    m_chunks.makeRoom(kAny);
    m_chunks.insert(number, std::move(chunk));
    m_lastTimes.insert(number, RationalTime());
  }

  // Moves the second half of a full chunk to a new one behind it; returns where `place` is now.
  Place split(Place place) {
    constexpr std::uint32_t kHalf = kCapacity / 2;
    addChunk(place.chunk + 1U);
    Chunk& full = m_chunks[place.chunk];
    moveEnd(full, kHalf, m_chunks[place.chunk + 1U]);
    m_lastTimes[place.chunk + 1U] = m_lastTimes[place.chunk];
    m_lastTimes[place.chunk] = full.times.back();
    if (place.slot <= kHalf) return place;
    return {place.chunk + 1, place.slot - kHalf};
  }

  static void moveEnd(Chunk& from, std::size_t first, Chunk& to) {
    for (std::size_t slot = first; slot < from.times.size(); ++slot) {
      to.times.insert(to.times.size(), from.times[slot]);
      to.values.insert(to.values.size(), std::move(from.values[slot]));
    }
    from.times.truncate(first);
    from.values.truncate(first);
  }

  void dropChunk(std::size_t number) {
    m_chunks.erase(number);
    m_lastTimes.erase(number);
  }

  // Two neighbours that are nearly empty become one, where that needs no memory.
  void joinIfSmall(std::size_t number) {
    Chunk& left = m_chunks[number];
    Chunk& right = m_chunks[number + 1];
    const std::size_t together = left.times.size() + right.times.size();
    if (together > kCapacity / 2 || left.times.capacity() < together ||
        left.values.capacity() < together) {
      return;
    }
    moveEnd(right, 0, left);
    m_lastTimes[number] = left.times.back();
    dropChunk(number + 1);
  }

  Run<Chunk> m_chunks;            // none is empty
  Run<RationalTime> m_lastTimes;  // of each chunk
  std::size_t m_size = 0;
};

}  // namespace Kestova
