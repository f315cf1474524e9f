#include "tools/formats/Column.h"

#include <array>
#include <climits>

#include "text/Base64.h"

namespace formats {

namespace {

constexpr std::size_t kOrders = 3;

// The differences of orders 0 to 2 of a sequence, word by word.
template <class Word>
class Differences {
 public:
  std::array<Word, kOrders> next(Word word) {
    const Word first = word - m_word;
    const Word second = first - m_first;
    m_word = word;
    m_first = first;
    return {word, first, second};
  }

 private:
  Word m_word = 0;
  Word m_first = 0;
};

template <class Word>
Word zigzag(Word difference) {
  const bool isNegative = difference >> (sizeof(Word) * CHAR_BIT - 1) != 0;
  return static_cast<Word>(difference << 1U) ^ (isNegative ? ~Word{0} : Word{0});
}

template <class Word>
std::size_t groupCount(Word number) {
  std::size_t count = 1;
  while ((number >>= 7U) != 0) ++count;
  return count;
}

template <class Word>
void appendGroups(std::string& bytes, Word number) {
  for (; number >= 0x80U; number >>= 7U) bytes += static_cast<char>(number | 0x80U);
  bytes += static_cast<char>(number);
}

template <class Word>
void appendPlain(std::string& bytes, Word word) {
  for (std::size_t i = 0; i < sizeof word; ++i) {
    bytes += static_cast<char>(word >> CHAR_BIT * i & 0xFFU);
  }
}

template <class Word>
ColumnText encode(const std::vector<Word>& words) {
  std::array<std::size_t, kOrders> sizes{};
  Differences<Word> measured;
  for (const Word word : words) {
    const auto differences = measured.next(word);
    for (std::size_t order = 0; order < kOrders; ++order) {
      sizes[order] += groupCount(zigzag(differences[order]));
    }
  }
  std::size_t best = 0;
  for (std::size_t order = 1; order < kOrders; ++order) {
    if (sizes[order] < sizes[best]) best = order;
  }
  const bool isPlain = words.size() * sizeof(Word) <= sizes[best];
  std::string bytes;
  bytes.reserve(isPlain ? words.size() * sizeof(Word) : sizes[best]);
  Differences<Word> written;
  for (const Word word : words) {
    if (isPlain) {
      appendPlain(bytes, word);
    } else {
      appendGroups(bytes, zigzag(written.next(word)[best]));
    }
  }
  return {isPlain ? ColumnText::kPlain : static_cast<int>(best), text::base64(bytes)};
}

}  // namespace

ColumnText columnText(const std::vector<std::uint32_t>& words) {
  return encode(words);
}

ColumnText columnText(const std::vector<std::uint64_t>& words) {
  return encode(words);
}

}  // namespace formats
