// Reads which parts of a recording an editor kept, from the lists that editors write.
//
// Sources: the script syntax of FFmpeg's concat demuxer (version 1.0); CMX 3600 edit decision lists
// (events, FROM CLIP NAME comments, M2 and FCM lines); the serialized schema of OpenTimelineIO
// (Timeline.1, Stack.1, Track.1, Clip.1 and Clip.2, Gap.1, Transition.1, TimeRange.1,
// RationalTime.1).
//
// Only cuts can be followed. What makes two parts overlap or plays one at another speed is refused.
// Every function may be called from any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/keep/EditList.h"

namespace keep {

/// A part of some file in an edited timeline.
struct EditEvent {
  std::string source;  ///< a path, a URL or a name
  Piece piece;
  int line;  ///< of the list, 0 where the format has no lines
};

// The readers of the three formats. They throw std::invalid_argument, whose text names the line or
// the object, for what they cannot follow.

/// Files without an end (no outpoint or duration) can only be the last.
std::vector<EditEvent> readConcatList(const std::string& text);

/// Video events alone, or all events where there are none. The edited timeline begins at the first
/// record timecode. Source timecodes count from the start of the recording. `rate` is that of the
/// timecodes.
std::vector<EditEvent> readCmx3600(const std::string& text, const series::FrameRate& rate);

/// The clips of the only enabled track of video that has clips, or of the only track. Transitions
/// keep the cut between their clips. Source times count from the start of the available range.
std::vector<EditEvent> readOtio(const std::string& text);

/// Reads a list of any of the formats, which its text tells, and returns the parts of the recording
/// with the UTF-8 name `recording`: those whose source has its file name, letter case and extension
/// aside, or all parts of a list with a single source. A folder of `voxa sidecar` counts as its
/// recording. The parts are in the order of the edited timeline, and none overlaps the next one.
/// Throws as the readers do, and std::invalid_argument for a text of none of the formats, when a
/// rate is needed, when several sources are listed, none of them the recording, and when parts
/// overlap.
std::vector<Piece> readEditList(const std::string& text, const std::string& recording,
                                const std::optional<series::FrameRate>& rate);

}  // namespace keep
