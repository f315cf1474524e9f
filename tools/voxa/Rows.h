// Writes the rows of a result as a table, as CSV or as JSON objects.
//
// A row is described once, by a callable that names its fields to the form that it is given:
//
//   rows.write([&](auto& row) { row.field("time", seconds); row.field("x", x); });
//
// Rows are written one by one, so that memory does not grow with their number.
#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMRecords.h"
#include "text/Printable.h"
#include "tools/voxa/Numbers.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Sha256.h"

namespace voxa {

enum class Format { Table, Csv, Json, HostXml, HostJson };

/// How the columns of a table are aligned, in characters: to the right, or with a negative width to
/// the left. In columns beyond the list, numbers have a width of 12 and texts are not padded.
using ColumnWidths = std::vector<int>;

/// The columns of a table or CSV file.
class HeaderRow {
 public:
  explicit HeaderRow(Format format) : m_format(format) {}

  template <class Value>
  void field(const char* name, const Value&) {
    m_names.emplace_back(name);
  }

  /// A field that follows from the others: not in CSV.
  template <class Value>
  void derivedField(const char* name, const Value& value) {
    if (m_format != Format::Csv) field(name, value);
  }

  /// Numbers that stand in columns of their own, or in one JSON array.
  template <class Number, std::size_t count>
  void numbers(const char*, const char* const (&names)[count], const Number (&)[count]) {
    m_names.insert(m_names.end(), std::begin(names), std::end(names));
  }

  /// The fields of a value: columns of their own, or one JSON object.
  template <class Describe>
  void object(const char*, Describe describe) {
    describe(*this);
  }

  void image(const char* name, const ZRKMetaData::CursorImage&) { m_names.emplace_back(name); }

  const std::vector<std::string>& names() const { return m_names; }

 private:
  Format m_format;
  std::vector<std::string> m_names;
};

constexpr int kNumberWidth = 12;

/// `text` with spaces up to `width` (see ColumnWidths).
inline std::string padded(const std::string& text, int width) {
  return width < 0 ? fmt::format("{:<{}}", text, -width) : fmt::format("{:>{}}", text, width);
}

/// A line of a table or CSV file.
class LineRow {
 public:
  /// `out` and `widths` must outlive the row.
  LineRow(Format format, Output& out, const ColumnWidths& widths)
      : m_format(format), m_out(out), m_widths(widths) {}

  template <class Value>
  void field(const char*, const Value& value) {
    if constexpr (std::is_same_v<Value, bool>) {
      text(value ? "yes" : "no");
    } else if constexpr (std::is_arithmetic_v<Value>) {
      number(value);
    } else {
      text(value);
    }
  }

  template <class Value>
  void derivedField(const char* name, const Value& value) {
    if (m_format != Format::Csv) field(name, value);
  }

  template <class Number, std::size_t count>
  void numbers(const char*, const char* const (&)[count], const Number (&values)[count]) {
    for (const Number value : values) number(value);
  }

  template <class Describe>
  void object(const char*, Describe describe) {
    describe(*this);
  }

  void image(const char*, const ZRKMetaData::CursorImage& image) { text(digestOf(image)); }

 private:
  template <class Number>
  void number(Number value) {
    separate();
    if (m_format == Format::Csv) {
      appendNumber(m_out.buffer(), value);
    } else if constexpr (std::is_floating_point_v<Number>) {
      appendReadable(m_out.buffer(), value);
    } else {
      const int width = m_column <= m_widths.size() ? m_widths[m_column - 1] : kNumberWidth;
      fmt::format_to(fmt::appender(m_out.buffer()), "{:>{}}", value, width);
    }
  }

  void text(std::string_view value) {
    separate();
    if (m_format == Format::Csv) {
      m_out.writeCsvField(value);
    } else if (m_column <= m_widths.size()) {
      m_out.write(padded(text::printable(value), m_widths[m_column - 1]));
    } else {
      m_out.writePrintable(value);
    }
  }

  void separate() {
    if (m_column++ != 0) m_out.write(m_format == Format::Csv ? "," : "  ");
  }

  Format m_format;
  Output& m_out;
  const ColumnWidths& m_widths;
  std::size_t m_column = 0;  // of the field that is written, from 1
};

/// A JSON object, written as it is described.
class JsonRow {
 public:
  explicit JsonRow(Output& out) : m_out(out) { m_out.write("{"); }

  /// Closes the object. Call it after the last field.
  void end() { m_out.write("}"); }

  template <class Value>
  void field(const char* name, const Value& value) {
    key(name);
    if constexpr (std::is_arithmetic_v<Value>) {
      m_out.write(jsonNumber(value));
    } else {
      m_out.writeJsonString(value);
    }
  }

  template <class Value>
  void derivedField(const char* name, const Value& value) {
    field(name, value);
  }

  template <class Number, std::size_t count>
  void numbers(const char* name, const char* const (&)[count], const Number (&values)[count]) {
    array(name, values, [this](Number value) { m_out.write(jsonNumber(value)); });
  }

  void image(const char* name, const ZRKMetaData::CursorImage& image) {
    field(name, digestOf(image));
  }

  void null(const char* name) {
    key(name);
    m_out.write("null");
  }

  /// An array of what `write` writes of each element.
  template <class Elements, class Write>
  void array(const char* name, const Elements& elements, Write write) {
    key(name);
    const char* before = "[";
    for (const auto& element : elements) {
      m_out.write(before);
      write(element);
      before = ",";
    }
    m_out.write(std::size(elements) == 0 ? "[]" : "]");
  }

  /// The fields that `describe` names, as one object.
  template <class Describe>
  void object(const char* name, Describe describe) {
    key(name);
    JsonRow inner(m_out);
    describe(inner);
    inner.end();
  }

 private:
  void key(const char* name) {
    m_out.write(m_isFirst ? "\"" : ",\"");
    m_out.write(name);
    m_out.write("\":");
    m_isFirst = false;
  }

  Output& m_out;
  bool m_isFirst = true;
};

/// Writes rows one after the other. In JSON they are the elements of an array that the caller opens
/// and closes.
class RowWriter {
 public:
  RowWriter(Output& out, Format format, ColumnWidths widths = {})
      : m_out(out), m_format(format), m_widths(std::move(widths)) {}

  /// Writes the line of column names of a table or CSV file; nothing in JSON.
  template <class Describe>
  void header(Describe describe) {
    if (m_format == Format::Json) return;
    HeaderRow row(m_format);
    describe(row);
    const auto& names = row.names();
    for (std::size_t column = 0; column < names.size(); ++column) {
      if (m_format == Format::Csv) {
        m_out.write((column == 0 ? "" : ",") + names[column]);
      } else {
        const int width = column < m_widths.size() ? m_widths[column] : kNumberWidth;
        m_out.write((column == 0 ? "" : "  ") + padded(names[column], width));
      }
    }
    m_out.write("\n");
  }

  template <class Describe>
  void write(Describe describe) {
    if (m_format == Format::Json) {
      m_out.write(m_isFirst ? "\n" : ",\n");
      JsonRow row(m_out);
      describe(row);
      row.end();
    } else {
      LineRow row(m_format, m_out, m_widths);
      describe(row);
      m_out.write("\n");
    }
    m_isFirst = false;
  }

  Format format() const { return m_format; }
  Output& out() { return m_out; }

 private:
  Output& m_out;
  const Format m_format;
  const ColumnWidths m_widths;
  bool m_isFirst = true;
};

}  // namespace voxa
