// Reads the statistics of recordings.
#pragma once

#include <string>

#include "host/Kestova/MediaFileStats.h"
#include "host/Kestova/StatsLoader.h"
#include "module/Export.h"

/// Stateless: several threads may use one object. The host deletes it through its base class.
class KESTOVA_VOXA_SUPPORT_API VOXAStatsLoader : public Kestova::StatsLoader {
 public:
  VOXAStatsLoader();

  /// Returns true when the extension of `filename` is ".voxa", in lower case. Returns false for a
  /// name that is not UTF-8.
  bool canOpenFile(const std::string& filename) override;

  /// Fills `stats` with the file name, the largest frame size and one entry per track, in file
  /// order. Video tracks that show the screen list the stream file names of the recording's
  /// metadata, in ascending order of the identifiers. Audio tracks are described in the format that
  /// is requested from the reader: 44,100 samples per second, one channel, 16 bits. Requires:
  /// `stats` is not null.
  ///
  /// The file is scanned for each of the first 16 screen tracks. Later screen tracks list the names
  /// that the last scan found.
  ///
  /// Throws Kestova::KestovaException, before anything is written, when the recording cannot be
  /// read. Throws it with both numbers when the screen tracks list more than 262,144 stream names
  /// in total, before the track that exceeds this maximum is added. Exceptions of the reader, the
  /// parser and `stats` pass through. Tracks that were added before a failure stay.
  void loadStats(const std::string& filename, Kestova::MediaFileStats* stats) override;

  /// Returns the host's tag for the tag of a track in the file: 1, 2, 4, 3 for 100, 101, 102, 103,
  /// in this order, and 0 for any other.
  static Kestova::MediaFileStats::TrackTag trackTagFromVOXATrackTag(unsigned int tag);
};
