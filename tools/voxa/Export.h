// The parts of voxa export, one per kind of format.
#pragma once

#include "tools/formats/TextSink.h"
#include "tools/voxa/Commands.h"
#include "tools/voxa/KeptRecords.h"
#include "tools/voxa/Output.h"
#include "tools/voxa/Progress.h"
#include "tools/voxa/Sources.h"

namespace voxa {

/// A sink whose blocks go to `out`, which must outlive it.
inline formats::TextSink sinkInto(Output& out) {
  return formats::TextSink([&out](std::string_view text) { out.write(text); });
}

/// Throws Failure (WrongUse) for what is no time, rate or range.
inline ReadOptions readOptionsOf(const ExportOptions& options) {
  return {timeRangeOf(options.times), options.tolerance, options.sources.redaction};
}

/// Of reading the streams of a recording once, and once more with a tolerance (`forEachKept`).
inline Progress progressOf(const Source& source, const ReadOptions& options) {
  return {source.file, (options.tolerance ? 2 : 1) * bytesOf(source.parser, source.streams)};
}

/// Records as CSV, NDJSON, JSON or XML.
void exportRecords(const ExportOptions& options);

/// One stream as the animation of an MLT property.
void exportAnimation(const ExportOptions& options);

/// Texts, or what lies between pauses, as chapters.
void exportChapters(const ExportOptions& options);

/// Texts and keystrokes as markers of an OpenTimelineIO timeline.
void exportMarkers(const ExportOptions& options);

}  // namespace voxa
