// Edit rates and times as they are written on the command line.
#pragma once

#include <boost/rational.hpp>
#include <string>

#include "host/Kestova/RationalTime.h"

namespace voxa {

/// "30" or "30000/1001", in frames per second. Throws Failure (WrongUse) for anything else, for a
/// part that is 0 and for one above 32 bits; for a decimal the message has the fraction to use.
boost::rational<unsigned int> parseRate(const std::string& text);

/// True for a time in seconds, which `parseTime` needs a rate for.
inline bool isInSeconds(const std::string& time) {
  return !time.empty() && time.back() == 's';
}

/// A frame number, "12", or seconds as an exact decimal, "0.4s", which become frames at `rate`.
/// Throws Failure (WrongUse) for anything else and for what 64 bits do not hold.
Kestova::RationalTime parseTime(const std::string& text, const boost::rational<unsigned int>& rate);

}  // namespace voxa
