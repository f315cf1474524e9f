// What the commands that draw have in common: the screen's size and the file they write.
#pragma once

#include <optional>
#include <string>
#include <string_view>

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

/// The last element of a file name, to stand as a title.
std::string titleOf(const std::string& file);

/// Writes all of a result: to standard output for "-", else to a file that is complete or not
/// there.
void writeResult(const std::string& out, bool force, std::string_view bytes);

}  // namespace voxa
