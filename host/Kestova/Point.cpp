#include "host/Kestova/Point.h"

#include <charconv>

namespace Kestova {

namespace {

char* append(char* to, char* end, double number) {
  return std::to_chars(to, end, number).ptr;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Point& point) {
  constexpr std::size_t kLongest = 96;  // three numbers of at most 24 characters
  char text[kLongest];
  char* const end = text + kLongest;
  char* next = text;
  *next++ = '(';
  next = append(next, end, point.x);
  *next++ = ',';
  next = append(next, end, point.y);
  *next++ = ',';
  next = append(next, end, point.z);
  *next++ = ')';
  return out.write(text, next - text);
}

}  // namespace Kestova
