// Reads a log of the events of a desktop, as scripts/record-desktop writes it, as metadata streams.
#pragma once

#include <functional>
#include <istream>
#include <string>
#include <vector>

#include "tools/recording/Container.h"

namespace recording {

/// Returns the bytes of the file with this name, as the log states it.
using ReadFile = std::function<Bytes(const std::string& name)>;

/// The streams of the events, under the identifiers that the samples use, in the order of their
/// first events. An event is a line: its kind, its time in seconds and its fields, separated by
/// single spaces. Sizes and positions are in pixels.
///
///   point 0.25 640 360               the cursor, from the left and the top
///   image 0 1 3 2 arrow.png          cursor image 1, its hot spot, its file
///   image 0.5 1                      cursor image 1 again
///   key 1.5 72 0                     the code point of a key, its modifiers
///   buttons 1.75 1                   the sum of the bits of the buttons that are down
///   window 0 100 50 640 480 A title  the active window: left, top, width, height, title
///
/// Throws std::runtime_error, which names the line, for a line that is no event.
std::vector<Entry> eventEntries(std::istream& log, const ReadFile& readFile);

}  // namespace recording
