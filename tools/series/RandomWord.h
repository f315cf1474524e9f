// Tells random words, such as passwords and access keys, from words that people write.
//
// Two models state in how many bits each would store a word: a text model, with the frequencies of
// letter pairs and a cost for each change of case, digit or symbol, and a random model, in which
// all characters of the kinds that the word has are equally likely. The bits that the second saves
// are the evidence. Every function may be called from any thread.
#pragma once

#include <string_view>

namespace series {

/// Shorter words are never random: too many names and abbreviations look like them.
constexpr std::size_t kMinRandomWord = 10;

/// Whether the word, or a part of it between symbols, was probably chosen by chance. `word` holds
/// code points without white space. Time is linear in its length.
bool isRandomWord(std::u32string_view word);

}  // namespace series
