#include "tools/voxa/Rates.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tools/voxa/Failure.h"

namespace voxa {

namespace {

constexpr Kestova::int64 kMaxRatePart = std::numeric_limits<unsigned int>::max();

template <class Number>
std::optional<Number> parseWhole(std::string_view text) {
  Number number{};
  const auto* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

[[noreturn]] void wrongUse(const std::string& message) {
  throw Failure(Status::WrongUse, message);
}

// A decimal as a number of units, "12.345" as 12345 of 1000 units each.
struct Decimal {
  Kestova::int64 number;
  Kestova::int64 unit;
};

std::optional<Decimal> parseDecimal(std::string_view text) {
  const auto point = text.find('.');
  std::string digits(text.substr(0, point));
  Kestova::int64 unit = 1;
  if (point != std::string_view::npos) {
    const std::string_view fraction = text.substr(point + 1);
    constexpr std::size_t kMaxDecimals = 18;  // 10^18 is the last power that 64 bits hold
    if (fraction.empty() || fraction.size() > kMaxDecimals) return std::nullopt;
    digits += fraction;
    for (std::size_t digit = 0; digit < fraction.size(); ++digit) unit *= 10;
  }
  const auto number = parseWhole<Kestova::int64>(digits);
  if (!number) return std::nullopt;
  return Decimal{*number, unit};
}

// Returns "; use 30000/1001" for 29.97, empty where `text` is not close to a rate.
std::string rateSuggestion(std::string_view text) {
  const auto decimal = parseDecimal(text);
  if (!decimal || decimal->number <= 0) return {};
  const double rate = static_cast<double>(decimal->number) / static_cast<double>(decimal->unit);
  for (const int whole : {24, 30, 48, 60, 120}) {  // NTSC rates, often written with two decimals
    const bool isNear = std::abs(rate - whole * 1000 / 1001.0) < 0.006;
    if (isNear) return "; use " + std::to_string(whole) + "000/1001";
  }
  const auto exact = series::reducedFraction(decimal->number, decimal->unit);
  if (!exact || exact->numerator > kMaxRatePart || exact->denominator > kMaxRatePart) return {};
  return "; use " + std::to_string(exact->numerator) + "/" + std::to_string(exact->denominator);
}

}  // namespace

boost::rational<unsigned int> parseRate(const std::string& text) {
  const auto slash = text.find('/');
  const std::string_view view = text;
  const auto numerator = parseWhole<unsigned int>(view.substr(0, slash));
  const auto denominator = slash == std::string::npos
                               ? std::optional<unsigned int>(1)
                               : parseWhole<unsigned int>(view.substr(slash + 1));
  if (numerator.value_or(0) == 0 || denominator.value_or(0) == 0) {
    wrongUse("--rate takes N or N/D, whole numbers above 0: " + text + rateSuggestion(view));
  }
  return {*numerator, *denominator};
}

CommandTime parseTime(const std::string& text) {
  const std::string_view view = text;
  if (!view.empty() && view.back() == 's') {
    if (const auto seconds = parseDecimal(view.substr(0, view.size() - 1))) {
      return {seconds->number, seconds->unit, true};
    }
  } else if (const auto frame = parseWhole<Kestova::int64>(view)) {
    return {*frame, 1, false};
  }
  wrongUse("--at takes a frame number or decimal seconds with an s: " + text);
}

Kestova::RationalTime frameOf(const CommandTime& time, const boost::rational<unsigned int>& rate) {
  if (!time.isSeconds) return Kestova::RationalTime(time.numerator);
  const Kestova::int128 numerator = Kestova::int128{time.numerator} * rate.numerator();
  const Kestova::int128 denominator = Kestova::int128{time.denominator} * rate.denominator();
  const auto frame = series::reducedFraction(numerator, denominator);
  if (!frame) wrongUse("--at is out of range at this rate");
  return {frame->numerator, frame->denominator};
}

Kestova::int64 firstFrameFrom(const series::ExactSeconds& seconds,
                              const boost::rational<unsigned int>& rate) {
  const Kestova::int128 numerator = Kestova::int128{seconds.numerator} * rate.numerator();
  const Kestova::int128 denominator = Kestova::int128{seconds.denominator} * rate.denominator();
  Kestova::int128 frame = numerator / denominator;  // truncated toward zero
  if (numerator > frame * denominator) ++frame;
  if (frame > std::numeric_limits<Kestova::int64>::max() ||
      frame < std::numeric_limits<Kestova::int64>::min()) {
    wrongUse("--from or --to is out of range at this rate");
  }
  return static_cast<Kestova::int64>(frame);
}

std::optional<series::ExactSeconds> parseBound(const char* option, const std::string& text,
                                               const std::optional<series::FrameRate>& rate) {
  if (text.empty()) return std::nullopt;
  try {
    return series::parseTime(text, rate);
  } catch (const std::invalid_argument& error) {
    wrongUse(std::string(option) + ": " + error.what());
  }
}

}  // namespace voxa
