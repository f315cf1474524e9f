// The records of one stream as a report holds them: one column per field.
//
// Memory grows with the records that are kept, of which there are at most kMaxReportRows, and with
// their texts. Used by one thread.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <variant>
#include <vector>

#include "tools/series/RecordTypes.h"

namespace formats {

/// Rows of one stream in a page. A browser decodes and searches this many in about a second.
constexpr std::uint64_t kMaxReportRows = 1'048'576;

class ReportRows {
 public:
  /// Keeps the first of every `stride` records. Requires: `stride` is not 0.
  explicit ReportRows(std::uint64_t stride) : m_stride(stride) {}

  template <class Record>
  void add(double seconds, const Record& record) {
    if constexpr (std::is_same_v<Record, ZRKMetaData::CursorImage>) keepImage(record);
    if (m_recordCount++ % m_stride != 0) return;
    m_nextColumn = 0;
    ++m_rowCount;
    series::describeTimed(*this, seconds, record);
  }

  /// A column, its words in the type that its name says.
  struct Column {
    std::string name;
    const char* type;  ///< "int32", "uint32", "float64", "int64", "uint64", as the page knows them
    std::variant<std::vector<std::uint32_t>, std::vector<std::uint64_t>> words;
  };

  std::uint64_t stride() const { return m_stride; }
  std::uint64_t recordCount() const { return m_recordCount; }
  std::uint64_t rowCount() const { return m_rowCount; }

  /// The time first; empty without records. A text is its index in `texts`; an image its index in
  /// `images`, or -1 for none.
  const std::vector<Column>& columns() const { return m_columns; }

  /// The distinct texts, of which long ones are cut, as well-formed UTF-8.
  const std::vector<std::string>& texts() const { return m_texts; }

  /// The bytes of the distinct images, as far as they fit into kMaxImageBytes.
  const std::vector<std::string>& images() const { return m_images; }

  // Called by series::describe.

  template <class Value>
  void field(const char* name, const Value& value) {
    if constexpr (std::is_same_v<Value, double>) {
      std::uint64_t bits = 0;
      std::memcpy(&bits, &value, sizeof bits);
      append(name, "float64", bits);
    } else if constexpr (std::is_same_v<Value, std::string>) {
      append(name, "uint32", indexOf(value));
    } else if constexpr (sizeof(Value) == sizeof(std::uint64_t)) {
      append(name, std::is_signed_v<Value> ? "int64" : "uint64", static_cast<std::uint64_t>(value));
    } else {
      static_assert(sizeof(Value) == sizeof(std::uint32_t));
      append(name, std::is_signed_v<Value> ? "int32" : "uint32", static_cast<std::uint32_t>(value));
    }
  }

  template <class Number, std::size_t count>
  void numbers(const char* /*name*/, const char* const (&names)[count],
               const Number (&values)[count]) {
    for (std::size_t i = 0; i < count; ++i) field(names[i], values[i]);
  }

  void image(const char* name, const ZRKMetaData::CursorImage& image);

 private:
  static constexpr std::size_t kMaxTextBytes = 1024;
  static constexpr std::size_t kMaxImageBytes = std::size_t{2} << 20U;
  static constexpr std::size_t kMaxIdentifiers = 65536;  // of images that are remembered

  template <class Word>
  void append(const char* name, const char* type, Word word) {
    if (m_nextColumn == m_columns.size()) {
      m_columns.push_back({name, type, std::vector<Word>()});
    }
    std::get<std::vector<Word>>(m_columns[m_nextColumn++].words).push_back(word);
  }

  std::uint32_t indexOf(const std::string& text);
  void keepImage(const ZRKMetaData::CursorImage& image);

  std::uint64_t m_stride;
  std::uint64_t m_recordCount = 0;
  std::uint64_t m_rowCount = 0;
  std::size_t m_nextColumn = 0;
  std::vector<Column> m_columns;
  std::vector<std::string> m_texts;
  std::unordered_map<std::string, std::uint32_t> m_textIndexes;
  std::vector<std::string> m_images;
  std::map<std::string, std::int32_t, std::less<>> m_imageIndexes;
  std::unordered_map<ZRKMetaData::uint64, std::int32_t> m_shownImages;
  std::size_t m_imageBytes = 0;
};

}  // namespace formats
