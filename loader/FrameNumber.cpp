#include "loader/FrameNumber.h"

namespace loader {

std::optional<Kestova::int64> frameNumber(const boost::rational<unsigned int>& editRate,
                                          double seconds) {
  const double framesPerSecond =
      static_cast<double>(editRate.numerator()) / static_cast<double>(editRate.denominator());
  const double sum = framesPerSecond * seconds + 0.5;
  constexpr double kBeyond = 0x1p63;
  if (!(sum >= -kBeyond && sum < kBeyond)) return std::nullopt;
  return static_cast<Kestova::int64>(sum);
}

}  // namespace loader
