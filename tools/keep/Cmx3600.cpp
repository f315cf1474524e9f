#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "tools/keep/EditListFile.h"

namespace keep {

using series::ExactSeconds;
using series::FrameRate;

namespace {

std::invalid_argument failure(int line, const std::string& why) {
  return std::invalid_argument("line " + std::to_string(line) + ": " + why);
}

// The numbers of frames that timecodes mean (SMPTE ST 12-1).
class Timecodes {
 public:
  explicit Timecodes(const FrameRate& rate)
      : m_nominal(static_cast<std::int64_t>(std::lround(boost::rational_cast<double>(rate)))),
        m_canDrop((m_nominal == 30 || m_nominal == 60) && rate.denominator() != 1) {}

  std::int64_t nominal() const { return m_nominal; }

  // HH:MM:SS:FF, with a semicolon before the frames where numbers are dropped.
  std::int64_t frameAt(const std::string& text, bool isDropFrame, int line) const {
    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    std::int64_t seconds = 0;
    std::int64_t frames = 0;
    char colons[3] = {};
    std::istringstream in(text);
    in >> hours >> colons[0] >> minutes >> colons[1] >> seconds >> colons[2] >> frames;
    const bool isForm =
        in && in.peek() == std::istringstream::traits_type::eof() &&
        std::all_of(text.begin(), text.end(), [](char character) {
          return (character >= '0' && character <= '9') || character == ':' || character == ';';
        });
    if (!isForm || hours > 99 || minutes > 59 || seconds > 59 || frames >= m_nominal) {
      throw failure(
          line, text + " is no timecode of " + std::to_string(m_nominal) + " frames per second");
    }
    const std::int64_t allMinutes = hours * 60 + minutes;
    std::int64_t number = (allMinutes * 60 + seconds) * m_nominal + frames;
    if (isDropFrame || text.find(';') != std::string::npos) {
      if (!m_canDrop) {
        throw failure(line, "drop-frame timecode needs --rate 30000/1001 or 60000/1001");
      }
      number -= m_nominal / 15 * (allMinutes - allMinutes / 10);
    }
    return number;
  }

 private:
  const std::int64_t m_nominal;
  const bool m_canDrop;
};

struct Event {
  int line;
  std::string source;
  bool isVideo;
  std::int64_t in;  // frames of the source
  std::int64_t out;
  std::int64_t at;  // frame of the edited timeline
};

class CmxReader {
 public:
  explicit CmxReader(const FrameRate& rate) : m_rate(rate), m_timecodes(rate) {}

  void read(const std::string& line) {
    ++m_line;
    std::istringstream in(line);
    std::string first;
    if (!(in >> first)) return;
    if (first == "FCM:") {
      m_isDropFrame = line.find("NON") == std::string::npos;
    } else if (first == "M2") {
      readSpeed(in);
    } else if (first.find_first_not_of("0123456789") == std::string::npos) {
      readEvent(in);
    } else {
      readComment(line);
    }
  }

  std::vector<EditEvent> events() const {
    const bool hasVideo = std::any_of(m_events.begin(), m_events.end(),
                                      [](const Event& event) { return event.isVideo; });
    auto start = std::numeric_limits<std::int64_t>::max();
    for (const Event& event : m_events) start = std::min(start, event.at);
    std::vector<EditEvent> events;
    for (const Event& event : m_events) {
      if (event.source == "BL" || (hasVideo && !event.isVideo)) continue;  // BL is black
      events.push_back({event.source,
                        {secondsOf(event.in), secondsOf(event.out), secondsOf(event.at - start)},
                        event.line});
    }
    return events;
  }

 private:
  void readEvent(std::istringstream& in) {
    std::string reel;
    std::string channels;
    std::string transition;
    std::vector<std::string> words;
    in >> reel >> channels >> transition;
    for (std::string word; in >> word;) words.push_back(word);
    if (words.size() < 4) throw failure(m_line, "an event has four timecodes");
    if (transition != "C") {
      throw failure(m_line, "the transition " + transition + " is no cut; only cuts are read");
    }
    const auto frame = [&](std::size_t word) {
      return m_timecodes.frameAt(words[word], m_isDropFrame, m_line);
    };
    const Event event{m_line,   reel,     channels.find_first_of("VvBb") != std::string::npos,
                      frame(0), frame(1), frame(2)};
    const std::int64_t length = frame(3) - event.at;
    if (event.out < event.in) throw failure(m_line, "the source ends before it begins");
    if (event.out - event.in != length) {
      throw failure(m_line, std::to_string(event.out - event.in) + " frames of the source last " +
                                std::to_string(length) + " frames; changes of speed are not read");
    }
    m_events.push_back(event);
  }

  // "M2 REEL SPEED TIMECODE" follows its event.
  void readSpeed(std::istringstream& in) const {
    std::string reel;
    double speed = 0;
    in >> reel >> speed;
    if (!in || std::abs(speed - static_cast<double>(m_timecodes.nominal())) > 0.1) {
      throw failure(m_line, "changes of speed are not read");
    }
  }

  void readComment(const std::string& line) {
    constexpr std::string_view kName = "FROM CLIP NAME:";
    const std::size_t at = line.find(kName);
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos || line[first] != '*' || at == std::string::npos ||
        m_events.empty())
      return;
    const std::size_t start = line.find_first_not_of(" \t", at + kName.size());
    const std::size_t end = line.find_last_not_of(" \t\r");
    if (start <= end) m_events.back().source = line.substr(start, end - start + 1);
  }

  ExactSeconds secondsOf(std::int64_t frame) const {
    return series::parseTime(std::to_string(frame) + "f", m_rate);
  }

  const FrameRate m_rate;
  const Timecodes m_timecodes;
  int m_line = 0;
  bool m_isDropFrame = false;
  std::vector<Event> m_events;
};

}  // namespace

std::vector<EditEvent> readCmx3600(const std::string& text, const FrameRate& rate) {
  CmxReader reader(rate);
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) reader.read(line);
  return reader.events();
}

}  // namespace keep
