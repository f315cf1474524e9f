#include "tools/voxa/GuessedType.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

namespace voxa {

namespace {

// The likeliest types, each with what decides on it.
std::string candidatesOf(const series::Guess& guess) {
  constexpr std::size_t kMinListed = 2;
  constexpr std::size_t kMaxListed = 3;
  std::string text = guess.isUnknown ? "; no type fits" : "";
  const std::size_t count = std::clamp(guess.tieCount, kMinListed, kMaxListed);
  for (std::size_t index = 0; index < std::min(count, guess.candidates.size()); ++index) {
    const auto& candidate = guess.candidates[index];
    text += fmt::format("; {} ({})", series::infoOf(candidate.type).name, candidate.decisive);
  }
  return text;
}

}  // namespace

std::string guessedText(const std::string& stream, series::RecordType type) {
  return fmt::format("{} read as {} (guessed; override with --as)", stream,
                     series::infoOf(type).name);
}

std::string doubtText(const std::vector<std::pair<std::string, series::Guess>>& streams) {
  std::string text;
  std::string options;
  for (const auto& [stream, guess] : streams) {
    text += text.empty() ? fmt::format("the record type of {} is not certain", stream)
                         : fmt::format("; nor is that of {}", stream);
    text += candidatesOf(guess);
    options += fmt::format(" --as {}=TYPE", stream);
  }
  return text + "; use" + options;
}

}  // namespace voxa
