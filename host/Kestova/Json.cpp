#include "host/Kestova/Json.h"

#include <charconv>
#include <cmath>

#include "host/Kestova/Utf8.h"

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
  constexpr std::size_t kLongest = 32;
  char text[kLongest];
  const auto result = std::to_chars(text, text + kLongest, number);
  return {text, result.ptr};
}

}  // namespace

std::string json_representation(const std::string& text) {
  std::string json = "\"";
  for (const char character : wellFormedUtf8(text)) appendEscaped(json, character);
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
  std::string numerator = shortestText(time.numerator());
  if (time.isWhole()) return numerator;
  return '"' + numerator + '/' + shortestText(time.denominator()) + '"';
}

std::string json_indent(int level) {
  return std::string(2 * static_cast<std::size_t>(level), ' ');
}

std::string json_keyname(const std::string& name) {
  return json_representation(name) + " : ";
}

}  // namespace Kestova
