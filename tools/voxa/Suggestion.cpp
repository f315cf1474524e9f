#include "tools/voxa/Suggestion.h"

#include <algorithm>

namespace voxa {

namespace {

// The optimal string alignment distance: the number of edits from one word to the other, where an
// exchange of neighbours is one edit.
std::size_t editDistance(std::string_view from, std::string_view to) {
  std::vector<std::vector<std::size_t>> distance(from.size() + 1,
                                                 std::vector<std::size_t>(to.size() + 1));
  for (std::size_t i = 0; i <= from.size(); ++i) distance[i][0] = i;
  for (std::size_t j = 0; j <= to.size(); ++j) distance[0][j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t replaced = distance[i - 1][j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      std::size_t& least = distance[i][j];
      least = std::min({replaced, distance[i - 1][j] + 1, distance[i][j - 1] + 1});
      const bool isExchange =
          i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (isExchange) least = std::min(least, distance[i - 2][j - 2] + 1);
    }
  }
  return distance.back().back();
}

}  // namespace

std::string suggestion(std::string_view typed, const std::vector<std::string>& names) {
  constexpr std::size_t kMaxTypedBytes = 64;  // far longer than any name
  if (typed.empty() || typed.size() > kMaxTypedBytes) return {};
  const std::string* closest = nullptr;
  std::size_t least = 0;
  for (const std::string& name : names) {
    const bool isBeginning = name.compare(0, typed.size(), typed) == 0;
    const std::size_t distance = isBeginning ? 0 : editDistance(typed, name);
    if (distance > std::max<std::size_t>(1, name.size() / 3)) continue;
    if (closest != nullptr && distance >= least) continue;
    closest = &name;
    least = distance;
  }
  return closest == nullptr ? std::string() : "; did you mean '" + *closest + "'?";
}

}  // namespace voxa
