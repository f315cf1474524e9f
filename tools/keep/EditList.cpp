#include "tools/keep/EditList.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "tools/series/ExactSum.h"

namespace keep {

using series::ExactSeconds;
using series::exactSum;
using series::ExactSum;
using series::int128;

namespace {

// 63 bits as the sum of two doubles, both exact. Requires: `number` is not negative.
ExactSum inTwo(std::int64_t number) {
  const std::int64_t low = number & 0xFFFFFFFF;
  return {static_cast<double>(number - low), static_cast<double>(low)};
}

std::string textOf(const ExactSeconds& time) {
  return std::to_string(time.numerator) +
         (time.denominator == 1 ? "" : "/" + std::to_string(time.denominator)) + " s";
}

bool isBefore(const ExactSeconds& left, const ExactSeconds& right) {
  return int128{left.numerator} * right.denominator < int128{right.numerator} * left.denominator;
}

}  // namespace

TimeShift::TimeShift(const ExactSeconds& seconds) {
  // The magnitude as a whole number and two times 62 binary places. No two parts cancel.
  constexpr int kPlaces = 62;
  const bool isNegative = seconds.numerator < 0;
  const std::int64_t magnitude = isNegative ? -seconds.numerator : seconds.numerator;
  const auto nextPlaces = [&](std::int64_t remainder) {
    const int128 scaled = int128{remainder} << kPlaces;
    return std::pair(static_cast<std::int64_t>(scaled / seconds.denominator),
                     static_cast<std::int64_t>(scaled % seconds.denominator));
  };
  const auto [first, rest] = nextPlaces(magnitude % seconds.denominator);
  const auto second = nextPlaces(rest).first;
  const ExactSum whole = inTwo(magnitude / seconds.denominator);
  const ExactSum upper = inTwo(first);
  for (const double part :
       {std::ldexp(static_cast<double>(second), -2 * kPlaces), std::ldexp(upper.error, -kPlaces),
        std::ldexp(upper.value, -kPlaces), whole.error, whole.value}) {
    const ExactSum sum = exactSum(part, m_high);
    const ExactSum rounded = exactSum(sum.value, sum.error + m_low);
    m_high = rounded.value;
    m_low = rounded.error;
  }
  if (!isNegative) return;
  m_high = -m_high;
  m_low = -m_low;
}

double TimeShift::operator()(double seconds) const {
  const ExactSum sum = exactSum(seconds, m_high);
  if (!std::isfinite(sum.value)) return sum.value;
  return sum.value + (sum.error + m_low);
}

double Segment::moved(double seconds) const {
  const double time = shift(seconds);
  return std::isnan(time) ? time : std::clamp(time, start, end);
}

std::vector<Segment> segmentsOf(std::vector<Piece> pieces, const ExactSeconds& shift) {
  if (pieces.empty()) {
    Segment all;
    all.shift = TimeShift(shift);
    return {all};
  }
  if (pieces.size() > kMaxPieces) {
    throw std::invalid_argument(std::to_string(pieces.size()) + " parts; at most " +
                                std::to_string(kMaxPieces) + " are read");
  }
  std::stable_sort(pieces.begin(), pieces.end(), [](const Piece& left, const Piece& right) {
    return isBefore(left.at, right.at);
  });
  std::vector<Segment> segments;
  std::optional<ExactSeconds> end;  // of the piece in front
  for (const Piece& piece : pieces) {
    Segment segment;
    segment.range = series::TimeRange(piece.from, piece.to);
    if (!segments.empty() && (!end || isBefore(piece.at, *end))) {
      throw std::invalid_argument("the part from " + textOf(piece.from) +
                                  " of the recording begins before the one in front of it ends");
    }
    if (piece.to && !isBefore(piece.from, *piece.to)) continue;  // keeps nothing
    const ExactSeconds at = series::plus(piece.at, shift);
    segment.shift = TimeShift(series::minus(at, piece.from));
    segment.start = TimeShift(at)(0);
    end.reset();
    if (piece.to) {
      end = series::plus(piece.at, series::minus(*piece.to, piece.from));
      segment.end = TimeShift(series::plus(*end, shift))(0);
    }
    segments.push_back(segment);
  }
  return segments;
}

}  // namespace keep
