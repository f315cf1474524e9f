#include "tools/formats/HeatScale.h"

#include <algorithm>
#include <cmath>

namespace formats {

namespace {

constexpr double kLeastRatio = 20;  // of a logarithmic scale
constexpr double kMaxRatio =
    10000;  // beyond it, cells that the cursor only crosses would take most colours

}  // namespace

HeatScale::HeatScale(const HeatGrid& grid)
    : m_low(std::max(grid.shortest(), grid.longest() / kMaxRatio)),
      m_high(grid.longest()),
      m_isLogarithmic(m_high > kLeastRatio * m_low) {
  if (!m_isLogarithmic) m_low = 0;
}

double HeatScale::shareOf(double seconds) const {
  const double share = m_isLogarithmic ? std::log(seconds / m_low) / std::log(m_high / m_low)
                                       : (seconds - m_low) / (m_high - m_low);
  return std::clamp(share, 0.0, 1.0);
}

int HeatScale::levelOf(double seconds) const {
  return std::min(static_cast<int>(shareOf(seconds) * kLevels), kLevels - 1);
}

std::vector<Tick> HeatScale::ticks(int maxCount) const {
  return m_isLogarithmic ? logarithmicTicks(m_low, m_high, maxCount)
                         : numberTicks(m_low, m_high, maxCount);
}

}  // namespace formats
