// Classes of ASCII characters. They do not depend on the locale.
#pragma once

namespace series {

inline bool isAsciiLower(char32_t c) {
  return c >= U'a' && c <= U'z';
}

inline bool isAsciiUpper(char32_t c) {
  return c >= U'A' && c <= U'Z';
}

inline bool isAsciiLetter(char32_t c) {
  return isAsciiLower(c) || isAsciiUpper(c);
}

inline bool isAsciiDigit(char32_t c) {
  return c >= U'0' && c <= U'9';
}

}  // namespace series
