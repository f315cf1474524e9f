#include "host/Kestova/Json.h"

#include <cmath>

#include "host/Kestova/NumberText.h"
#include "text/JsonText.h"

namespace Kestova {

namespace {

template <class Number>
std::string shortestText(Number number) {
  return std::string(NumberText(number));
}

}  // namespace

std::string json_representation(const std::string& value) {
  return text::jsonString(value);
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
