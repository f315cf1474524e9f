#include "tools/keep/EditListFile.h"

#include <algorithm>
#include <cctype>
#include <set>
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

// The file name without folder and extension, in lower case where it is ASCII.
std::string stemOf(const std::string& source) {
  const bool isUrl = source.find("://") != std::string::npos;
  std::string name = isUrl ? decoded(source) : source;
  while (!name.empty() && (name.back() == '/' || name.back() == '\\')) name.pop_back();
  const std::size_t folder = name.find_last_of("/\\");
  if (folder != std::string::npos) name.erase(0, folder + 1);
  constexpr std::string_view kSidecar = ".streams";
  if (name.size() > kSidecar.size() && name.substr(name.size() - kSidecar.size()) == kSidecar) {
    name.resize(name.size() - kSidecar.size());
  }
  const std::size_t dot = name.rfind('.');
  if (dot != std::string::npos && dot != 0) name.resize(dot);
  std::transform(name.begin(), name.end(), name.begin(), [](unsigned char character) {
    return static_cast<char>(std::tolower(character));
  });
  return name;
}

bool isConcatList(const std::string& text) {
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string_view line = std::string_view(text).substr(start, end - start);
    line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
    if (!line.empty() && line.front() != '#') {
      return line.substr(0, 8) == "ffconcat" || line.substr(0, 5) == "file ";
    }
    start = end + 1;
  }
  return false;
}

std::vector<EditEvent> readEvents(const std::string& text,
                                  const std::optional<series::FrameRate>& rate) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start != std::string::npos && text[start] == '{') return readOtio(text);
  if (isConcatList(text)) return readConcatList(text);
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
  const auto events = readEvents(isMarked ? text.substr(kByteOrderMark.size()) : text, rate);
  if (events.empty()) throw std::invalid_argument("no part of a recording is listed");
  const std::string wanted = stemOf(recording);
  std::set<std::string> stems;
  for (const EditEvent& event : events) stems.insert(stemOf(event.source));
  if (stems.size() > 1 && stems.count(wanted) == 0) {
    std::string names;
    for (const std::string& stem : stems) names += " " + stem;
    throw std::invalid_argument("several recordings are listed, but none is called " + wanted +
                                ":" + names);
  }
  std::vector<Piece> pieces;
  for (const EditEvent& event : events) {
    if (stems.size() == 1 || stemOf(event.source) == wanted) pieces.push_back(event.piece);
  }
  return pieces;
}

}  // namespace keep
