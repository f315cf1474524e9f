#include "host/Kestova/MediaFileStats.h"

namespace Kestova {

MediaFileStats::MediaFileStats() = default;
MediaFileStats::~MediaFileStats() = default;

void MediaFileStats::setFilename(const std::string& filename) {
  m_filename = filename;
}

void MediaFileStats::setRect(const Rect<int>& rect) {
  m_rect = rect;
}

void MediaFileStats::addTrackStats(const TrackStats& trackStats) {
  m_trackStats.push_back(trackStats);
}

}  // namespace Kestova
