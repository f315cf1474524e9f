// Records as JSON: one document, or one object per line (NDJSON). See RecordFields.h for how a
// writer is used.
#pragma once

#include <cmath>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "text/JsonText.h"
#include "tools/formats/RecordFields.h"
#include "tools/formats/TextSink.h"

namespace formats {

/// One object per record, with the members of the CSV columns that its type has. Doubles are the
/// shortest text that reads back the same; non-finite ones are the strings "NaN", "Infinity" and
/// "-Infinity".
///
/// A document is {"records":[...],"errors":[{file, stream, type, message}]}, in the wide layout
/// with the members of the label before the records. NDJSON has no place for errors.
class JsonRecords : public RecordFields<JsonRecords> {
 public:
  enum class Form { Document, Lines };

  /// `out` must outlive the writer.
  JsonRecords(TextSink& out, Layout layout, ImageDigest digest, Form form)
      : RecordFields(out, layout, std::move(digest)), m_form(form) {}

  void begin();
  void beginStream(const StreamLabel& stream);

  template <class Record>
  void add(double seconds, const Record& record) {
    if (m_form == Form::Document) m_out.write(m_isFirst ? "\n" : ",\n");
    m_isFirst = false;
    m_out.write(m_before);
    number(seconds);
    series::describe(*this, record);
    m_out.write(m_form == Form::Document ? "}" : "}\n");
  }

  void finish(const std::vector<StreamError>& errors);

  /// Called by series::describe.
  template <class Value>
  void field(const char* name, const Value& value) {
    m_out.write(",\"");
    m_out.write(name);
    m_out.write("\":");
    if constexpr (std::is_arithmetic_v<Value>) {
      number(value);
    } else {
      m_out.write("\"");
      m_out.writeEscaped<text::JsonRule>(value);
      m_out.write("\"");
    }
  }

 private:
  template <class Number>
  void number(Number value) {
    if constexpr (std::is_floating_point_v<Number>) {
      if (std::isnan(value)) return m_out.write("\"NaN\"");
      if (std::isinf(value)) return m_out.write(value > 0 ? "\"Infinity\"" : "\"-Infinity\"");
      if (value == 0 && std::signbit(value)) return m_out.write("-0.0");  // "-0" is an integer
    }
    m_out.writeNumber(value);
  }

  const Form m_form;
  std::string m_before;  // of each object, up to its time
  bool m_isFirst = true;
};

}  // namespace formats
