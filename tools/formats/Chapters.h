// Chapters of a recording: one per text, or one per stretch between pauses.
//
// Memory grows with the number of chapters, not with that of records. Used by one thread.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/formats/TextSink.h"

namespace formats {

/// Times in seconds; `end` is not before `start`, which is not below 0.
struct Chapter {
  double start;
  double end;
  std::string title;
};

/// A time beyond this cannot be written: 64 bits of nanoseconds are 292 years.
constexpr double kMaxChapterSeconds = 9e9;

/// Each text is a chapter from its time to that of the next one.
class TextChapters {
 public:
  /// In any order of times. The later text at one time replaces the earlier one. A text before 0
  /// counts as at 0, where it still holds. Requires: finite, at most kMaxChapterSeconds.
  void add(double seconds, const std::string& text);

  /// The last chapter ends at `end`, in seconds.
  std::vector<Chapter> chapters(double end) const;

 private:
  std::map<double, std::string> m_texts;
};

/// A chapter begins at 0 and after each pause: a time of at least `gap` seconds without a record.
class PauseChapters {
 public:
  /// Requires: `gap` is above 0.
  explicit PauseChapters(double gap) : m_gap(gap) { add(0); }

  /// In any order of times. Requires: finite, at most kMaxChapterSeconds.
  void add(double seconds);

  /// Titled "Chapter 1" and so on. The last one ends at `end`, in seconds.
  std::vector<Chapter> chapters(double end) const;

 private:
  double m_gap;
  std::map<double, double> m_stretches;  // from the first to the last record without a pause
};

/// Writes chapters in ffmpeg's metadata format, with times in nanoseconds. Source:
/// https://ffmpeg.org/ffmpeg-formats.html#Metadata-2. A NUL cannot be written and becomes U+FFFD;
/// a backslash at the end of a title gets a space after it.
void writeFfMetadata(TextSink& out, const std::vector<Chapter>& chapters);

}  // namespace formats
