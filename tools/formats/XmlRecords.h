// Records as XML 1.0. See RecordFields.h for how a writer is used.
#pragma once

#include <cmath>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "text/XmlText.h"
#include "tools/formats/RecordFields.h"
#include "tools/formats/TextSink.h"

namespace formats {

/// One element per record, whose attributes are the CSV columns that its type has. Doubles are the
/// shortest text that reads back the same; non-finite ones are "NaN", "INF" and "-INF", as in XML
/// Schema. Characters that XML 1.0 forbids are left out.
///
/// The root element is "export", with "record" and "error" elements; in the wide layout it has the
/// attributes of the label.
class XmlRecords : public RecordFields<XmlRecords> {
 public:
  /// `out` must outlive the writer.
  XmlRecords(TextSink& out, Layout layout, ImageDigest digest)
      : RecordFields(out, layout, std::move(digest)) {}

  void begin();
  void beginStream(const StreamLabel& stream);

  template <class Record>
  void add(double seconds, const Record& record) {
    m_out.write(m_before);
    field(series::kTimeField.name, seconds);
    series::describe(*this, record);
    m_out.write("/>\n");
  }

  void finish(const std::vector<StreamError>& errors);

  /// Called by series::describe.
  template <class Value>
  void field(const char* name, const Value& value) {
    m_out.write(" ");
    m_out.write(name);
    m_out.write("=\"");
    if constexpr (std::is_arithmetic_v<Value>) {
      number(value);
    } else {
      m_out.writeEscaped<text::XmlRule>(value);
    }
    m_out.write("\"");
  }

 private:
  template <class Number>
  void number(Number value) {
    if constexpr (std::is_floating_point_v<Number>) {
      if (std::isnan(value)) return m_out.write("NaN");
      if (std::isinf(value)) return m_out.write(value > 0 ? "INF" : "-INF");
    }
    m_out.writeNumber(value);
  }

  std::string m_before;  // of each element, up to its time
};

}  // namespace formats
