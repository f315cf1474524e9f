#include "tools/voxa/Picture.h"

#include <algorithm>
#include <charconv>

#include "host/Kestova/KestovaException.h"
#include "loader/FrameNumber.h"
#include "stats/VOXAStatsLoader.h"
#include "tools/voxa/Failure.h"
#include "tools/voxa/QuietModule.h"

namespace voxa {

using Kestova::MediaFileStats;

namespace {

std::optional<int> positiveNumber(std::string_view text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end || number <= 0) return std::nullopt;
  return number;
}

}  // namespace

std::optional<formats::ScreenSize> screenSizeOf(const std::string& file,
                                                const std::string& option) {
  if (!option.empty()) {
    const std::size_t x = option.find('x');
    if (x != std::string::npos) {
      const auto width = positiveNumber(std::string_view(option).substr(0, x));
      const auto height = positiveNumber(std::string_view(option).substr(x + 1));
      if (width && height) return formats::ScreenSize{*width, *height};
    }
    throw Failure(Status::WrongUse, "--screen: '" + option + "' is not a size; use WxH: 1920x1080");
  }
  return pictureOf(file).screen;
}

MediaPicture pictureOf(const std::string& file) {
  MediaFileStats stats;
  try {
    const QuietModule quiet;
    VOXAStatsLoader().loadStats(file, &stats);
  } catch (const Kestova::KestovaException&) {  // no media that states a size
    return {};
  }
  MediaPicture picture;
  for (const auto& track : stats.trackStats()) {
    if (track.rate.numerator() != 0) {
      picture.seconds = std::max(picture.seconds, static_cast<double>(track.range.length) /
                                                      loader::framesPerSecond(track.rate));
    }
    if (track.rect.width <= 0 || track.rect.height <= 0) continue;
    const formats::ScreenSize size{track.rect.width, track.rect.height};
    if (!picture.first) picture.first = size;
    if (track.tag == MediaFileStats::ScreenTrack && !picture.screen) picture.screen = size;
  }
  return picture;
}

}  // namespace voxa
