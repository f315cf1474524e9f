// Edit rates and times of the command line.
#pragma once

#include <boost/rational.hpp>
#include <optional>
#include <string>

#include "host/Kestova/Integers.h"
#include "host/Kestova/RationalTime.h"
#include "tools/series/ExactFraction.h"
#include "tools/series/TimeRange.h"

namespace voxa {

/// Parses frames per second: "30" or "30000/1001". Throws Failure (WrongUse) for anything else and
/// for a part that is 0 or above 32 bits. For a decimal, the message suggests the fraction to use.
boost::rational<unsigned int> parseRate(const std::string& text);

/// A time of --at: a number of frames, or of seconds as a fraction that is not reduced.
struct CommandTime {
  Kestova::int64 numerator = 0;
  Kestova::int64 denominator = 1;
  bool isSeconds = false;
};

/// Parses a frame number, "12", or decimal seconds, "0.4s". Throws Failure (WrongUse) for anything
/// else and for more than 64 bits.
CommandTime parseTime(const std::string& text);

/// The frame at `time`, exact. Throws Failure (WrongUse) when it does not fit into 64 bits.
Kestova::RationalTime frameOf(const CommandTime& time, const boost::rational<unsigned int>& rate);

/// The first frame that is not before `seconds`. Throws Failure (WrongUse) when it does not fit
/// into 64 bits.
Kestova::int64 firstFrameFrom(const series::ExactSeconds& seconds,
                              const boost::rational<unsigned int>& rate);

/// The value of `option`, --from or --to, nothing for an empty text. Throws Failure (WrongUse),
/// which names the option, for what is no time (series::parseTime).
std::optional<series::ExactSeconds> parseBound(const char* option, const std::string& text,
                                               const std::optional<series::FrameRate>& rate);

}  // namespace voxa
