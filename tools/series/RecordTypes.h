// The table of the record types that a stream may hold, and the fields of each.
//
// Everything in the tools that depends on the record type reads this table: option values, help
// texts, dispatch and output columns. A new record type is one row of `kRecordTypes`, the array of
// its fields and a `describe`; its decoder belongs to the parser. Nothing here has state, and every
// function may be called from any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "ZRKMetaData/src/ZRKMRecords.h"

namespace series {

/// A column of a record: its name in CSV and JSON, and its unit, empty where the format states
/// none.
struct Field {
  const char* name;
  const char* unit;
};

/// The first column of every record.
constexpr Field kTimeField = {"time", "s"};

constexpr Field kNumberFields[] = {{"value", ""}};
constexpr Field kTextFields[] = {{"value", ""}};
constexpr Field kKeystrokeFields[] = {{"character", ""}, {"eventFlags", ""}};
constexpr Field kPointFields[] = {{"x", "px"}, {"y", "px"}};
constexpr Field kRectFields[] = {{"a", "px"}, {"b", "px"}, {"c", "px"}, {"d", "px"}};
constexpr Field kCursorImageFields[] = {
    {"imageId", ""}, {"dataSize", "B"}, {"imageInfo0", ""}, {"imageInfo1", ""}, {"sha256", ""}};

/// What is known of a record type without its C++ type.
struct RecordTypeInfo {
  const char* name = "";   ///< as options and JSON spell it: "points"
  const char* label = "";  ///< for people: "cursor positions"
  const Field* fields = nullptr;
  std::size_t fieldCount = 0;  ///< without the time
  std::size_t byteCount = 0;   ///< of a record with its time, or 0 where it varies

  constexpr const Field* begin() const { return fields; }
  constexpr const Field* end() const { return fields + fieldCount; }
};

/// A row of the table: `Record` is what the parser decodes a record to.
template <class Record>
struct RecordTypeRow : RecordTypeInfo {
  using type = Record;

  template <std::size_t count>
  constexpr RecordTypeRow(const char* name_, const char* label_, const Field (&fields_)[count],
                          std::size_t byteCount_)
      : RecordTypeInfo{name_, label_, fields_, count, byteCount_} {}
};

/// The table. Its order is the order of lists and of help texts.
constexpr std::tuple kRecordTypes = {
    RecordTypeRow<int>("ints", "whole numbers, 32 bits", kNumberFields, 12),
    RecordTypeRow<double>("doubles", "floating-point numbers", kNumberFields, 16),
    RecordTypeRow<ZRKMetaData::int64>("int64s", "whole numbers, 64 bits", kNumberFields, 16),
    RecordTypeRow<std::string>("strings", "texts", kTextFields, 0),
    RecordTypeRow<ZRKMetaData::KeyStroke>("keystrokes", "keystrokes", kKeystrokeFields, 16),
    RecordTypeRow<ZRKMetaData::Point>("points", "cursor positions", kPointFields, 16),
    RecordTypeRow<ZRKMetaData::Rect>("rects", "rectangles", kRectFields, 24),
    RecordTypeRow<ZRKMetaData::CursorImage>("cursor-images", "cursor images", kCursorImageFields,
                                            0),
};

constexpr std::size_t kRecordTypeCount = std::tuple_size_v<decltype(kRecordTypes)>;

/// A record type, by its row in the table.
enum class RecordType : std::uint8_t {};

namespace detail {

template <std::size_t row>
using RecordOfRow = typename std::tuple_element_t<row, decltype(kRecordTypes)>::type;

template <class Function, std::size_t... rows>
constexpr void forEachRow(Function&& function, std::index_sequence<rows...> /*rows*/) {
  (function(std::get<rows>(kRecordTypes), static_cast<RecordType>(rows)), ...);
}

template <class Record, std::size_t... rows>
constexpr std::size_t rowOf(std::index_sequence<rows...> /*rows*/) {
  static_assert((std::size_t{std::is_same_v<Record, RecordOfRow<rows>>} + ...) == 1,
                "one row of kRecordTypes has this record type");
  return ((std::is_same_v<Record, RecordOfRow<rows>> ? rows : 0) + ...);
}

template <std::size_t... rows>
constexpr std::array<RecordTypeInfo, kRecordTypeCount> infos(
    std::index_sequence<rows...> /*rows*/) {
  return {static_cast<const RecordTypeInfo&>(std::get<rows>(kRecordTypes))...};
}

using Rows = std::make_index_sequence<kRecordTypeCount>;

template <class Function, std::size_t... rows>
decltype(auto) visitRow(std::size_t row, Function&& function,
                        std::index_sequence<rows...> /*rows*/) {
  using FirstRow = std::tuple_element_t<0, decltype(kRecordTypes)>;
  using Result = std::invoke_result_t<Function&, const FirstRow&>;
  using Call = Result (*)(Function&);
  static constexpr Call kCalls[] = {
      [](Function& called) -> Result { return called(std::get<rows>(kRecordTypes)); }...};
  return kCalls[row](function);
}

}  // namespace detail

/// The rows without their C++ types, to be listed or searched.
constexpr std::array<RecordTypeInfo, kRecordTypeCount> kRecordTypeInfos =
    detail::infos(detail::Rows());

/// The record type that is decoded to `Record`. Does not compile for a type without a row.
template <class Record>
constexpr RecordType recordTypeOf() {
  return static_cast<RecordType>(detail::rowOf<Record>(detail::Rows()));
}

constexpr const RecordTypeInfo& infoOf(RecordType type) {
  return kRecordTypeInfos[static_cast<std::size_t>(type)];
}

/// The record type with this name, none for any other text.
constexpr std::optional<RecordType> recordTypeNamed(std::string_view name) {
  for (std::size_t row = 0; row < kRecordTypeCount; ++row) {
    if (kRecordTypeInfos[row].name == name) return static_cast<RecordType>(row);
  }
  return std::nullopt;
}

/// Calls `function` with the row of `type` and returns what it returns, which must be the same type
/// for every row. The C++ type of the records is a member type of the row:
///
///   visitRecordType(type, [&](const auto& row) {
///     using Record = typename std::decay_t<decltype(row)>::type;
///     ...
///   });
template <class Function>
decltype(auto) visitRecordType(RecordType type, Function&& function) {
  return detail::visitRow(static_cast<std::size_t>(type), function, detail::Rows());
}

/// Calls `function(row, type)` for every row, in table order.
template <class Function>
constexpr void forEachRecordType(Function&& function) {
  detail::forEachRow(function, detail::Rows());
}

/// The bytes that a record takes in its stream, as the parser reads it.
template <class Record>
std::size_t byteCountOf(const Record& /*record*/) {
  constexpr std::size_t kByteCount = infoOf(recordTypeOf<Record>()).byteCount;
  static_assert(kByteCount != 0, "a record whose size varies needs an overload");
  return kByteCount;
}
inline std::size_t byteCountOf(const std::string& text) {
  return 12 + text.size();
}
inline std::size_t byteCountOf(const ZRKMetaData::CursorImage& image) {
  return 24 + std::size_t{image.m_dataSize};
}

/// Names the fields of a record to `row`, in table order, with `row.field(name, value)`; four
/// coordinates with `row.numbers(name, names, values)`, since formats differ in whether they are
/// one array or four columns; and an image with `row.image(name, image)`, which decides what stands
/// for the bytes (a digest, where the name is "sha256").
template <class Row, class Number>
std::enable_if_t<std::is_arithmetic_v<Number>> describe(Row& row, const Number& value) {
  row.field(kNumberFields[0].name, value);
}

template <class Row>
void describe(Row& row, const std::string& value) {
  row.field(kTextFields[0].name, value);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::KeyStroke& key) {
  row.field(kKeystrokeFields[0].name, key.character);
  row.field(kKeystrokeFields[1].name, key.eventFlags);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::Point& point) {
  row.field(kPointFields[0].name, point.x);
  row.field(kPointFields[1].name, point.y);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::Rect& rect) {
  static constexpr const char* kNames[] = {kRectFields[0].name, kRectFields[1].name,
                                           kRectFields[2].name, kRectFields[3].name};
  row.numbers("rect", kNames, rect.coordinates);
}

template <class Row>
void describe(Row& row, const ZRKMetaData::CursorImage& image) {
  row.field(kCursorImageFields[0].name, image.m_imageId);
  row.field(kCursorImageFields[1].name, image.m_dataSize);
  row.field(kCursorImageFields[2].name, image.m_imageInfo0);
  row.field(kCursorImageFields[3].name, image.m_imageInfo1);
  row.image(kCursorImageFields[4].name, image);
}

/// Names the time and then the fields of a record to `row`.
template <class Row, class Record>
void describeTimed(Row& row, double seconds, const Record& record) {
  row.field(kTimeField.name, seconds);
  describe(row, record);
}

}  // namespace series
