// Edit rates and times of the command line.
#pragma once

#include <boost/rational.hpp>
#include <string>

#include "host/Kestova/RationalTime.h"

namespace voxa {

/// Parses frames per second: "30" or "30000/1001". Throws Failure (WrongUse) for anything else and
/// for a part that is 0 or above 32 bits. For a decimal, the message suggests the fraction to use.
boost::rational<unsigned int> parseRate(const std::string& text);

/// A time of --at: a number of frames, or of seconds as an exact fraction.
struct CommandTime {
  Kestova::Ratio number;
  bool isSeconds = false;
};

/// Parses a frame number, "12", or decimal seconds, "0.4s". Throws Failure (WrongUse) for anything
/// else and for more than 64 bits.
CommandTime parseTime(const std::string& text);

/// The frame at `time`, exact. Throws Failure (WrongUse) when it does not fit into 64 bits.
Kestova::RationalTime frameOf(const CommandTime& time, const boost::rational<unsigned int>& rate);

}  // namespace voxa
