// Converts between seconds and the frames that a parameter's keyframes stand at, without rounding.
//
// A double is an exact fraction, and so is the time of a frame. Every function compares the two as
// fractions; each may be called from any thread.
#pragma once

#include "ZRKMetaData/src/ZRKMIntegers.h"
#include "tools/series/TimeRange.h"

namespace series {

/// The frame that is shown at `seconds`: the greatest n for which n / rate is not above it. A frame
/// that 64 bits cannot hold is the nearest one that they can, infinite times included. Requires:
/// `seconds` is not NaN.
ZRKMetaData::int64 frameShownAt(double seconds, const FrameRate& rate);

/// The least double that is not below frame / rate, so that `frameShownAt` of it is `frame` while
/// doubles tell neighbouring frames apart.
double startOfFrame(ZRKMetaData::int64 frame, const FrameRate& rate);

}  // namespace series
