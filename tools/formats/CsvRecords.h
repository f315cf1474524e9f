// Records as CSV (RFC 4180). See RecordFields.h for how a writer is used.
#pragma once

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tools/formats/RecordFields.h"
#include "tools/formats/TextSink.h"

namespace formats {

/// What a cell holds that a spreadsheet would take for a formula.
enum class CsvCells {
  Exact,           ///< the text of the record
  SpreadsheetSafe  ///< the text behind an apostrophe; every text is quoted
};

/// The columns of the long layout: the label, the time and the fields of every record type, each
/// name once, whatever streams there are.
std::vector<std::string> longColumns();

/// A row of the long layout has empty cells for the fields that its type lacks. Doubles have up to
/// 17 significant digits; non-finite ones are "nan", "inf" and "-inf".
class CsvRecords : public RecordFields<CsvRecords> {
 public:
  /// `out` must outlive the writer.
  CsvRecords(TextSink& out, Layout layout, ImageDigest digest, CsvCells cells)
      : RecordFields(out, layout, std::move(digest)), m_cells(cells) {}

  /// Writes the header of the long layout.
  void begin();

  /// Writes the header of the wide layout.
  void beginStream(const StreamLabel& stream);

  template <class Record>
  void add(double seconds, const Record& record) {
    m_out.write(m_before);
    number(seconds);
    m_out.write(m_between);
    series::describe(*this, record);
    m_out.write(m_after);
  }

  /// CSV has no place for errors.
  void finish(const std::vector<StreamError>& /*errors*/) {}

  /// Called by series::describe.
  template <class Value>
  void field(const char* /*name*/, const Value& value) {
    m_out.write(",");
    if constexpr (std::is_arithmetic_v<Value>) {
      number(value);
    } else {
      writeText(m_out, value);
    }
  }

 private:
  template <class Number>
  void number(Number value) {
    if constexpr (std::is_floating_point_v<Number>) {
      if (std::isnan(value)) return m_out.write("nan");  // without its sign
      m_out.writeNumber(value, std::numeric_limits<Number>::max_digits10);
    } else {
      m_out.writeNumber(value);
    }
  }

  void writeText(TextSink& out, std::string_view text) const;

  const CsvCells m_cells;
  std::string m_before;   // the label, in each row of the stream
  std::string m_between;  // empty cells between the time and the fields of the stream's type
  std::string m_after;    // empty cells behind those fields
};

}  // namespace formats
