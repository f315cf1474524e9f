// The cursor images of a sample recording.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/recording/Bytes.h"

namespace recording {

/// A picture of the mouse cursor.
struct Cursor {
  Bytes png;
  std::int32_t hotX;  ///< the pixel that points, from the left and the top
  std::int32_t hotY;
};

/// An arrow, a text beam and a hand: the same bytes on every platform.
const std::vector<Cursor>& sampleCursors();

}  // namespace recording
