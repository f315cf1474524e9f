// Finds what looks like a secret in a text that is read character by character: e-mail addresses,
// card numbers and random words. docs/privacy.md says how each is recognised.
//
// Memory does not grow with the text. Used by one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ZRKMetaData/src/ZRKMIntegers.h"

namespace series {

enum class SecretKind : std::uint8_t { EmailAddress, CardNumber, RandomWord, PasswordEntry };

constexpr std::size_t kSecretKindCount = 4;

/// As JSON spells it, and with spaces for the underscores as people do: "email_address".
const char* nameOf(SecretKind kind);

struct Secret {
  SecretKind kind{};
  double seconds = 0;          ///< of its first character
  std::size_t characters = 0;  ///< its length
};

class SecretFinder {
 public:
  /// `found` is called with each secret, once its end is known.
  explicit SecretFinder(std::function<void(const Secret&)> found) : m_found(std::move(found)) {}

  /// The next character, a code point. White space and controls end a word.
  void add(double seconds, char32_t character);

  /// Ends the text. The next character begins another one.
  void finish();

 private:
  // A longer word is searched in pieces of this length. An address has at most 254 characters.
  static constexpr std::size_t kMaxWord = 512;

  void addDigit(double seconds, char32_t character);
  void endDigits();
  void closeGroup();
  void endWord();

  // Digits without a separator in between. `digits` holds at most one more than a card number has.
  struct DigitGroup {
    double seconds;
    std::string digits;
  };

  std::function<void(const Secret&)> m_found;
  std::u32string m_word;
  std::vector<double> m_seconds;     // of each character of the word
  std::vector<DigitGroup> m_groups;  // the latest, the open one last
  bool m_isGroupOpen = false;
};

/// The code points of what was typed. A backspace or delete key takes back the character before it.
/// Used by one thread.
class TypedText {
 public:
  using Typed = std::function<void(double seconds, char32_t character)>;

  /// `typed` gets each character once it can no longer be taken back by the keys that follow: at
  /// the end of a line, or when more than 1024 characters follow.
  explicit TypedText(Typed typed) : m_typed(std::move(typed)) {}

  void add(double seconds, ZRKMetaData::int32 character);

  /// Passes on what is held.
  void finish();

 private:
  static constexpr std::size_t kMaxHeld = 2048;

  void pass(std::size_t count);

  Typed m_typed;
  std::vector<std::pair<double, char32_t>> m_held;
};

/// Whether a window of this title asks for a password: it names one in one of several languages, or
/// a login.
bool isPasswordTitle(std::string_view title);

/// When windows with a password title were shown, by the texts of one or more streams. Memory grows
/// with the number of changes between such titles and others.
class PasswordWindows {
 public:
  /// A title of the stream that was begun last, which holds until the next one.
  void add(double seconds, std::string_view title);

  /// Ends a stream. Titles of the next stream are independent of its titles.
  void finishStream();

  /// Whether such a window is shown. Requires: `finishStream` was called after the last title.
  bool contains(double seconds) const;

 private:
  struct Change {
    double seconds;
    bool isPassword;
  };

  std::vector<Change> m_titles;                      // of the present stream
  std::vector<std::pair<double, double>> m_windows;  // from, to; sorted and disjoint
};

}  // namespace series
