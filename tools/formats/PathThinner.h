// A path of many points in bounded memory, with a bound on what thinning changed.
#pragma once

#include <cstddef>
#include <vector>

namespace formats {

struct PathPoint {
  double seconds;
  double x;  ///< pixels
  double y;
};

/// Keeps every point that changes the path while there are few; beyond that, a point is dropped
/// when the straight line between its kept neighbours passes close by. How close doubles whenever
/// too many are kept. Used by one thread.
///
/// The method is a cone of directions from the last kept point that shrinks with each point passed
/// (J. Sklansky and V. Gonzalez, "Fast polygonal approximation of digitized curves", 1980), with a
/// limit on how far a dropped point may lie behind the end of its line. It takes constant time per
/// point and only additions, multiplications, divisions and square roots, so the result is the same
/// on every platform.
class PathThinner {
 public:
  /// Keeps at most `maxPoints` + 1 points. Requires: at least 5,000, since the limit on the time of
  /// a line keeps up to 2,300 points of a path that lasts 1e12 seconds.
  explicit PathThinner(std::size_t maxPoints) : m_maxPoints(maxPoints) {}

  /// Requires: finite values, `seconds` not below that of the point before.
  void add(const PathPoint& point);

  /// The kept points in order, all of them points that were added. No point is dropped from a line
  /// that takes longer than a 64th of the time since the first point, so that its colour can stand
  /// for its time.
  std::vector<PathPoint> points() const;

  /// Every point added lies within this distance, in pixels, of the line between the two kept
  /// points that follow each other around its time. 0 when nothing but repetitions and points on
  /// the line were dropped.
  double errorBound() const { return m_errorBound; }

 private:
  struct Direction {
    double x;
    double y;
  };

  void addThinned(const PathPoint& point);
  bool reaches(const PathPoint& point) const;
  void passPending();
  void keepPending();
  void thinMore();

  std::size_t m_maxPoints;
  double m_tolerance = 0;   // pixels, of the present thinning
  double m_errorBound = 0;  // pixels, of all thinnings one upon the other
  std::vector<PathPoint> m_kept;

  // The line that is being grown: from the last kept point to m_pending.
  bool m_hasPending = false;
  PathPoint m_pending{};
  bool m_hasCone = false;
  Direction m_left{};
  Direction m_right{};
  double m_farthest = 0;  // pixels from the last kept point
};

}  // namespace formats
