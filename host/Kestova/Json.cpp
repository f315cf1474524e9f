#include "host/Kestova/Json.h"

#include <cmath>

#include "host/Kestova/NumberText.h"
#include "text/Utf8.h"

namespace Kestova {

namespace {

void appendEscaped(std::string& json, char character) {
  static constexpr char kDigits[] = "0123456789abcdef";
  static constexpr std::string_view kShortForms = "\"\"\\\\\bb\ff\nn\rr\tt";
  for (std::size_t form = 0; form < kShortForms.size(); form += 2) {
    if (kShortForms[form] == character) {
      json += '\\';
      json += kShortForms[form + 1];
      return;
    }
  }
  const auto byte = static_cast<unsigned char>(character);
  if (byte >= 0x20) {
    json += character;
  } else {
    json += "\\u00";
    json += kDigits[byte >> 4U];
    json += kDigits[byte & 0xFU];
  }
}

template <class Number>
std::string shortestText(Number number) {
  return std::string(NumberText(number));
}

}  // namespace

std::string json_representation(const std::string& value) {
  std::string json = "\"";
  for (const char character : text::wellFormedUtf8(value)) appendEscaped(json, character);
  json += '"';
  return json;
}

std::string json_representation(double number) {
  return std::isfinite(number) ? shortestText(number) : "null";
}

std::string json_representation(int number) {
  return shortestText(number);
}

std::string json_representation(int64 number) {
  return shortestText(number);
}

std::string json_representation(const RationalTime& time) {
  return shortestText(JSONTime{time});
}

std::string json_indent(int level) {
  return std::string(2 * static_cast<std::size_t>(level), ' ');
}

std::string json_keyname(const std::string& name) {
  return json_representation(name) + " : ";
}

}  // namespace Kestova
