// A stream as the animation of an MLT property: a value for each frame at which it changes.
//
// Source: https://www.mltframework.org/docs/propertyanimation/ (a key is "FRAME|=VALUE", where "|="
// means that the value holds until the next key).
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "text/XmlText.h"
#include "tools/formats/TextSink.h"
#include "tools/series/RecordTypes.h"

namespace formats {

/// The value of a key: the numbers of a record with spaces between them, or one field alone; a text
/// in quotes. MLT has no escape for a quotation mark, so one becomes an apostrophe. A cursor image
/// is its identifier.
template <class Record>
std::string mltValue(const Record& record, const std::string& field);

/// Writes <property name="NAME">KEYS</property>, which is a document of its own and can be pasted
/// into a project. Before the first key, MLT shows its value. Used by one thread.
class MltAnimation {
 public:
  /// MLT counts frames in 32 bits.
  static constexpr std::int64_t kMaxFrame = 0x7FFFFFFF;

  /// `out` must outlive the writer.
  explicit MltAnimation(TextSink& out) : m_out(out) {}

  void begin(const std::string& property) {
    m_out.write("<property name=\"" + text::xmlText(property) + "\">");
  }

  /// Adds a key. A later one at the same frame replaces it. A negative frame counts as frame 0,
  /// because MLT counts negative ones from the end. Requires: `frame` is not below the one before,
  /// and at most kMaxFrame.
  void add(std::int64_t frame, std::string value) {
    const std::int64_t used = frame < 0 ? 0 : frame;
    if (used != m_frame) writeKey();
    m_frame = used;
    m_value = std::move(value);
  }

  /// No key was added. MLT takes an animation without one for the number 0.
  bool isEmpty() const { return m_frame < 0; }

  void finish() {
    writeKey();
    m_out.write("</property>\n");
  }

 private:
  void writeKey() {
    if (m_frame < 0) return;
    if (!m_isFirst) m_out.write(";");
    m_isFirst = false;
    m_out.writeNumber(m_frame);
    m_out.write("|=");
    m_out.writeEscaped<text::XmlRule>(m_value);
  }

  TextSink& m_out;
  std::int64_t m_frame = -1;  // of the key that is not yet written, -1 for none
  std::string m_value;
  bool m_isFirst = true;
};

namespace detail {

// Collects the value of a key from what series::describe names.
class MltValueRow {
 public:
  explicit MltValueRow(const std::string& field) : m_field(field) {}

  template <class Value>
  void field(const char* name, const Value& value) {
    if (!m_field.empty() && m_field != name) return;
    if (!m_text.empty()) m_text += ' ';
    if constexpr (std::is_arithmetic_v<Value>) {
      m_text += text::NumberText(value);
    } else {
      m_text += '"';
      for (const char character : value) m_text += character == '"' ? '\'' : character;
      m_text += '"';
    }
  }

  template <class Number, std::size_t count>
  void numbers(const char* /*name*/, const char* const (&names)[count],
               const Number (&values)[count]) {
    for (std::size_t i = 0; i < count; ++i) field(names[i], values[i]);
  }

  std::string takeText() { return std::move(m_text); }

 private:
  const std::string& m_field;
  std::string m_text;
};

}  // namespace detail

template <class Record>
std::string mltValue(const Record& record, const std::string& field) {
  detail::MltValueRow row(field);
  if constexpr (std::is_same_v<Record, ZRKMetaData::CursorImage>) {
    row.field(series::kCursorImageFields[0].name, record.m_imageId);
  } else {
    series::describe(row, record);
  }
  return row.takeText();
}

}  // namespace formats
