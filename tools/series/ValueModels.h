// Models of what each record type usually holds, as code lengths. Internal to the guess.
//
// A model states which values are possible at all, and in how many bits it would store the next
// value, given those before. Code lengths are comparable between types: the type that really wrote
// the values stores them in fewer bits. A model sees the values of one stream in order.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "ZRKMetaData/src/ZRKMRecords.h"

namespace series::detail {

using ZRKMetaData::int32;
using ZRKMetaData::int64;
using ZRKMetaData::uint32;
using ZRKMetaData::uint64;

/// Bits of a whole number that is likelier the smaller it is (after Elias' delta code), its sign
/// included.
double integerBits(double number);

/// Whether `seconds` can be the time of a record: finite, and zero or between a nanosecond and
/// 10^10 seconds in magnitude. Other types' values read as a time are mostly outside.
bool isPossibleTime(double seconds);

/// Bits of a time, given the one before.
double timeBits(double seconds, double before, bool isFirst);

constexpr double kNever = 1000;  ///< more bits than any value takes

/// Bits of a key by how often it occurred before, for streams that return to few values.
template <class Key>
class Recurrence {
 public:
  /// The bits of `key` by those before it, `kNever` for a new one; counts it.
  double bits(const Key& key) {
    double& count = m_counts[key];
    const double bits = count < 1 ? kNever : std::log2((m_total + 1) / count);
    ++count;
    ++m_total;
    return bits;
  }

 private:
  std::unordered_map<Key, double> m_counts;
  double m_total = 0;
};

/// Bits of values by their bytes alone: how often a value occurred, and how often after the one
/// before. The same for every type of one size.
class ReturnModel {
 public:
  double bits(std::string_view value) {
    const auto found = m_numbers.emplace(value, m_numbers.size()).first;
    const uint64 number = found->second;
    const double bits = m_values.bits(number);
    double& before = m_followed[m_before];
    double& pair = m_pairs[m_before << 32U | number];
    const double pairBits = pair < 1 ? kNever : std::log2((before + 1) / pair);
    ++before;
    ++pair;
    m_before = number;
    return 1 + std::min(bits, pairBits);
  }

 private:
  std::unordered_map<std::string_view, uint64> m_numbers;
  Recurrence<uint64> m_values;
  std::unordered_map<uint64, double> m_followed;
  std::unordered_map<uint64, double> m_pairs;
  uint64 m_before = ~0U;
};

/// A whole number that stays, steps, runs or returns: the model of ints and int64s.
class NumberModel {
 public:
  explicit NumberModel(double rawBits) : m_rawBits(rawBits) {}
  double bits(int64 value);

 private:
  const double m_rawBits;
  Recurrence<int64> m_steps;
  int64 m_before = 0;
  int64 m_step = 0;
  double m_bound = 0;  // of the magnitudes so far
};

/// The model of a record type: `impossible` returns why a value is not of the type, null when it
/// may be; `bits` is the code length of a value.
template <class Record>
class ValueModel;

template <>
class ValueModel<int> {
 public:
  static const char* impossible(int /*value*/) { return nullptr; }
  double bits(int value) { return m_numbers.bits(value); }

 private:
  NumberModel m_numbers{32};
};

template <>
class ValueModel<int64> {
 public:
  static const char* impossible(int64 /*value*/) { return nullptr; }
  double bits(int64 value);

 private:
  NumberModel m_numbers{64};
};

template <>
class ValueModel<double> {
 public:
  static const char* impossible(double value);
  double bits(double value);

 private:
  Recurrence<int64> m_steps;
  int64 m_before = 0;
  int64 m_step = 0;
};

template <>
class ValueModel<ZRKMetaData::KeyStroke> {
 public:
  static const char* impossible(const ZRKMetaData::KeyStroke& key);
  double bits(const ZRKMetaData::KeyStroke& key);

 private:
  Recurrence<int32> m_characters;
  Recurrence<int32> m_flags;
  int32 m_before = 0;
};

template <>
class ValueModel<ZRKMetaData::Point> {
 public:
  static const char* impossible(const ZRKMetaData::Point& point);
  double bits(const ZRKMetaData::Point& point);

 private:
  double edgeBits(const ZRKMetaData::Point& point);

  Recurrence<int64> m_steps;
  Recurrence<int32> m_columns;
  Recurrence<int32> m_rows;
  double m_x = 0;
  double m_y = 0;
  double m_stepX = 0;
  double m_stepY = 0;
  double m_charge = 0;
  bool m_isOnEdge = true;
};

template <>
class ValueModel<ZRKMetaData::Rect> {
 public:
  static const char* impossible(const ZRKMetaData::Rect& rect);
  double bits(const ZRKMetaData::Rect& rect);

 private:
  double m_before[4] = {0, 0, 0, 0};
};

template <>
class ValueModel<std::string> {
 public:
  /// `text` may be cut where it leaves the sample. A text that is mostly control characters is
  /// none.
  static const char* impossible(std::string_view text);
  double bits(std::string_view text, uint32 announced);

 private:
  Recurrence<std::string_view> m_texts;  // in the sample, which outlives the model
};

/// What stands in front of the bytes of a cursor image.
struct CursorImageHead {
  uint32 recordSize;
  uint64 imageId;
  uint32 dataSize;
  int32 info0;
  int32 info1;
};

template <>
class ValueModel<ZRKMetaData::CursorImage> {
 public:
  static const char* impossible(const CursorImageHead& image);
  double bits(const CursorImageHead& image);

 private:
  Recurrence<uint64> m_ids;
};

}  // namespace series::detail
