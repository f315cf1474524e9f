// Writes one record of a metadata stream. Times are seconds on the timeline of the recording.
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

/// A reference to a cursor image that an earlier record stores.
Bytes cursorReferenceRecord(double seconds, std::uint64_t imageId);

}  // namespace recording
