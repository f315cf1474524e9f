#include "tools/keep/EditListFile.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace keep {

namespace {

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const int letter = std::tolower(static_cast<unsigned char>(digit));
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// A URL has %XX for some characters.
std::string decoded(std::string_view url) {
  std::string text;
  for (std::size_t at = 0; at < url.size(); ++at) {
    const bool isCoded = url[at] == '%' && url.size() - at > 2 && hexDigit(url[at + 1]) >= 0 &&
                         hexDigit(url[at + 2]) >= 0;
    text +=
        isCoded ? static_cast<char>(hexDigit(url[at + 1]) * 16 + hexDigit(url[at + 2])) : url[at];
    if (isCoded) at += 2;
  }
  return text;
}

// The file name without folder, in lower case where it is ASCII.
std::string leafOf(const std::string& source) {
  const bool isUrl = source.find("://") != std::string::npos;
  std::string name = isUrl ? decoded(source) : source;
  while (!name.empty() && (name.back() == '/' || name.back() == '\\')) name.pop_back();
  const std::size_t folder = name.find_last_of("/\\");
  if (folder != std::string::npos) name.erase(0, folder + 1);
  constexpr std::string_view kSidecar = ".streams";
  if (name.size() > kSidecar.size() && name.substr(name.size() - kSidecar.size()) == kSidecar) {
    name.resize(name.size() - kSidecar.size());
  }
  std::transform(name.begin(), name.end(), name.begin(), [](unsigned char character) {
    return static_cast<char>(std::tolower(character));
  });
  return name;
}

// What stands behind the last dot is the extension, unless it is a number ("take.1").
std::string stemOf(const std::string& leaf) {
  const std::size_t dot = leaf.rfind('.');
  if (dot == std::string::npos || dot == 0) return leaf;
  const bool isNumber = leaf.find_first_not_of("0123456789", dot + 1) == std::string::npos;
  return isNumber ? leaf : leaf.substr(0, dot);
}

// The stem of a source; the whole file name where that is the stem of the recording, because lists
// name clips without an extension too.
std::string stemFor(const std::string& source, const std::string& recording) {
  const std::string leaf = leafOf(source);
  return leaf == recording ? leaf : stemOf(leaf);
}

bool isConcatList(const std::string& text) {
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string_view line = std::string_view(text).substr(start, end - start);
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
    if (!line.empty() && line.front() != '#') {
      return line.substr(0, 8) == "ffconcat" || line.substr(0, 5) == "file " ||
             line.substr(0, 5) == "file\t";
    }
    start = end + 1;
  }
  return false;
}

// Whether a line is an event or one of those that stand in front of them.
bool isCmx3600(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string first;
    if (!(words >> first)) continue;
    if (first == "TITLE:" || first == "FCM:" ||
        first.find_first_not_of("0123456789") == std::string::npos) {
      return true;
    }
  }
  return false;
}

// Sorts by the edited timeline. Only formats with lines can have parts that overlap.
void requireNoOverlap(std::vector<EditEvent>& events) {
  const auto isBefore = [](const series::ExactSeconds& left, const series::ExactSeconds& right) {
    return series::minus(left, right).numerator < 0;
  };
  std::stable_sort(events.begin(), events.end(), [&](const auto& left, const auto& right) {
    return isBefore(left.piece.at, right.piece.at);
  });
  for (std::size_t index = 1; index < events.size(); ++index) {
    const EditEvent& front = events[index - 1];
    const Piece& piece = front.piece;
    const auto end = series::plus(piece.at, series::minus(*piece.to, piece.from));
    if (isBefore(events[index].piece.at, end)) {
      throw std::invalid_argument("line " + std::to_string(events[index].line) + ": the part of " +
                                  events[index].source + " begins before that of line " +
                                  std::to_string(front.line) + " ends");
    }
  }
}

std::vector<EditEvent> readEvents(const std::string& text,
                                  const std::optional<series::FrameRate>& rate) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start != std::string::npos && text[start] == '{') return readOtio(text);
  if (isConcatList(text)) return readConcatList(text);
  if (!isCmx3600(text)) {
    throw std::invalid_argument(
        "is no list of cuts; a concat script of FFmpeg begins with ffconcat or file, CMX 3600 with "
        "TITLE:, OpenTimelineIO with {");
  }
  if (!rate) {
    throw std::invalid_argument("an edit decision list needs the rate of its timecodes (--rate)");
  }
  return readCmx3600(text, *rate);
}

}  // namespace

std::vector<Piece> readEditList(const std::string& text, const std::string& recording,
                                const std::optional<series::FrameRate>& rate) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  const bool isMarked = text.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0;
  auto events = readEvents(isMarked ? text.substr(kByteOrderMark.size()) : text, rate);
  if (events.empty()) throw std::invalid_argument("no part of a recording is listed");
  const std::string wanted = stemOf(leafOf(recording));
  std::set<std::string> stems;
  for (const EditEvent& event : events) stems.insert(stemFor(event.source, wanted));
  if (stems.size() > 1 && stems.count(wanted) == 0) {
    std::string names;
    for (const std::string& stem : stems) names += " " + stem;
    throw std::invalid_argument("several recordings are listed, but none is called " + wanted +
                                ":" + names);
  }
  if (stems.size() > 1) {
    events.erase(std::remove_if(events.begin(), events.end(),
                                [&wanted](const EditEvent& event) {
                                  return stemFor(event.source, wanted) != wanted;
                                }),
                 events.end());
  }
  requireNoOverlap(events);
  std::vector<Piece> pieces;
  pieces.reserve(events.size());
  for (const EditEvent& event : events) pieces.push_back(event.piece);
  return pieces;
}

}  // namespace keep
