// The statistics of a media file: its name, its frame and its tracks.
#pragma once

#include <boost/rational.hpp>
#include <string>
#include <vector>

#include "host/Kestova/Export.h"
#include "host/Kestova/Integers.h"
#include "host/Kestova/Range.h"
#include "host/Kestova/Rect.h"

namespace Kestova {

/// Filled by a StatsLoader on one thread. Owns copies of its arguments.
class KESTOVA_API MediaFileStats {
 public:
  /// The content of a track. The host defines the numbers.
  enum TrackTag { NoTag = 0, ScreenTrack = 1, CameraTrack = 2, ThirdTrack = 3, FourthTrack = 4 };

  /// The kind of a track. The host defines the numbers.
  enum TrackType { VideoType = 0, AudioType = 2, OtherType = 3 };

  /// One track. A plain value.
  struct TrackStats {
    Range<int64> range;                  ///< in time units of the track
    boost::rational<unsigned int> rate;  ///< time units per second
    int type = OtherType;
    Rect<int> rect;      ///< of the picture, in pixels
    int sampleRate = 0;  ///< samples per second of each channel
    int channelCount = 1;
    int bitsPerSample = 0;
    int bytesPerSample = 0;
    std::string auxText;
    int index = -1;                              ///< among the tracks of the file, from 0
    std::vector<std::string> metaDataFilenames;  ///< stream file names
    TrackTag tag = NoTag;
    int auxValue = 1;
  };

  MediaFileStats();
  virtual ~MediaFileStats();
  MediaFileStats(const MediaFileStats&) = delete;
  MediaFileStats& operator=(const MediaFileStats&) = delete;

  virtual void setFilename(const std::string& filename);
  virtual void setRect(const Rect<int>& rect);
  virtual void addTrackStats(const TrackStats& trackStats);

  // Every change invalidates the references.
  const std::string& filename() const { return m_filename; }
  const Rect<int>& rect() const { return m_rect; }
  const std::vector<TrackStats>& trackStats() const { return m_trackStats; }

 private:
  std::string m_filename;
  Rect<int> m_rect;
  std::vector<TrackStats> m_trackStats;
};

}  // namespace Kestova
