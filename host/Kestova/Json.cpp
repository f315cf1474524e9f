#include "host/Kestova/Json.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "text/JsonText.h"
#include "text/NumberText.h"

namespace Kestova {

std::string json_representation(const std::string& value) {
  return text::jsonString(value);
}

std::string json_representation(double number) {
  return std::isfinite(number) ? std::string(text::NumberText(number)) : "null";
}

std::string json_representation(int number) {
  return std::string(text::NumberText(number));
}

std::string json_representation(int64 number) {
  return std::string(text::NumberText(number));
}

std::string json_representation(const RationalTime& time) {
  if (time.denominator() == 1) return json_representation(time.numerator());
  return '"' + json_representation(time.numerator()) + '/' +
         json_representation(time.denominator()) + '"';
}

std::string json_indent(int level) {
  return std::string(2 * static_cast<std::size_t>(std::max(level, 0)), ' ');
}

std::string json_keyname(const std::string& name) {
  return json_representation(name) + " : ";
}

}  // namespace Kestova
