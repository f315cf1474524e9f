// Values over time in bounded memory: each on its own while they are few, else merged per interval
// of time, whose width doubles as more time goes by.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace formats {

/// `Content` has `void merge(const Content& later)`. Used by one thread.
template <class Content>
class TimeBuckets {
 public:
  struct Bucket {
    double seconds = 0;  ///< of its first value
    Content content{};
  };

  /// Holds at most 2 * `count` + 1 buckets; once merging began, at least about `count` / 2.
  explicit TimeBuckets(std::size_t count) : m_count(count) {}

  /// Requires: `seconds` is finite and not below that of the value before.
  void add(double seconds, const Content& content) {
    if (m_width > 0 && indexOf(seconds) == indexOf(m_buckets.back().seconds)) {
      m_buckets.back().content.merge(content);
      return;
    }
    m_buckets.push_back({seconds, content});
    if (m_buckets.size() > 2 * m_count) widen();
  }

  /// Seconds per bucket: values of one bucket are less than this apart. 0 while none were merged.
  double width() const { return m_width; }

  const std::vector<Bucket>& buckets() const { return m_buckets; }

 private:
  double indexOf(double seconds) const {
    return std::floor((seconds - m_buckets.front().seconds) / m_width);
  }

  void widen() {
    constexpr double kLeastWidth = 1e-9;  // seconds; for values at one time
    const double span = m_buckets.back().seconds - m_buckets.front().seconds;
    const auto count = static_cast<double>(m_count);
    if (m_width == 0) m_width = std::max(span / count, kLeastWidth);
    while (span > m_width * count) m_width *= 2;  // doubled, buckets stay whole

    std::size_t kept = 0;
    for (std::size_t next = 1; next < m_buckets.size(); ++next) {
      if (indexOf(m_buckets[next].seconds) == indexOf(m_buckets[kept].seconds)) {
        m_buckets[kept].content.merge(m_buckets[next].content);
      } else if (++kept != next) {
        m_buckets[kept] = m_buckets[next];
      }
    }
    m_buckets.resize(kept + 1);
  }

  std::size_t m_count;
  double m_width = 0;
  std::vector<Bucket> m_buckets;
};

}  // namespace formats
