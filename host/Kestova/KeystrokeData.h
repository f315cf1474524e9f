// A keystroke: the character of the key and the flags of its event. A plain value.
#pragma once

#include <ostream>
#include <string>

namespace Kestova {

class KeystrokeData {
 public:
  int character() const { return m_character; }
  long eventFlags() const { return m_eventFlags; }
  void setCharacter(int character) { m_character = character; }
  void setEventFlags(long eventFlags) { m_eventFlags = eventFlags; }

 private:
  int m_character = 0;
  long m_eventFlags = 0;
};

inline bool operator==(const KeystrokeData& left, const KeystrokeData& right) {
  return left.character() == right.character() && left.eventFlags() == right.eventFlags();
}
inline bool operator!=(const KeystrokeData& left, const KeystrokeData& right) {
  return !(left == right);
}

/// Writes "(character,eventFlags)" in decimal, whatever the locale and the number format of the
/// stream.
inline std::ostream& operator<<(std::ostream& out, const KeystrokeData& data) {
  return out << '(' + std::to_string(data.character()) + ',' + std::to_string(data.eventFlags()) +
                    ')';
}

}  // namespace Kestova
