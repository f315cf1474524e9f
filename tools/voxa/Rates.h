// Edit rates and times as they are written on the command line.
#pragma once

#include <boost/rational.hpp>
#include <string>

#include "host/Kestova/RationalTime.h"

namespace voxa {

/// "30" or "30000/1001", in frames per second. Throws Failure (WrongUse) for anything else, for a
/// part that is 0 and for one above 32 bits.
boost::rational<unsigned int> parseRate(const std::string& text);

/// A frame number, "12", or seconds as an exact decimal, "0.4s", which become frames at `rate`.
/// Throws Failure (WrongUse) for anything else and for what 64 bits do not hold.
Kestova::RationalTime parseTime(const std::string& text, const boost::rational<unsigned int>& rate);

}  // namespace voxa
