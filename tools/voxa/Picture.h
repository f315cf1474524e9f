// The size of the screen, for the commands that draw.
#pragma once

#include <optional>
#include <string>

#include "tools/formats/ScreenSize.h"

namespace voxa {

/// The size that `option` states, "1920x1080", or where it is empty that of the recording's screen
/// track; absent where there is none. Throws Failure (WrongUse) for any other text.
std::optional<formats::ScreenSize> screenSizeOf(const std::string& file, const std::string& option);

/// What the tracks of a media file state. Nothing is known of a file that the module cannot read.
struct MediaPicture {
  std::optional<formats::ScreenSize> screen;  ///< of the first screen track
  std::optional<formats::ScreenSize> first;   ///< of the first track with a picture
  double seconds = 0;                         ///< of the longest track
};
MediaPicture pictureOf(const std::string& file);

}  // namespace voxa
