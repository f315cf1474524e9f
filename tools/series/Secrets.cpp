#include "tools/series/Secrets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "tools/series/AsciiCharacters.h"
#include "tools/series/RandomWord.h"

namespace series {

namespace {

constexpr std::size_t kMinCardDigits = 13;
constexpr std::size_t kMaxCardDigits = 19;

bool isSpace(char32_t c) {
  return c <= U' ' || (c >= 0x7F && c <= 0xA0) || (c >= 0x2000 && c <= 0x200B) || c == 0x2028 ||
         c == 0x2029 || c == 0x3000 || (c >= 0xE000 && c <= 0xF8FF);
}

// ISO/IEC 7812-1, annex B.
bool passesLuhn(std::string_view digits) {
  int sum = 0;
  bool isDoubled = false;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
    const int value = (*digit - '0') * (isDoubled ? 2 : 1);
    sum += value > 9 ? value - 9 : value;
    isDoubled = !isDoubled;
  }
  return sum % 10 == 0;
}

bool isCardNumber(std::string_view digits) {
  return digits.size() >= kMinCardDigits && digits.size() <= kMaxCardDigits &&
         digits.find_first_not_of(digits.front()) != std::string_view::npos && passesLuhn(digits);
}

// Whether groups of these lengths are how card numbers are printed. Other groups are lists of
// numbers, of which every tenth passes the check.
bool isPrintedLikeACard(const std::vector<std::size_t>& lengths) {
  if (lengths.size() == 1) return true;
  if (lengths == std::vector<std::size_t>{6, 13}) return true;
  if (lengths.size() == 3 && lengths[0] == 4 && lengths[1] == 6) {
    return lengths[2] == 4 || lengths[2] == 5;
  }
  return lengths.size() >= 4 && lengths.back() <= 4 &&
         std::all_of(lengths.begin(), lengths.end() - 1, [](std::size_t n) { return n == 4; });
}

bool isLetterOrDigit(char32_t c) {
  return isAsciiDigit(c) || isAsciiLetter(c) || c > 0x7F;
}

bool isLocalCharacter(char32_t c) {
  return isLetterOrDigit(c) ||
         std::u32string_view(U".!#$%&'*+/=?^_`{|}~-").find(c) != std::u32string_view::npos;
}

// A domain name: two labels or more, the last one without digits.
bool isDomain(std::u32string_view name) {
  const std::size_t dot = name.rfind(U'.');
  if (dot == std::u32string_view::npos || dot == 0 || name.size() - dot < 3) return false;
  if (name.find(U"..") != std::u32string_view::npos || name.front() == U'.') return false;
  const auto top = name.substr(dot + 1);
  return std::none_of(top.begin(), top.end(), isAsciiDigit) ||
         top.substr(0, 4) == std::u32string_view(U"xn--");
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

bool isWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (static_cast<unsigned char>(c) > 0x7F);
}

bool hasWord(std::string_view text, std::string_view word) {
  for (auto at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
    const auto end = at + word.size();
    if ((at == 0 || !isWordCharacter(text[at - 1])) &&
        (end == text.size() || !isWordCharacter(text[end]))) {
      return true;
    }
  }
  return false;
}

}  // namespace

const char* nameOf(SecretKind kind) {
  switch (kind) {
    case SecretKind::EmailAddress:
      return "email_address";
    case SecretKind::CardNumber:
      return "card_number";
    case SecretKind::RandomWord:
      return "random_word";
    case SecretKind::PasswordEntry:
      break;
  }
  return "password_entry";
}

void SecretFinder::add(double seconds, char32_t character) {
  if (isAsciiDigit(character)) {
    addDigit(seconds, character);
  } else if (m_isGroupOpen && (character == U' ' || character == U'-' || character == 0xA0)) {
    closeGroup();
  } else {
    endDigits();
  }
  if (isSpace(character)) {
    endWord();
    return;
  }
  if (m_word.size() == kMaxWord) endWord();
  m_word += character;
  m_seconds.push_back(seconds);
}

void SecretFinder::finish() {
  endDigits();
  endWord();
}

void SecretFinder::addDigit(double seconds, char32_t character) {
  if (!m_isGroupOpen) {
    constexpr std::size_t kMaxGroups = 5;  // 4-4-4-4-3
    if (m_groups.size() == kMaxGroups) m_groups.erase(m_groups.begin());
    m_groups.push_back({seconds, {}});
    m_isGroupOpen = true;
  }
  std::string& digits = m_groups.back().digits;
  if (digits.size() <= kMaxCardDigits) digits += static_cast<char>(character);
}

void SecretFinder::closeGroup() {
  m_isGroupOpen = false;
  std::string digits;
  std::vector<std::size_t> lengths;
  for (auto group = m_groups.rbegin(); group != m_groups.rend(); ++group) {
    digits.insert(0, group->digits);
    lengths.insert(lengths.begin(), group->digits.size());
    if (isPrintedLikeACard(lengths) && isCardNumber(digits)) {
      m_found({SecretKind::CardNumber, group->seconds, digits.size()});
      m_groups.clear();
      return;
    }
  }
}

void SecretFinder::endDigits() {
  if (m_isGroupOpen) closeGroup();
  m_groups.clear();
}

void SecretFinder::endWord() {
  const std::u32string_view word = m_word;
  std::size_t searched = 0;
  bool hasAddress = false;
  for (auto at = word.find(U'@'); at != std::u32string_view::npos; at = word.find(U'@', at + 1)) {
    auto begin = at;
    while (begin > searched && isLocalCharacter(word[begin - 1])) --begin;
    auto end = at + 1;
    while (end < word.size() &&
           (isLetterOrDigit(word[end]) || word[end] == U'-' || word[end] == U'.')) {
      ++end;
    }
    const auto next = end;
    while (end > at + 1 && !isLetterOrDigit(word[end - 1])) --end;
    if (begin < at && isDomain(word.substr(at + 1, end - at - 1))) {
      m_found({SecretKind::EmailAddress, m_seconds[begin], end - begin});
      hasAddress = true;
    }
    searched = next;
  }
  if (!hasAddress && isRandomWord(word)) {
    m_found({SecretKind::RandomWord, m_seconds.front(), word.size()});
  }
  m_word.clear();
  m_seconds.clear();
}

void TypedText::add(double seconds, ZRKMetaData::int32 character) {
  if (character == 0x08 || character == 0x7F) {
    if (!m_held.empty()) m_held.pop_back();
    return;
  }
  m_held.emplace_back(seconds, static_cast<char32_t>(character));
  if (character == '\n' || character == '\r') {
    finish();
  } else if (m_held.size() == kMaxHeld) {
    pass(kMaxHeld / 2);
  }
}

void TypedText::finish() {
  pass(m_held.size());
}

void TypedText::pass(std::size_t count) {
  const auto end = m_held.begin() + static_cast<std::ptrdiff_t>(count);
  std::for_each(m_held.begin(), end, [this](const auto& key) { m_typed(key.first, key.second); });
  m_held.erase(m_held.begin(), end);
}

bool isPasswordTitle(std::string_view title) {
  // English, German, French, Spanish, Portuguese, Dutch, Polish, Swedish, Danish, Russian in both
  // cases, Chinese in both scripts and Japanese.
  static constexpr std::array kParts = {"password",
                                        "passphrase",
                                        "passcode",
                                        "security code",
                                        "credential",
                                        "passwort",
                                        "kennwort",
                                        "mot de passe",
                                        "contrase\u00F1a",
                                        "palavra-passe",
                                        "wachtwoord",
                                        "has\u0142o",
                                        "l\u00F6senord",
                                        "adgangskode",
                                        "\u043F\u0430\u0440\u043E\u043B\u044C",
                                        "\u041F\u0430\u0440\u043E\u043B\u044C",
                                        "\u5BC6\u7801",
                                        "\u5BC6\u78BC",
                                        "\u30D1\u30B9\u30EF\u30FC\u30C9"};
  static constexpr std::array kWords = {"pin",     "login",   "log in", "log on", "logon",
                                        "sign in", "sign-in", "signin", "cvv",    "cvc",
                                        "otp",     "2fa",     "senha",  "parola", "anmelden"};
  const std::string text = lowerCase(title);
  return std::any_of(kParts.begin(), kParts.end(),
                     [&](const char* part) { return text.find(part) != std::string::npos; }) ||
         std::any_of(kWords.begin(), kWords.end(),
                     [&](const char* word) { return hasWord(text, word); });
}

void PasswordWindows::add(double seconds, std::string_view title) {
  if (std::isnan(seconds)) return;
  const bool isPassword = isPasswordTitle(title);
  const bool changesNothing = !m_titles.empty() && m_titles.back().seconds <= seconds &&
                              m_titles.back().isPassword == isPassword;
  if (!changesNothing) m_titles.push_back({seconds, isPassword});
}

void PasswordWindows::finishStream() {
  std::stable_sort(m_titles.begin(), m_titles.end(), [](const Change& left, const Change& right) {
    return left.seconds < right.seconds;
  });
  for (std::size_t i = 0; i < m_titles.size(); ++i) {
    if (!m_titles[i].isPassword) continue;
    const double end =
        i + 1 < m_titles.size() ? m_titles[i + 1].seconds : std::numeric_limits<double>::infinity();
    m_windows.emplace_back(m_titles[i].seconds, end);
  }
  m_titles.clear();
  std::sort(m_windows.begin(), m_windows.end());
  std::size_t count = 0;
  for (const auto& window : m_windows) {
    if (count != 0 && window.first <= m_windows[count - 1].second) {
      m_windows[count - 1].second = std::max(m_windows[count - 1].second, window.second);
    } else {
      m_windows[count++] = window;
    }
  }
  m_windows.resize(count);
}

bool PasswordWindows::contains(double seconds) const {
  const auto after =
      std::upper_bound(m_windows.begin(), m_windows.end(), seconds,
                       [](double time, const auto& window) { return time < window.first; });
  return after != m_windows.begin() && seconds < std::prev(after)->second;
}

}  // namespace series
