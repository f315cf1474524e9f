// Times in seconds on the frame grid of a project.
#pragma once

#include <boost/rational.hpp>
#include <optional>

#include "host/Kestova/Integers.h"

namespace loader {

/// The frame nearest to `seconds` at `editRate` frames per second: numerator / denominator *
/// seconds + 0.5, in plain doubles and in this order, truncated toward zero. Halves go up; a
/// negative time is truncated after the 0.5, so that -0.7 frames is frame 0 and -1.6 is -1. Nothing
/// for NaN and for a sum outside the signed 64-bit numbers.
std::optional<Kestova::int64> frameNumber(const boost::rational<unsigned int>& editRate,
                                          double seconds);

}  // namespace loader
