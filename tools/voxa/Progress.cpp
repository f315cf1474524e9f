#include "tools/voxa/Progress.h"

#include <fmt/format.h>

#include <algorithm>

#include "text/Printable.h"
#include "tools/series/EntryExtent.h"
#include "tools/series/Summary.h"
#include "tools/voxa/Messages.h"

namespace voxa {

using ZRKMetaData::int64;
using ZRKMetaData::MetaDataParser;

namespace {

// So that the line fits on a terminal of 80 columns, whose last line it would else scroll.
constexpr std::size_t kMaxNameBytes = 48;

std::string shownName(const std::string& file) {
  const std::string name = text::printable(series::titleOf(file));
  return name.size() <= kMaxNameBytes ? name : "recording";
}

}  // namespace

double bytesOf(MetaDataParser& parser, const std::vector<boost::uuids::uuid>& ids) {
  const int64 end = series::sizeOfSource(parser.stream());
  double count = 0;
  for (const auto& id : ids) {
    const auto found = parser.locations().find(id);
    if (found == parser.locations().end()) continue;
    const auto [offset, size] = found->second;
    count += static_cast<double>(std::clamp<int64>(size, 0, std::max<int64>(end - offset, 0)));
  }
  return count;
}

double bytesOf(MetaDataParser& parser, const std::vector<ChosenStream>& streams) {
  std::vector<boost::uuids::uuid> ids;
  ids.reserve(streams.size());
  for (const ChosenStream& stream : streams) ids.push_back(stream.id);
  return bytesOf(parser, ids);
}

Progress::Progress(const std::string& file, double total)
    : m_name(shownName(file)),
      m_total(total),
      m_next(Clock::now() + std::chrono::seconds(1)),
      m_before(series::setReadListener(this)) {}

Progress::~Progress() {
  series::setReadListener(m_before);
  hideStatus();
}

void Progress::onBytesRead(int64 byteCount) noexcept {
  constexpr auto kInterval = std::chrono::milliseconds(100);
  m_done += static_cast<double>(byteCount);
  const auto now = Clock::now();
  if (now < m_next || m_done <= 0) return;
  m_next = now + kInterval;
  try {
    show();
  } catch (...) {  // work goes on without its display
  }
}

void Progress::show() const {
  constexpr double kMaxShare = 0.99;  // the size is an estimate, and the result is not written
  const double share = std::min(m_done / std::max(m_total, m_done), kMaxShare);
  fmt::memory_buffer line;
  fmt::format_to(fmt::appender(line), "{}: {} %", m_name, static_cast<int>(share * 100));
  showStatus({line.data(), line.size()});
}

}  // namespace voxa
