// Rows of a result as a table, as CSV or as JSON objects.
//
// A row is described once, by a callable that names its fields to whatever form it is given:
//
//   rows.write([&](auto& row) { row.field("time", seconds); row.field("x", x); });
//
// Rows are written one by one, so that memory does not grow with their number.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "host/Kestova/Utf8.h"
#include "tools/voxa/Numbers.h"
#include "tools/voxa/Output.h"

namespace voxa {

enum class Format { Table, Csv, Json, HostXml, HostJson };

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

  /// The fields of a value: columns of their own, or one JSON member.
  template <class Describe>
  void value(Describe describe) {
    describe(*this);
  }

  const std::vector<std::string>& names() const { return m_names; }

 private:
  Format m_format;
  std::vector<std::string> m_names;
};

/// A line of a table or CSV file.
class LineRow {
 public:
  LineRow(Format format, fmt::memory_buffer& out) : m_format(format), m_out(out) {}

  template <class Value>
  void field(const char*, const Value& value) {
    if constexpr (std::is_arithmetic_v<Value>) {
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
  void value(Describe describe) {
    describe(*this);
  }

 private:
  template <class Number>
  void number(Number value) {
    separate();
    if (m_format == Format::Csv) {
      appendNumber(m_out, value);
    } else if constexpr (std::is_floating_point_v<Number>) {
      fmt::format_to(fmt::appender(m_out), "{:>12.7g}", value);  // for the eye
    } else {
      fmt::format_to(fmt::appender(m_out), "{:>12}", value);
    }
  }

  void text(std::string_view value) {
    separate();
    const std::string shown = m_format == Format::Csv ? csvField(value) : printable(value);
    m_out.append(shown.data(), shown.data() + shown.size());
  }

  void separate() {
    static constexpr std::string_view kBetweenColumns = "  ";
    if (!m_isFirst) {
      const std::string_view separator = m_format == Format::Csv ? "," : kBetweenColumns;
      m_out.append(separator.data(), separator.data() + separator.size());
    }
    m_isFirst = false;
  }

  Format m_format;
  fmt::memory_buffer& m_out;
  bool m_isFirst = true;
};

/// A JSON object.
class JsonRow {
 public:
  template <class Value>
  void field(const char* name, const Value& value) {
    if constexpr (std::is_arithmetic_v<Value>) {
      m_object[name] = jsonNumber(value);
    } else {
      m_object[name] = Kestova::wellFormedUtf8(value);
    }
  }

  template <class Value>
  void derivedField(const char* name, const Value& value) {
    field(name, value);
  }

  template <class Number, std::size_t count>
  void numbers(const char* name, const char* const (&)[count], const Number (&values)[count]) {
    auto array = nlohmann::ordered_json::array();
    for (const Number value : values) array.push_back(jsonNumber(value));
    m_object[name] = std::move(array);
  }

  /// A value of one field is that field's; one of several is an object.
  template <class Describe>
  void value(Describe describe) {
    JsonRow inner;
    describe(inner);
    m_object["value"] =
        inner.m_object.size() == 1 ? inner.m_object.begin().value() : std::move(inner.m_object);
  }

  std::string text() const { return m_object.dump(); }

 private:
  nlohmann::ordered_json m_object = nlohmann::ordered_json::object();
};

/// Rows one after the other. In JSON they are the elements of an array that the caller opens and
/// closes.
class RowWriter {
 public:
  RowWriter(Output& out, Format format) : m_out(out), m_format(format) {}

  /// The line of column names of a table or CSV file; nothing in JSON.
  template <class Describe>
  void header(Describe describe) {
    if (m_format == Format::Json) return;
    HeaderRow row(m_format);
    describe(row);
    std::string line;
    for (const std::string& name : row.names()) {
      if (m_format == Format::Csv) {
        line += (line.empty() ? "" : ",") + name;
      } else {
        line += fmt::format(line.empty() ? "{:>12}" : "  {:>12}", name);
      }
    }
    m_out.write(line + "\n");
  }

  template <class Describe>
  void write(Describe describe) {
    if (m_format == Format::Json) {
      JsonRow row;
      describe(row);
      m_out.write((m_isFirst ? "\n" : ",\n") + row.text());
    } else {
      LineRow row(m_format, m_out.buffer());
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
  bool m_isFirst = true;
};

}  // namespace voxa
