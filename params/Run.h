// A short run of elements side by side that gives and takes at both ends as cheaply as in the
// middle of nowhere: room is kept in front as well as behind.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace Kestova {

/// `T` is default constructible and copyable; moving it must not throw. Not synchronised.
template <class T>
class Run {
 public:
  std::size_t size() const { return m_elements.size() - m_first; }
  bool empty() const { return size() == 0; }

  // Good until the next change.
  const T* begin() const { return m_elements.data() + m_first; }
  const T* end() const { return m_elements.data() + m_elements.size(); }
  const T& operator[](std::size_t place) const { return m_elements[m_first + place]; }
  T& operator[](std::size_t place) { return m_elements[m_first + place]; }
  const T& back() const { return m_elements.back(); }

  std::size_t capacity() const { return m_elements.capacity(); }
  void reserve(std::size_t count) { m_elements.reserve(m_first + count); }

  /// Afterwards one more element can be inserted without taking memory. Grows to twice the size, at
  /// most to `most` elements.
  void makeRoom(std::size_t most) {
    if (size() == capacity()) m_elements.reserve(std::min(most, 2 * size() + 1));
  }

  /// Puts `element` in front of the one at `place`. Requires: there is room.
  void insert(std::size_t place, T element) {
    if (place == 0 && !empty()) {
      if (m_first == 0) openFront();
      m_elements[--m_first] = std::move(element);
      return;
    }
    if (m_elements.size() == capacity()) closeFront();
    m_elements.insert(at(place), std::move(element));
  }

  void erase(std::size_t place) {
    if (place != 0) {
      m_elements.erase(at(place));
      return;
    }
    m_elements[m_first++] = T{};
    if (m_first > size()) closeFront();
  }

  /// Leaves the first `count` elements.
  void truncate(std::size_t count) { m_elements.erase(at(count), m_elements.end()); }

 private:
  auto at(std::size_t place) {
    return m_elements.begin() + static_cast<std::ptrdiff_t>(m_first + place);
  }

  // Half of the room moves from behind to the front.
  void openFront() {
    m_first = (capacity() - m_elements.size() + 1) / 2;
    m_elements.insert(m_elements.begin(), m_first, T{});
  }

  void closeFront() {
    m_elements.erase(m_elements.begin(), at(0));
    m_first = 0;
  }

  std::vector<T> m_elements;
  std::size_t m_first = 0;  // what is in front of it is room
};

}  // namespace Kestova
