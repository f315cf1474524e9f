// The eight record types for typed test suites: sample records, their bytes and their text.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMMetaDataReader.h"
#include "tools/recording/Container.h"
#include "tools/recording/Records.h"

namespace testing_support {

using RecordTypes =
    testing::Types<int, double, ZRKMetaData::int64, std::string, ZRKMetaData::KeyStroke,
                   ZRKMetaData::Point, ZRKMetaData::Rect, ZRKMetaData::CursorImage>;

/// The text of a record with all its fields, for comparisons and failure messages.
inline std::string shown(double value) {
  return std::to_string(value);
}
inline std::string shown(int value) {
  return std::to_string(value);
}
inline std::string shown(ZRKMetaData::int64 value) {
  return std::to_string(value);
}
inline std::string shown(const std::string& value) {
  constexpr std::size_t kMaxShown = 1000;
  return value.size() < kMaxShown ? testing::PrintToString(value)
                                  : std::to_string(value.size()) + " characters";
}
inline std::string shown(const ZRKMetaData::KeyStroke& key) {
  return std::to_string(key.character) + "/" + std::to_string(key.eventFlags);
}
inline std::string shown(const ZRKMetaData::Point& point) {
  return std::to_string(point.x) + "," + std::to_string(point.y);
}
inline std::string shown(const ZRKMetaData::Rect& rect) {
  return testing::PrintToString(rect.coordinates);
}
inline std::string shown(const ZRKMetaData::CursorImage& image) {
  const std::string bytes(reinterpret_cast<const char*>(image.m_data.get()),
                          image.imageByteCount());
  return std::to_string(image.m_imageId) + ":" + std::to_string(image.m_dataSize) + ":" +
         std::to_string(image.m_imageInfo0) + ":" + std::to_string(image.m_imageInfo1) + ":" +
         testing::PrintToString(bytes);
}

/// Record number `n` of a stream of T: its bytes and its `shown` text. `kName` names the type in
/// test names.
template <class T>
struct Filler;

template <>
struct Filler<int> {
  static constexpr const char* kName = "ints";
  static recording::Bytes bytes(double t, int n) { return recording::intRecord(t, -7 * n); }
  static std::string text(int n) { return shown(-7 * n); }
};
template <>
struct Filler<double> {
  static constexpr const char* kName = "doubles";
  static recording::Bytes bytes(double t, int n) { return recording::doubleRecord(t, 0.25 * n); }
  static std::string text(int n) { return shown(0.25 * n); }
};
template <>
struct Filler<ZRKMetaData::int64> {
  static constexpr const char* kName = "int64s";
  static recording::Bytes bytes(double t, int n) {
    return recording::int64Record(t, -(1LL << 40) * n);
  }
  static std::string text(int n) { return shown(ZRKMetaData::int64{-(1LL << 40) * n}); }
};
template <>
struct Filler<std::string> {
  static constexpr const char* kName = "strings";
  static std::string value(int n) {
    return std::string("a\0b", 3) + std::string(std::size_t(n), 'x');
  }
  static recording::Bytes bytes(double t, int n) { return recording::stringRecord(t, value(n)); }
  static std::string text(int n) { return shown(value(n)); }
};
template <>
struct Filler<ZRKMetaData::KeyStroke> {
  static constexpr const char* kName = "keystrokes";
  static recording::Bytes bytes(double t, int n) {
    return recording::keystrokeRecord(t, 64 + n, -n);
  }
  static std::string text(int n) { return shown(ZRKMetaData::KeyStroke(64 + n, -n)); }
};
template <>
struct Filler<ZRKMetaData::Point> {
  static constexpr const char* kName = "points";
  static recording::Bytes bytes(double t, int n) { return recording::pointRecord(t, n, -5 * n); }
  static std::string text(int n) { return shown(ZRKMetaData::Point(n, -5 * n)); }
};
template <>
struct Filler<ZRKMetaData::Rect> {
  static constexpr const char* kName = "rects";
  static recording::Bytes bytes(double t, int n) {
    return recording::rectRecord(t, n, 2 * n, 3 * n, -4 * n);
  }
  static std::string text(int n) { return shown(ZRKMetaData::Rect(n, 2 * n, 3 * n, -4 * n)); }
};
template <>
struct Filler<ZRKMetaData::CursorImage> {
  static constexpr const char* kName = "cursorImages";
  static recording::Bytes bytes(double t, int n) {
    const auto id = 1000ULL + static_cast<unsigned>(n);
    if (n % 2 == 0) return recording::cursorReferenceRecord(t, id);
    return recording::cursorImageRecord(t, id, n, -n, "pixels");
  }
  static std::string text(int n) {
    const std::string id = std::to_string(1000 + n);
    if (n % 2 == 0) return id + ":0:0:0:\"\"";
    return id + ":14:" + std::to_string(n) + ":" + std::to_string(-n) + ":\"pixels\"";
  }
};

struct RecordTypeNames {
  template <class T>
  static std::string GetName(int) {
    return Filler<T>::kName;
  }
};

/// Collects records as (seconds, shown value) and stops after `max` of them.
template <class T>
class Collector final : public ZRKMetaData::DataStreamObserver<T> {
 public:
  explicit Collector(std::size_t max = ~std::size_t{0}) : m_max(max) {}
  bool onData(double seconds, const T& value) override {
    records.emplace_back(seconds, shown(value));
    return records.size() < m_max;
  }

  std::vector<std::pair<double, std::string>> records;

 private:
  const std::size_t m_max;
};

/// The records of `Filler<T>` numbered 1 to `count`, one per second.
template <class T>
recording::Bytes filledRecords(int count) {
  recording::Bytes bytes;
  for (int n = 1; n <= count; ++n) bytes += Filler<T>::bytes(n, n);
  return bytes;
}

template <class T>
std::vector<std::pair<double, std::string>> filledTexts(int count) {
  std::vector<std::pair<double, std::string>> texts;
  for (int n = 1; n <= count; ++n) texts.emplace_back(n, Filler<T>::text(n));
  return texts;
}

}  // namespace testing_support
