#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/keep/EditListFile.h"

namespace keep {

using series::ExactSeconds;

namespace {

// What a file of the list states; times are nothing where they are not given.
struct ListedFile {
  std::string name;
  int line;
  ExactSeconds in;
  std::optional<ExactSeconds> out;
  std::optional<ExactSeconds> duration;
};

// The next word: white space ends it, a back slash takes the next character as it is, and quotes
// ('') take all characters as they are.
std::string nextWord(std::string_view& rest) {
  constexpr std::string_view kSpace = " \t\r";
  rest.remove_prefix(std::min(rest.find_first_not_of(kSpace), rest.size()));
  std::string word;
  bool isQuoted = false;
  while (!rest.empty() && (isQuoted || kSpace.find(rest.front()) == std::string_view::npos)) {
    if (rest.front() == '\'') {
      isQuoted = !isQuoted;
    } else {
      if (rest.front() == '\\' && !isQuoted && rest.size() > 1) rest.remove_prefix(1);
      word += rest.front();
    }
    rest.remove_prefix(1);
  }
  return word;
}

// Seconds or a clock time, or whole milliseconds or microseconds.
ExactSeconds timeOf(const std::string& text) {
  for (const auto& [unit, perSecond] : {std::pair("ms", 1000), std::pair("us", 1'000'000)}) {
    if (text.size() > 2 && text.compare(text.size() - 2, 2, unit) == 0) {
      return series::parseTime(text.substr(0, text.size() - 2) + "/" + std::to_string(perSecond),
                               std::nullopt);
    }
  }
  return series::parseTime(text, std::nullopt);
}

}  // namespace

std::vector<EditEvent> readConcatList(const std::string& text) {
  const auto failure = [](int number, const std::string& why) {
    return std::invalid_argument("line " + std::to_string(number) + ": " + why);
  };
  std::vector<ListedFile> files;
  std::istringstream lines(text);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    std::string_view rest = line;
    const std::string directive = nextWord(rest);
    if (directive == "file") {
      files.push_back({nextWord(rest), number, {}, {}, {}});
      if (files.back().name.empty()) throw failure(number, "file has no name behind it");
      continue;
    }
    const bool isTime =
        directive == "inpoint" || directive == "outpoint" || directive == "duration";
    if (!isTime) continue;  // what the others set moves no file
    if (files.empty()) throw failure(number, directive + " stands in front of the first file");
    try {
      const ExactSeconds time = timeOf(nextWord(rest));
      if (directive == "inpoint") files.back().in = time;
      if (directive == "outpoint") files.back().out = time;
      if (directive == "duration") files.back().duration = time;
    } catch (const std::invalid_argument& error) {
      throw failure(number, error.what());
    }
  }
  std::vector<EditEvent> events;
  ExactSeconds at;
  for (const ListedFile& file : files) {
    if (!events.empty() && !events.back().piece.to) {
      throw failure(events.back().line, "the end of " + events.back().source +
                                            " is not listed; add an outpoint or a duration");
    }
    if (file.out && series::minus(*file.out, file.in).numerator < 0) {
      throw failure(file.line, file.name + " has its outpoint before its inpoint");
    }
    Piece piece{file.in, file.out, at};
    // With both, the duration says where the next file begins, and the outpoint where packets end.
    std::optional<ExactSeconds> length = file.duration;
    if (!length && file.out) length = series::minus(*file.out, file.in);
    if (!piece.to && length) piece.to = series::plus(file.in, *length);
    if (length && length->numerator < 0) {
      throw failure(file.line, file.name + " has a negative duration");
    }
    events.push_back({file.name, piece, file.line});
    if (length) at = series::plus(at, *length);
  }
  return events;
}

}  // namespace keep
