// One record of a metadata stream as bytes. Times are seconds on the recording's timeline.
#pragma once

#include <cstdint>

#include "tools/recording/Bytes.h"

namespace recording {

Bytes intRecord(double seconds, std::int32_t value);
Bytes doubleRecord(double seconds, double value);
Bytes int64Record(double seconds, std::int64_t value);
Bytes keystrokeRecord(double seconds, std::int32_t character, std::int32_t eventFlags);
Bytes pointRecord(double seconds, std::int32_t x, std::int32_t y);
Bytes rectRecord(double seconds, std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d);
Bytes stringRecord(double seconds, const Bytes& characters);

/// A cursor image with its bytes, which must not be empty.
Bytes cursorImageRecord(double seconds, std::uint64_t imageId, std::int32_t info0,
                        std::int32_t info1, const Bytes& image);

/// A cursor image that was stored before: the identifier alone.
Bytes cursorReferenceRecord(double seconds, std::uint64_t imageId);

}  // namespace recording
