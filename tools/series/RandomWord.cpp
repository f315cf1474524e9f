#include "tools/series/RandomWord.h"

#include <algorithm>
#include <cmath>

#include "tools/series/AsciiCharacters.h"

namespace series {

namespace {

// A word is random when this many bits say so. English texts stay below 8 and names in source code
// mostly below 10; of random words of 12 letters and digits, 95 % are above.
constexpr double kMinEvidence = 10;

// A part of a word has less reason to be looked at.
constexpr std::size_t kMinRandomPart = 12;

// Words with more symbols than this are markup or source code.
constexpr double kMinLetterShare = 0.5;

// The bits of a letter after another (rows: the beginning of a word, then a to z), twice, from "A"
// for 0. They are logarithms of the frequencies of letter pairs in the word lists wamerican,
// wngerman, wfrench, wspanish, witalian, wportuguese and wdutch of Debian 12, without accents, each
// language with the same weight.
constexpr const char* kPairBits[] = {
    "HJHIIKKLJOMKJMLIQIGJMKMXTN", "MKJITMKPJQOHIGQLRFHHKKTTQO", "FJTQESPSGRTHSSGVZGLOITSZQR",
    "FZKVHZZEHZKLWVFZSJSKJYZURZ", "GQSNDTPRFRTOQRGSXJLRJQQWRU", "LMKKLNLPJQOIJFPMREGJNNQOSM",
    "GQWOFHORFURISSGSZHLJISRZRQ", "GQWPDUKLHURJPKITZHINHTSZRT", "FQWTESQTGYRKNLGUZJLIJVNZNS",
    "HNIKHLJVSMPIJFINPKGIQLYSZK", "ERWKELOSKZIOQKGOZVKOGNSZZN", "GNSQEQONIOKIPLHPYIIHJPMYOQ",
    "FOOLFOOMFVPGNPHOUSLJJOTUMQ", "FJRQFTSTGZTRIQEHZTNPKUTXSU", "HPJGHMHNIQMPRKIRQPHFMNRWTN",
    "OLKLLMKQMRPHIEKKQFGJJMPRQP", "FSTTFNSLGTUITTGJZFMLJTVZSV", "UYZZZZZZTZZVZZYZYZYYAZXZZZ",
    "EMMKEPMQGUNNLLHOSKJJKOQZQP", "HNHQFNOMHTPNLPJJQQGFKOQZQS", "FQRUDSQMFPSORSHSZHKJJRQZPO",
    "JKJKHKKPHQPHJGOLTGHIPOOQTO", "EZZXDZZZFZZNZZGZZMTYNOZZVZ", "EPTODSSLFUQNRMHRZMLPKTTZSV",
    "GTHVGRULFYSNSVJFTVRGKLSJMT", "GLIKGPMPJTPIIIIIWJGKKRNQVQ", "DQRWFTQTFZTPRQHSUVSMGULZRH",
};

// Bits in the text model. Digits are all equally likely; changes between letters and digits are
// rare in a text and become rarer with each.
constexpr double kRepeated = 2;
constexpr double kCapitalised = 0.5;
constexpr double kCaseChange = 4;
constexpr double kDigit = 3.3;
constexpr double kRepeatedDigit = 2;
constexpr double kFirstDigits = 3;
constexpr double kFirstLettersAfterDigits = 4;
constexpr double kFurtherChange = 6;
constexpr double kAfterSymbol = 0.5;
constexpr double kUsualSymbol = 5;
constexpr double kOtherSymbol = 9;

// Symbols that generators of passwords choose from.
constexpr double kSymbolCount = 12;

bool isAsciiLetterOrDigit(char32_t c) {
  return isAsciiLetter(c) || isAsciiDigit(c);
}

class TextModel {
 public:
  void add(char32_t c) {
    if (isAsciiLetter(c)) {
      addLetter(c);
    } else if (isAsciiDigit(c)) {
      if (isAsciiLetter(m_before)) m_bits += m_changes++ == 0 ? kFirstDigits : kFurtherChange;
      m_bits += c == m_before ? kRepeatedDigit : kDigit;
    } else {
      const bool isUsual = std::u32string_view(U"-_./:'=,()").find(c) != std::u32string_view::npos;
      m_bits += c == m_before ? kRepeated : isUsual ? kUsualSymbol : kOtherSymbol;
    }
    if (!isAsciiLetter(c)) m_letters = 0;
    m_before = c;
  }

  double bits() const { return m_bits; }

 private:
  void addLetter(char32_t c) {
    const std::size_t letter = isAsciiLower(c) ? c - U'a' : c - U'A';
    if (m_letters == 0) {
      m_row = 0;
      if (isAsciiDigit(m_before)) {
        m_bits += m_changes++ == 0 ? kFirstLettersAfterDigits : kFurtherChange;
      } else if (m_before != 0) {
        m_bits += kAfterSymbol;
      }
    } else if (isAsciiLower(c) != isAsciiLower(m_before)) {
      m_bits += isAsciiLower(c) && m_letters == 1 ? kCapitalised : kCaseChange;
      if (isAsciiUpper(c)) m_row = 0;  // a word within the word
    }
    const double bits = (kPairBits[m_row][letter] - 'A') / 2.0;
    m_bits += c == m_before ? std::min(bits, kRepeated) : bits;
    m_row = letter + 1;
    ++m_letters;
  }

  double m_bits = 0;
  char32_t m_before = 0;
  std::size_t m_row = 0;
  std::size_t m_letters = 0;  // of the run that ends here
  int m_changes = 0;          // between letters and digits
};

double randomBits(std::u32string_view word) {
  const auto has = [word](auto isKind) { return std::any_of(word.begin(), word.end(), isKind); };
  const bool hasLower = has(isAsciiLower);
  const bool hasUpper = has(isAsciiUpper);
  const bool isHexadecimal = std::all_of(word.begin(), word.end(), [](char32_t c) {
    return isAsciiDigit(c) || (c >= U'a' && c <= U'f') || (c >= U'A' && c <= U'F');
  });
  const double letters = isHexadecimal ? 6 : 26;
  const double kinds =
      letters * (hasLower ? 1 : 0) + letters * (hasUpper ? 1 : 0) +
      (isHexadecimal || has(isAsciiDigit) ? 10 : 0) +
      (std::all_of(word.begin(), word.end(), isAsciiLetterOrDigit) ? 0 : kSymbolCount);
  return static_cast<double>(word.size()) * std::log2(kinds);
}

bool hasEvidence(std::u32string_view word) {
  TextModel text;
  for (const char32_t c : word) text.add(c);
  return text.bits() - randomBits(word) >= kMinEvidence;
}

}  // namespace

bool isRandomWord(std::u32string_view word) {
  // Punctuation around a word is no part of it.
  while (!word.empty() && !isAsciiLetterOrDigit(word.front())) word.remove_prefix(1);
  while (!word.empty() && !isAsciiLetterOrDigit(word.back())) word.remove_suffix(1);
  const auto known = std::count_if(word.begin(), word.end(), isAsciiLetterOrDigit);
  const auto other = std::count_if(word.begin(), word.end(), [](char32_t c) { return c > 0x7F; });
  if (other == 0 && word.size() >= kMinRandomWord &&
      static_cast<double>(known) >= kMinLetterShare * static_cast<double>(word.size()) &&
      hasEvidence(word)) {
    return true;
  }
  while (!word.empty()) {
    const auto end = std::find_if_not(word.begin(), word.end(), isAsciiLetterOrDigit);
    const auto length = static_cast<std::size_t>(end - word.begin());
    if (length >= kMinRandomPart && hasEvidence(word.substr(0, length))) return true;
    word.remove_prefix(std::min(length + 1, word.size()));
  }
  return false;
}

}  // namespace series
