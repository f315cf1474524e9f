// JSON text as the host writes it. docs/serialisation.md fixes it.
#pragma once

#include <ostream>
#include <string>

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"
#include "host/Kestova/RationalTime.h"

namespace Kestova {

/// Where JSON goes. The stream must outlive it.
class JSONOptions {
 public:
  explicit JSONOptions(std::ostream& out) : m_out(out) {}

  std::ostream& outStream() const { return m_out; }

 private:
  std::ostream& m_out;
};

/// `text` as a JSON string, valid whatever its bytes: what is no UTF-8 becomes U+FFFD.
KESTOVA_API std::string json_representation(const std::string& text);

/// The shortest text that reads back as the same number; null for what is no finite number.
KESTOVA_API std::string json_representation(double number);
KESTOVA_API std::string json_representation(int number);
KESTOVA_API std::string json_representation(int64 number);

/// A whole time as a number, another as the fraction in quotes.
KESTOVA_API std::string json_representation(const RationalTime& time);

/// The white space in front of a line at a level of indentation: two spaces each.
KESTOVA_API std::string json_indent(int level);

/// `name` as a key with its separator: "name" and " : ".
KESTOVA_API std::string json_keyname(const std::string& name);

}  // namespace Kestova
