// The records of one stream, collected to be compared with those of another.
//
// Memory grows with the stream: it holds every record. Used by one thread.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "tools/series/Diff.h"
#include "tools/series/RecordTypes.h"

namespace series {

/// A row of `describe` (RecordTypes.h) that digests the fields. NaN has one digest, and so has 0.
class DigestRow {
 public:
  template <class Value>
  void field(const char* /*name*/, const Value& value) {
    if constexpr (std::is_same_v<Value, std::string>) {
      addBytes(value);
    } else if constexpr (std::is_floating_point_v<Value>) {
      addNumber(std::isnan(value) ? std::nan("") : value == 0 ? Value{0} : value);
    } else {
      addNumber(value);
    }
  }

  template <class Number, std::size_t count>
  void numbers(const char* /*name*/, const char* const (&/*names*/)[count],
               const Number (&values)[count]) {
    for (const Number value : values) addNumber(value);
  }

  void image(const char* /*name*/, const ZRKMetaData::CursorImage& image) {
    addBytes({reinterpret_cast<const char*>(image.m_data.get()), image.imageByteCount()});
  }

  std::uint64_t digest() const { return m_digest; }

 private:
  template <class Number>
  void addNumber(Number number) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    addBytes({bytes, sizeof number});
  }

  void addBytes(std::string_view bytes) {  // FNV-1a, 64 bits
    for (const char byte : bytes) {
      m_digest = (m_digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    }
  }

  std::uint64_t m_digest = 0xCBF29CE484222325;
};

/// Whether two records have the same fields; NaN is the same as NaN.
template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>, bool> isSameRecord(const Number& left,
                                                                  const Number& right) {
  if constexpr (std::is_floating_point_v<Number>) {
    if (std::isnan(left) && std::isnan(right)) return true;
  }
  return left == right;
}
inline bool isSameRecord(const std::string& left, const std::string& right) {
  return left == right;
}
inline bool isSameRecord(const ZRKMetaData::KeyStroke& left, const ZRKMetaData::KeyStroke& right) {
  return left.character == right.character && left.eventFlags == right.eventFlags;
}
inline bool isSameRecord(const ZRKMetaData::Point& left, const ZRKMetaData::Point& right) {
  return left.x == right.x && left.y == right.y;
}
inline bool isSameRecord(const ZRKMetaData::Rect& left, const ZRKMetaData::Rect& right) {
  return std::equal(std::begin(left.coordinates), std::end(left.coordinates),
                    std::begin(right.coordinates));
}
inline bool isSameRecord(const ZRKMetaData::CursorImage& left,
                         const ZRKMetaData::CursorImage& right) {
  return left.m_imageId == right.m_imageId && left.m_dataSize == right.m_dataSize && left == right;
}

template <class Record>
class DiffRecords {
 public:
  void add(double seconds, const Record& record) {
    m_isSorted = m_isSorted && (m_records.empty() || !isBefore(seconds, m_records.back().first));
    m_records.emplace_back(seconds, record);
  }

  /// Ends the stream: sorts the records by time. Those of one time keep their order.
  DiffSide finish() {
    if (!m_isSorted) {
      std::stable_sort(m_records.begin(), m_records.end(), [](const auto& left, const auto& right) {
        return isBefore(left.first, right.first);
      });
    }
    DiffSide side;
    for (const auto& [seconds, record] : m_records) {
      DigestRow row;
      describe(row, record);
      side.seconds.push_back(seconds);
      side.digests.push_back(row.digest());
    }
    return side;
  }

  std::size_t size() const { return m_records.size(); }
  double seconds(std::size_t index) const { return m_records[index].first; }
  const Record& record(std::size_t index) const { return m_records[index].second; }

 private:
  static bool isBefore(double left, double right) {
    return left < right || (!std::isnan(left) && std::isnan(right));
  }

  std::vector<std::pair<double, Record>> m_records;
  bool m_isSorted = true;
};

}  // namespace series
