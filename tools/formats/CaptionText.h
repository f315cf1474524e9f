// Text inside captions and subtitles, without markup for any bytes.
//
// WebVTT has references for its markup. SubRip and Advanced SubStation Alpha have none. There an
// invisible word joiner (U+2060) behind a backslash, a brace or an ampersand keeps it from
// beginning an override or a reference, as ffmpeg does it. Angle brackets of SubRip become U+2039
// and U+203A, because many readers drop whatever stands between them. Braces of Advanced SubStation
// Alpha are also escaped with a backslash, which libass, ffmpeg and the players built on them read.
//
// Malformed UTF-8 becomes U+FFFD. Line ends and other unprintable characters (text/Printable.h)
// become spaces, so that a text stays on its line. Every function may be called from any thread.
#pragma once

#include <string>
#include <string_view>

namespace formats {

/// Inside a cue of WebVTT (W3C, section 3.2: cue text).
std::string vttText(std::string_view bytes);

/// Inside a cue of SubRip.
std::string srtText(std::string_view bytes);

/// Inside the text field of a Dialogue line of Advanced SubStation Alpha.
std::string assText(std::string_view bytes);

}  // namespace formats
