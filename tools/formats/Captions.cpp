#include "tools/formats/Captions.h"

#include <fmt/format.h>

#include <utility>

#include "tools/formats/AssScript.h"
#include "tools/formats/CaptionText.h"

namespace formats {

namespace {

constexpr ScreenSize kCaptionScreen = {1920, 1080};  // captions scale with the video

std::string clock(std::int64_t milliseconds, char point) {
  const std::int64_t seconds = milliseconds / 1000;
  return fmt::format("{:02}:{:02}:{:02}{}{:03}", seconds / 3600, seconds / 60 % 60, seconds % 60,
                     point, milliseconds % 1000);
}

}  // namespace

int ticksPerSecond(CaptionFormat format) {
  return format == CaptionFormat::Ass ? kAssTicksPerSecond : 1000;
}

CaptionWriter::CaptionWriter(CaptionFormat format, std::function<void(std::string_view)> write)
    : m_format(format), m_write(std::move(write)) {
  if (format == CaptionFormat::Vtt) m_write("WEBVTT\n\n");
  if (format == CaptionFormat::Ass) m_write(assHeader(kCaptionScreen));
}

std::string assCue(const Cue& cue) {
  return assDialogue({0, cue.start, cue.end, "Keys", assText(cue.text)});
}

void CaptionWriter::add(const Cue& cue) {
  ++m_count;
  switch (m_format) {
    case CaptionFormat::Vtt:
      m_write(fmt::format("{} --> {}\n{}\n\n", clock(cue.start, '.'), clock(cue.end, '.'),
                          vttText(cue.text)));
      break;
    case CaptionFormat::Srt:
      m_write(fmt::format("{}\n{} --> {}\n{}\n\n", m_count, clock(cue.start, ','),
                          clock(cue.end, ','), srtText(cue.text)));
      break;
    case CaptionFormat::Ass:
      m_write(assCue(cue));
      break;
  }
}

}  // namespace formats
