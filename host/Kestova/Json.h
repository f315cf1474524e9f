// JSON text as the host writes it. docs/serialisation.md specifies it. No locale changes
// the text. The functions may be called from any thread.
#pragma once

#include <ostream>
#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"
#include "host/Kestova/RationalTime.h"

namespace Kestova {

/// The destination of JSON. Does not own the stream, which must outlive it.
class JSONOptions {
 public:
  explicit JSONOptions(std::ostream& out) : m_out(out) {}

  std::ostream& outStream() const { return m_out; }

 private:
  std::ostream& m_out;
};

/// Returns `text` as a JSON string. It is valid for any bytes: malformed UTF-8 becomes U+FFFD.
KESTOVA_API std::string json_representation(const std::string& text);

/// Returns the shortest text that reads back as the same number; null for NaN and infinities.
KESTOVA_API std::string json_representation(double number);
KESTOVA_API std::string json_representation(int number);
KESTOVA_API std::string json_representation(int64 number);

/// Returns a whole time as a number, any other as a quoted fraction: "21/2".
KESTOVA_API std::string json_representation(const RationalTime& time);

/// Returns the white space at the start of a line: two spaces per level of indentation.
KESTOVA_API std::string json_indent(int level);

/// Returns `name` as a JSON string, followed by the separator " : ".
KESTOVA_API std::string json_keyname(const std::string& name);

}  // namespace Kestova
