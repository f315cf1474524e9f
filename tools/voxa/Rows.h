// Rows of a result as a table, as CSV or as JSON objects.
//
// A row is described once, by a callable that names its fields to whatever form it is given:
//
//   rows.write([&](auto& row) { row.field("time", seconds); row.field("x", x); });
//
// Rows are written one by one, so that memory does not grow with their number.
#pragma once

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

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
  LineRow(Format format, Output& out) : m_format(format), m_out(out) {}

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
      appendNumber(m_out.buffer(), value);
    } else if constexpr (std::is_floating_point_v<Number>) {
      appendReadable(m_out.buffer(), value);
    } else {
      fmt::format_to(fmt::appender(m_out.buffer()), "{:>12}", value);
    }
  }

  void text(std::string_view value) {
    separate();
    if (m_format == Format::Csv) {
      m_out.writeCsvField(value);
    } else {
      m_out.writePrintable(value);
    }
  }

  void separate() {
    if (!m_isFirst) m_out.write(m_format == Format::Csv ? "," : "  ");
    m_isFirst = false;
  }

  Format m_format;
  Output& m_out;
  bool m_isFirst = true;
};

/// How many fields a description names.
class FieldCount {
 public:
  template <class Value>
  void field(const char*, const Value&) {
    ++m_count;
  }

  template <class Number, std::size_t count>
  void numbers(const char*, const char* const (&)[count], const Number (&)[count]) {
    ++m_count;
  }

  int count() const { return m_count; }

 private:
  int m_count = 0;
};

/// A JSON object, written as it is described.
class JsonRow {
 public:
  explicit JsonRow(Output& out) : m_out(out) { m_out.write("{"); }

  /// To be called behind the last field.
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

  /// A value of one field is that field's; one of several is an object.
  template <class Describe>
  void value(Describe describe) {
    FieldCount fields;
    describe(fields);
    if (fields.count() == 1) {
      m_onlyName = "value";
      describe(*this);
      m_onlyName = nullptr;
    } else {
      key("value");
      JsonRow inner(m_out);
      describe(inner);
      inner.end();
    }
  }

 private:
  void key(const char* name) {
    m_out.write(m_isFirst ? "\"" : ",\"");
    m_out.write(m_onlyName != nullptr ? m_onlyName : name);
    m_out.write("\":");
    m_isFirst = false;
  }

  Output& m_out;
  bool m_isFirst = true;
  const char* m_onlyName = nullptr;  // of the field that is described, whatever it calls itself
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
      m_out.write(m_isFirst ? "\n" : ",\n");
      JsonRow row(m_out);
      describe(row);
      row.end();
    } else {
      LineRow row(m_format, m_out);
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
