#include "tools/series/TimeRange.h"

#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace series {

namespace {

using ZRKMetaData::int64;

constexpr int64 kMaxInt64 = std::numeric_limits<int64>::max();

class TimeText {
 public:
  explicit TimeText(const std::string& text) : m_text(text) {}

  [[noreturn]] void fail(const std::string& why) const {
    throw std::invalid_argument(m_text + ": " + why);
  }

  [[noreturn]] void failForm() const {
    fail(
        "a time is seconds (12.5 or 12.5s), [HH:]MM:SS[.mmm], a fraction of seconds (1001/30) or "
        "frames (75f)");
  }

  int64 whole(std::string_view digits) const {
    int64 number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number);
    if (error == std::errc::result_out_of_range) failRange();
    if (error != std::errc() || rest != end || digits.front() == '-') failForm();
    return number;
  }

  ExactSeconds reduced(int128 numerator, int128 denominator) const {
    const auto time = reducedFraction(numerator, denominator);
    if (!time) failRange();
    return *time;
  }

  // "12.345" as 12345 thousandths.
  ExactSeconds decimal(std::string_view text) const {
    const auto point = text.find('.');
    if (point == std::string_view::npos) return {whole(text), 1};
    const std::string_view fraction = text.substr(point + 1);
    constexpr std::size_t kMaxDecimals = 18;  // 10^18 is the last power that 64 bits hold
    if (fraction.empty()) failForm();
    if (fraction.size() > kMaxDecimals) fail("more than 18 decimals");
    int64 unit = 1;
    for (std::size_t digit = 0; digit < fraction.size(); ++digit) unit *= 10;
    return reduced(int128{whole(text.substr(0, point))} * unit + whole(fraction), unit);
  }

  ExactSeconds clock(std::string_view text) const {
    const auto lastColon = text.rfind(':');
    const ExactSeconds seconds = decimal(text.substr(lastColon + 1));
    const std::string_view rest = text.substr(0, lastColon);
    const auto colon = rest.find(':');
    const bool hasHours = colon != std::string_view::npos;
    const int64 hours = hasHours ? whole(rest.substr(0, colon)) : 0;
    const int64 minutes = whole(hasHours ? rest.substr(colon + 1) : rest);
    if (seconds.numerator / seconds.denominator >= 60 || (hasHours && minutes >= 60)) {
      fail("minutes and seconds of a clock time are below 60");
    }
    const int128 wholeSeconds = int128{hours} * 3600 + int128{minutes} * 60;
    if (wholeSeconds > kMaxInt64) failRange();
    return reduced(wholeSeconds * seconds.denominator + seconds.numerator, seconds.denominator);
  }

  ExactSeconds fraction(std::string_view text) const {
    const auto slash = text.find('/');
    const int64 denominator = whole(text.substr(slash + 1));
    if (denominator == 0) fail("the denominator is zero");
    return reduced(whole(text.substr(0, slash)), denominator);
  }

  ExactSeconds frames(std::string_view text, const std::optional<FrameRate>& rate) const {
    const int64 number = whole(text);
    if (!rate) fail("a frame number needs a frame rate (--rate)");
    return reduced(int128{number} * rate->denominator(), rate->numerator());
  }

 private:
  [[noreturn]] void failRange() const { fail("the time is out of range"); }

  const std::string& m_text;
};

// Whether `number`, finite, is below `time`.
bool isBelow(double number, const ExactSeconds& time) {
  // number = mantissa * 2^exponent, both whole; both sides stay below 2^127 because `number` is
  // within one unit of the last place of the fraction.
  int exponent = 0;
  const auto mantissa = static_cast<int64>(std::ldexp(std::frexp(number, &exponent), 53));
  exponent -= 53;
  int128 left = int128{mantissa} * time.denominator;
  int128 right = time.numerator;
  for (; exponent > 0; --exponent) left *= 2;
  for (; exponent < 0; ++exponent) {
    // Halving the left side while it is even keeps the right side small.
    if (left % 2 == 0) {
      left /= 2;
    } else {
      right *= 2;
    }
  }
  return left < right;
}

}  // namespace

ExactSeconds parseTime(const std::string& text, const std::optional<FrameRate>& rate) {
  const TimeText parser(text);
  std::string_view rest = text;
  const bool isNegative = !rest.empty() && rest.front() == '-';
  if (isNegative) rest.remove_prefix(1);
  if (rest.empty()) parser.failForm();
  ExactSeconds time;
  if (rest.back() == 'f') {
    time = parser.frames(rest.substr(0, rest.size() - 1), rate);
  } else if (rest.find(':') != std::string_view::npos) {
    time = parser.clock(rest);
  } else if (rest.find('/') != std::string_view::npos) {
    time = parser.fraction(rest);
  } else {
    time = parser.decimal(rest.back() == 's' ? rest.substr(0, rest.size() - 1) : rest);
  }
  if (isNegative) time.numerator = -time.numerator;
  return time;
}

// The products have less than 126 bits, because numerators are above -2^63.
ExactSeconds plus(const ExactSeconds& left, const ExactSeconds& right) {
  const auto sum = reducedFraction(
      int128{left.numerator} * right.denominator + int128{right.numerator} * left.denominator,
      int128{left.denominator} * right.denominator);
  if (!sum) throw std::invalid_argument("a sum of times does not fit into 64 bits");
  return *sum;
}

ExactSeconds minus(const ExactSeconds& left, const ExactSeconds& right) {
  return plus(left, {-right.numerator, right.denominator});
}

double leastDoubleFrom(const ExactSeconds& time) {
  if (time.numerator == 0) return 0;
  double number = static_cast<double>(time.numerator) / static_cast<double>(time.denominator);
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  while (!isBelow(number, time)) number = std::nextafter(number, -kInfinity);
  while (isBelow(number, time)) number = std::nextafter(number, kInfinity);
  return number;
}

TimeRange::TimeRange(const std::optional<ExactSeconds>& from, const std::optional<ExactSeconds>& to)
    : m_isUnbounded(!from && !to), m_hasEnd(to.has_value()) {
  if (from) m_from = leastDoubleFrom(*from);
  if (to) m_to = leastDoubleFrom(*to);
  if (from && to &&
      int128{to->numerator} * from->denominator < int128{from->numerator} * to->denominator) {
    throw std::invalid_argument("the range ends before it begins");
  }
}

TimeRange TimeRange::between(double from, double to) {
  TimeRange range;
  if (!std::isnan(from)) range.m_from = from;
  range.m_hasEnd = !std::isnan(to);
  if (range.m_hasEnd) range.m_to = to;
  range.m_isUnbounded = std::isnan(from) && !range.m_hasEnd;
  return range;
}

}  // namespace series
