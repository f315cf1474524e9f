// A vector that keeps free space in front of its elements as well as behind them, so that
// insertion and removal at the front are as cheap as at the back.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace Kestova {

/// Requires: `T` is default constructible, and its move does not throw. Not synchronised. Every
/// change invalidates pointers and references to the elements.
template <class T, class Allocator = std::allocator<T>>
class Run {
 public:
  Run() = default;
  explicit Run(const Allocator& allocator) : m_elements(allocator) {}

  std::size_t size() const { return m_elements.size() - m_first; }
  bool empty() const { return size() == 0; }

  const T* begin() const { return m_elements.data() + m_first; }
  const T* end() const { return m_elements.data() + m_elements.size(); }
  const T& operator[](std::size_t index) const { return m_elements[m_first + index]; }
  T& operator[](std::size_t index) { return m_elements[m_first + index]; }
  const T& back() const { return m_elements.back(); }

  Allocator allocator() const { return m_elements.get_allocator(); }
  std::size_t capacity() const { return m_elements.capacity(); }
  void reserve(std::size_t count) { m_elements.reserve(m_first + count); }

  /// Ensures that the next insertion does not allocate. A full run grows to about twice its size,
  /// but to no more than `maxCapacity`.
  void reserveOneMore(std::size_t maxCapacity = std::numeric_limits<std::size_t>::max()) {
    if (size() == capacity()) m_elements.reserve(std::min(maxCapacity, 2 * size() + 1));
  }

  /// Inserts `element` before the one at `index`. Requires: size() < capacity().
  void insert(std::size_t index, T element) {
    if (index == 0 && !empty()) {
      if (m_first == 0) openFront();
      m_elements[--m_first] = std::move(element);
      return;
    }
    if (m_elements.size() == capacity()) closeFront();
    m_elements.insert(iteratorAt(index), std::move(element));
  }

  void erase(std::size_t index) {
    if (index != 0) {
      m_elements.erase(iteratorAt(index));
      return;
    }
    m_elements[m_first++] = T{};
    if (m_first > size()) closeFront();
  }

  /// Keeps the first `count` elements.
  void truncate(std::size_t count) { m_elements.erase(iteratorAt(count), m_elements.end()); }

 private:
  auto iteratorAt(std::size_t index) {
    return m_elements.begin() + static_cast<std::ptrdiff_t>(m_first + index);
  }

  // Moves half of the free space to the front.
  void openFront() {
    m_first = (capacity() - m_elements.size() + 1) / 2;
    const std::size_t count = m_elements.size();
    m_elements.resize(count + m_first);
    std::move_backward(m_elements.begin(), m_elements.begin() + static_cast<std::ptrdiff_t>(count),
                       m_elements.end());
  }

  void closeFront() {
    m_elements.erase(m_elements.begin(), iteratorAt(0));
    m_first = 0;
  }

  std::vector<T, Allocator> m_elements;
  std::size_t m_first = 0;  // the elements before this index are free space
};

}  // namespace Kestova
