#include "tools/formats/SpanSeries.h"

#include <fmt/format.h>

#include "text/Utf8.h"
#include "tools/formats/SpanLane.h"

namespace formats {

namespace {

// The beginning of a text that a label could hold, cut between characters.
std::string beginningOf(const std::string& text) {
  constexpr std::size_t kMaxBytes = 200;
  std::size_t length = 0;
  while (length < text.size()) {
    const std::size_t next = text::firstCharacter(std::string_view(text).substr(length, 4)).length;
    if (length + next > kMaxBytes) break;
    length += next;
  }
  return text.substr(0, length);
}

}  // namespace

void SpanSeries::add(double seconds, const std::string& text) {
  if (accepts(seconds)) m_spans.add(seconds, beginningOf(text));
}

void SpanSeries::add(double seconds, const ZRKMetaData::CursorImage& image) {
  if (accepts(seconds)) m_spans.add(seconds, fmt::format("image {:x}", image.m_imageId));
}

std::vector<TimePanel> SpanSeries::timePanels() const {
  return {{title(), kSpanLaneHeight, [this](Svg& svg, double top, const TimeScale& time) {
             SpanLane lane(svg, top, time);
             for (const auto& [seconds, held] : m_spans.values()) {
               lane.span(held.start, held.duration, held.value);
             }
           }}};
}

void SpanSeries::note(std::vector<std::string>& notes) const {
  noteLeftOut(notes);
  if (m_spans.width() > 0) {
    notes.push_back(fmt::format(
        "{}: {} of {} values are drawn, in each {:.3g} s the one that held longest.", name(),
        groupedNumber(m_spans.values().size()), groupedNumber(recordCount()), m_spans.width()));
  }
}

}  // namespace formats
