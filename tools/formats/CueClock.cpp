#include "tools/formats/CueClock.h"

#include <cmath>

#include "host/Kestova/Integers.h"
#include "loader/FrameNumber.h"

namespace formats {

std::int64_t CueClock::tickAt(double seconds) const {
  if (m_rate) {
    const std::int64_t frame =
        loader::frameNumber(loader::framesPerSecond(*m_rate), seconds).value_or(0);
    return static_cast<std::int64_t>(Kestova::int128{frame} * m_rate->denominator() *
                                     m_ticksPerSecond / m_rate->numerator());
  }
  // Rounded to microseconds first: 2.3 s is a little less than 2300 ms as a double.
  constexpr std::int64_t kMicroseconds = 1'000'000;
  return std::llround(seconds * static_cast<double>(kMicroseconds)) /
         (kMicroseconds / m_ticksPerSecond);
}

}  // namespace formats
