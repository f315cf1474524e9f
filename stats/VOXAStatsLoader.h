// Statistics of recordings for the host.
#pragma once

#include "host/Kestova/MediaFileStats.h"
#include "host/Kestova/StatsLoader.h"
#include "module/Export.h"

/// There is no state: one object serves any number of threads. The host deletes it through the
/// base.
class KESTOVA_VOXA_SUPPORT_API VOXAStatsLoader : public Kestova::StatsLoader {
 public:
  VOXAStatsLoader();

  /// True for names whose last component ends in ".voxa", in just these letters. Never throws for a
  /// name: one that is not UTF-8 is refused like any other.
  bool canOpenFile(const std::string& filename) override;

  /// Fills `stats`, which is not null: the name as it is, the largest frame, one entry a track in
  /// file order. Video tracks that show the screen list the stream file names of the recording's
  /// metadata, in ascending order of the identifiers. Audio is described as what the reader was
  /// asked to deliver: 44100 samples a second, one channel, 16 bits.
  ///
  /// The file is scanned for each of the first 16 screen tracks; later ones list the names that the
  /// last scan found.
  ///
  /// Throws Kestova::KestovaException, having written nothing, when the recording cannot be read,
  /// and when its screen tracks list more than 262,144 stream names together: before the track that
  /// exceeds this maximum is added, with both numbers. What the reader, the parser or `stats`
  /// itself throws passes through. Tracks that were added before a failure stay.
  void loadStats(const std::string& filename, Kestova::MediaFileStats* stats) override;

  /// The host's tag for the tag that a track carries in the file: 100, 101, 102, 103 are 1, 2, 4, 3
  /// (the last two cross); anything else is 0.
  static Kestova::MediaFileStats::TrackTag trackTagFromVOXATrackTag(unsigned int tag);
};
