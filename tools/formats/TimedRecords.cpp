#include "tools/formats/TimedRecords.h"

#include <fmt/format.h>

#include <cmath>

#include "tools/formats/PlotLayout.h"

namespace formats {

bool TimedRecords::accepts(double seconds) {
  const bool isFirst = isEmpty();
  ++m_recordCount;
  if (!(std::abs(seconds) <= kMaxSeconds) || (!isFirst && seconds < m_lastSeconds)) {
    ++m_leftOutCount;
    return false;
  }
  if (isFirst) m_firstSeconds = seconds;
  m_lastSeconds = seconds;
  return true;
}

void TimedRecords::noteLeftOut(std::vector<std::string>& notes) const {
  if (m_leftOutCount == 0) return;
  notes.push_back(fmt::format(
      "{}: {} of {} records are left out: their times fall, are not finite or exceed 1e12 s.",
      m_name, groupedNumber(m_leftOutCount), groupedNumber(m_recordCount)));
}

}  // namespace formats
