// Texts and keystrokes as markers of an OpenTimelineIO timeline.
//
// Source: the serialized schema of OpenTimelineIO (Timeline.1, Stack.1, Track.1, Clip.1,
// ExternalReference.1, Marker.2, TimeRange.1, RationalTime.1). One track has one clip per
// recording, one after the other. A marker has the time of the recording and no duration, the text
// or the key as its name, and the stream and the exact record in its metadata under "voxa".
//
// Used in this order: `begin`, for each recording `beginClip`, for each of its streams
// `beginStream` and `add` for each record, and `endClip`, then `finish`. Memory does not grow with
// the number of markers. Used by one thread.
#pragma once

#include <string>

#include "tools/formats/RecordFields.h"
#include "tools/formats/TextSink.h"

namespace formats {

class OtioTimeline {
 public:
  /// `rate` is that of every time, in units per second. `out` must outlive the writer.
  OtioTimeline(TextSink& out, double rate);

  void begin(const std::string& name);
  void beginClip();
  void beginStream(const StreamLabel& stream);

  /// Adds a marker at `time`, in units of the rate. `seconds` is the time of the record. Requires:
  /// both are finite.
  void add(double time, double seconds, const std::string& text);
  void add(double time, double seconds, const ZRKMetaData::KeyStroke& key);

  /// `url` is where the recording is, see `mediaUrl`; `duration` is in units of the rate.
  void endClip(const std::string& name, const std::string& url, double duration);

  void finish();

 private:
  void beginMarker(double seconds);
  void endMarker(double time);
  void writeTime(double value);

  TextSink& m_out;
  const std::string m_beforeValue;  // of a time: all that stands before the number
  std::string m_beforeSeconds;      // of a marker
  bool m_isFirstClip = true;
  bool m_isFirstMarker = true;
};

/// The URL of a file: relative for a relative name, else "file://" and the path, with what is not
/// allowed in a URL as %XX (RFC 3986). A back slash separates folders only where `isWindows`.
std::string mediaUrl(const std::string& file, bool isWindows);

/// What is on a key: the character, "Space", or "key N" for a code that prints nothing.
std::string keyName(ZRKMetaData::int32 character);

}  // namespace formats
