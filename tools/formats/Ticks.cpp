#include "tools/formats/Ticks.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace formats {

namespace {

// A round step: `factor` times ten to the `exponent`.
struct Step {
  int factor;
  int exponent;
};

// Ten to a whole power, correctly rounded, which std::pow does not promise.
double powerOfTen(int exponent) {
  constexpr int kExact = 22;  // up to here powers of ten are doubles
  double power = 1;
  for (int count = 0; count < std::min(std::abs(exponent), kExact); ++count) power *= 10;
  if (std::abs(exponent) > kExact) power = std::pow(10.0, std::abs(exponent));
  return exponent < 0 ? 1 / power : power;
}

double times(double count, Step step) {
  const double units = count * step.factor;
  return step.exponent < 0 ? units / powerOfTen(-step.exponent) : units * powerOfTen(step.exponent);
}

// The least round step that is at least `least`.
Step stepFrom(double least) {
  int exponent = static_cast<int>(std::floor(std::log10(least))) - 1;  // in case log10 errs
  while (true) {
    for (const int factor : {1, 2, 5}) {
      if (times(1, {factor, exponent}) >= least) return {factor, exponent};
    }
    ++exponent;
  }
}

std::string withoutTrailingZeros(std::string digits) {
  if (digits.find('.') == std::string::npos) return digits;
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return digits;
}

// The first multiple of a step is this many steps from 0, or NaN where steps cannot be counted.
bool isCountable(double low, double high, double step) {
  constexpr double kMaxSteps = 1e15;
  return step > 0 && std::max(std::abs(low), std::abs(high)) / step < kMaxSteps;
}

template <class Value, class Label>
std::vector<Tick> multiples(double low, double high, double step, Value value, Label label) {
  std::vector<Tick> ticks;
  const double slack = step * 1e-9;  // a bound that is a multiple but for its last digits
  const auto first = static_cast<std::int64_t>(std::ceil((low - slack) / step));
  const auto last = static_cast<std::int64_t>(std::floor((high + slack) / step));
  for (std::int64_t count = first; count <= last; ++count) {
    const double at = count == 0 ? 0 : value(static_cast<double>(count));  // no -0
    ticks.push_back({at, label(at)});
  }
  return ticks;
}

std::string clockText(double seconds, int decimals) {
  const double unit = powerOfTen(decimals);
  const double all = std::round(std::abs(seconds) * unit);
  const double whole = std::floor(all / unit);
  const auto total = static_cast<long long>(whole);
  std::string text = seconds < 0 && all > 0 ? "\u2212" : "";
  if (total >= 3600) {
    text += fmt::format("{}:{:02}:{:02}", total / 3600, total / 60 % 60, total % 60);
  } else {
    text += fmt::format("{}:{:02}", total / 60, total % 60);
  }
  if (decimals > 0) {
    text += fmt::format(".{:0{}}", static_cast<long long>(all - whole * unit), decimals);
  }
  return text;
}

}  // namespace

std::string shortNumber(double number, int digits) {
  const double size = std::abs(number);
  if (size == 0) return "0";
  std::string text;
  if (size >= 1e7 || size < 1e-4) {
    const std::string scientific = fmt::format("{:.{}e}", number, digits - 1);
    const auto e = scientific.find('e');
    const int exponent = static_cast<int>(std::strtol(scientific.c_str() + e + 1, nullptr, 10));
    text = fmt::format("{}e{}", withoutTrailingZeros(scientific.substr(0, e)), exponent);
  } else {
    const int before = static_cast<int>(std::floor(std::log10(size))) + 1;
    text = withoutTrailingZeros(fmt::format("{:.{}f}", number, std::max(0, digits - before)));
  }
  if (text[0] == '-') text.replace(0, 1, "\u2212");
  return text;
}

std::vector<Tick> numberTicks(double low, double high, int maxCount, bool onlyWhole) {
  const double least = (high - low) / maxCount;
  if (!(least > 0) || !isCountable(low, high, least)) return {{low, shortNumber(low, 6)}};
  Step step = stepFrom(least);
  if (onlyWhole && step.exponent < 0) step = {1, 0};
  // Enough digits to tell neighbouring ticks apart.
  const double greatest = std::max(std::abs(low), std::abs(high));
  const int digits =
      std::clamp(static_cast<int>(std::floor(std::log10(greatest))) - step.exponent + 1, 1, 17);
  return multiples(
      low, high, times(1, step), [&](double count) { return times(count, step); },
      [&](double value) { return shortNumber(value, digits); });
}

std::vector<Tick> timeTicks(double low, double high, int maxCount) {
  constexpr std::array<int, 14> kClockSteps = {1,   2,   5,   10,  15,   30,   60,
                                               120, 300, 600, 900, 1800, 3600, 7200};
  const double least = (high - low) / maxCount;
  if (!(least > 0) || !isCountable(low, high, least)) return {{low, clockTime(low)}};
  if (least <= 0.5) {
    const Step step = stepFrom(least);
    if (step.exponent < 0) {
      return multiples(
          low, high, times(1, step), [&](double count) { return times(count, step); },
          [&](double value) { return clockText(value, std::min(-step.exponent, 9)); });
    }
  }
  const auto* const fitting = std::lower_bound(kClockSteps.begin(), kClockSteps.end(), least);
  double step = 0;
  if (fitting != kClockSteps.end()) {
    step = *fitting;
  } else {
    step = 3600 * times(1, stepFrom(least / 3600));
  }
  return multiples(
      low, high, step, [&](double count) { return count * step; },
      [&](double value) { return clockText(value, 0); });
}

std::vector<Tick> logarithmicTicks(double low, double high, int maxCount) {
  const int first = static_cast<int>(std::floor(std::log10(low))) - 1;
  const int last = static_cast<int>(std::ceil(std::log10(high))) + 1;
  const auto within = [&](std::initializer_list<int> factors, int stride) {
    std::vector<Tick> ticks;
    for (int exponent = first; exponent <= last; ++exponent) {
      if (exponent % stride != 0) continue;
      for (const int factor : factors) {
        const double value = times(1, {factor, exponent});
        if (value >= low && value <= high) ticks.push_back({value, shortNumber(value)});
      }
    }
    return ticks;
  };
  std::vector<Tick> ticks = within({1, 2, 5}, 1);
  for (int stride = 1; static_cast<int>(ticks.size()) > maxCount && stride < 64; stride *= 2) {
    ticks = within({1}, stride);
  }
  return ticks;
}

double roundBelow(double limit) {
  const Step above = stepFrom(limit);
  if (times(1, above) <= limit) return times(1, above);
  switch (above.factor) {
    case 1:
      return times(1, {5, above.exponent - 1});
    case 2:
      return times(1, {1, above.exponent});
    default:
      return times(1, {2, above.exponent});
  }
}

std::string clockTime(double seconds) {
  constexpr int kMilliseconds = 3;
  return withoutTrailingZeros(clockText(seconds, kMilliseconds));
}

}  // namespace formats
