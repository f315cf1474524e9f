#include "tools/recording/EventLog.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tools/recording/Records.h"

namespace recording {

namespace {

// What of a line is not read yet.
class Fields {
 public:
  explicit Fields(std::string_view line) : m_rest(line) {}

  bool isEmpty() const { return m_rest.empty(); }

  std::string_view text() {
    const auto length = std::min(m_rest.find(' '), m_rest.size());
    const std::string_view field = m_rest.substr(0, length);
    m_rest.remove_prefix(std::min(length + 1, m_rest.size()));
    return field;
  }

  template <class Number>
  Number number() {
    const std::string_view field = text();
    Number number{};
    const auto [rest, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (field.empty() || error != std::errc() || rest != field.data() + field.size()) {
      throw std::runtime_error("'" + std::string(field) + "' is not a number of this field");
    }
    return number;
  }

  std::string rest() { return std::string(std::exchange(m_rest, {})); }

 private:
  std::string_view m_rest;
};

class Streams {
 public:
  explicit Streams(const ReadFile& readFile) : m_readFile(readFile) {}

  void add(Fields line) {
    const std::string_view kind = line.text();
    const auto seconds = line.number<double>();
    if (!std::isfinite(seconds)) throw std::runtime_error("the time is not finite");
    const auto next = [&line] { return line.number<std::int32_t>(); };
    if (kind == "point") {
      const auto x = next();
      records(0xF0) += pointRecord(seconds, x, next());
    } else if (kind == "image") {
      records(0xF1) += image(seconds, line);
    } else if (kind == "key") {
      const auto character = next();
      records(0xF3) += keystrokeRecord(seconds, character, next());
    } else if (kind == "buttons") {
      records(0xF6) += intRecord(seconds, next());
    } else if (kind == "window") {
      const auto left = next();
      const auto top = next();
      const auto width = next();
      records(0xF5) += rectRecord(seconds, left, top, width, next());
      records(0xF9) += stringRecord(seconds, line.rest());
    } else {
      throw std::runtime_error("'" + std::string(kind) + "' is no kind of event");
    }
    if (!line.isEmpty()) throw std::runtime_error("'" + line.rest() + "' is one field too many");
  }

  std::vector<Entry> entries;

 private:
  Bytes& records(unsigned char key) {
    const auto id = streamId(key);
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&id](const Entry& entry) { return entry.id == id; });
    if (found != entries.end()) return found->records;
    entries.push_back({id, ""});
    return entries.back().records;
  }

  Bytes image(double seconds, Fields& line) const {
    const auto id = line.number<std::uint64_t>();
    if (line.isEmpty()) return cursorReferenceRecord(seconds, id);
    const auto hotX = line.number<std::int32_t>();
    const auto hotY = line.number<std::int32_t>();
    const Bytes bytes = m_readFile(line.rest());
    if (bytes.empty()) throw std::runtime_error("the image is empty");
    return cursorImageRecord(seconds, id, hotX, hotY, bytes);
  }

  const ReadFile& m_readFile;
};

}  // namespace

std::vector<Entry> eventEntries(std::istream& log, const ReadFile& readFile) {
  Streams streams(readFile);
  std::string line;
  for (int number = 1; std::getline(log, line); ++number) {
    try {
      streams.add(Fields(line));
    } catch (const std::runtime_error& error) {
      throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
    }
  }
  return std::move(streams.entries);
}

}  // namespace recording
