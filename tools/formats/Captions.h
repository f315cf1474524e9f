// Writes cues as WebVTT, SubRip or Advanced SubStation Alpha.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tools/formats/Cue.h"

namespace formats {

enum class CaptionFormat { Vtt, Srt, Ass };

/// The ticks per second in which the format counts: milliseconds or hundredths of a second.
int ticksPerSecond(CaptionFormat format);

/// The line of a cue in a script whose header has been written. Ticks are kAssTicksPerSecond.
std::string assCue(const Cue& cue);

/// Used by one thread. Throws what `write` throws.
class CaptionWriter {
 public:
  /// Passes the text to `write`, piece by piece, the header at once.
  CaptionWriter(CaptionFormat format, std::function<void(std::string_view)> write);

  /// Requires: cues follow each other without overlap, in ticks of the format.
  void add(const Cue& cue);

 private:
  const CaptionFormat m_format;
  const std::function<void(std::string_view)> m_write;
  std::uint64_t m_count = 0;
};

}  // namespace formats
