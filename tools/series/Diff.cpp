#include "tools/series/Diff.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace series {

namespace {

// Costs of the steps of an alignment. An addition or removal costs a trace more than a change, so
// that fewer of them are preferred among equally many edits; distance in time decides last.
constexpr double kSkipCost = 1.001;
constexpr double kChangeCost = 1;
constexpr double kDistanceCost = 1e-6;

class Differ {
 public:
  Differ(const DiffSide& before, const DiffSide& after, const DiffOptions& options,
         const SameValue& isSame)
      : m_before(before), m_after(after), m_options(options), m_isSame(isSame) {}

  std::vector<DiffEdit> edits() {
    while (hasBefore(m_i) && hasAfter(m_j)) {
      if (!isNear(m_i, m_j)) {
        isEarlier(m_i, m_j) ? remove() : add();
      } else if (m_isSame(m_i, m_j)) {
        ++m_i;
        ++m_j;
      } else {
        alignWindow();
      }
    }
    while (hasBefore(m_i)) remove();
    while (hasAfter(m_j)) add();
    return std::move(m_edits);
  }

 private:
  enum class Step : std::uint8_t { Same, Change, SkipBefore, SkipAfter };

  bool hasBefore(std::size_t i) const { return i < m_before.seconds.size(); }
  bool hasAfter(std::size_t j) const { return j < m_after.seconds.size(); }

  double timeBefore(std::size_t i) const { return m_before.seconds[i]; }
  double timeAfter(std::size_t j) const { return m_after.seconds[j] - m_options.offset; }

  bool isNear(std::size_t i, std::size_t j) const {
    const double left = timeBefore(i);
    const double right = timeAfter(j);
    return left == right || std::abs(left - right) <= m_options.tolerance ||
           (std::isnan(left) && std::isnan(right));
  }

  bool isEarlier(std::size_t i, std::size_t j) const {
    return std::isnan(timeAfter(j)) || timeBefore(i) < timeAfter(j);
  }

  void remove() { m_edits.push_back({DiffEdit::Kind::Removed, m_i++, 0}); }
  void add() { m_edits.push_back({DiffEdit::Kind::Added, 0, m_j++}); }

  double distanceCost(std::size_t i, std::size_t j) const {
    const double distance = std::abs(timeBefore(i) - timeAfter(j));
    if (!(distance > 0)) return 0;  // also two NaN or equal infinite times, whose distance is NaN
    return m_options.tolerance > 0 ? kDistanceCost * distance / m_options.tolerance : 0;
  }

  // The records from m_i and m_j on that no gap above the tolerance separates.
  std::pair<std::size_t, std::size_t> windowSize() const {
    std::size_t rows = 1;
    std::size_t columns = 1;
    double end = std::max(timeBefore(m_i), timeAfter(m_j));
    const auto reaches = [&](double time) {
      const bool isInside = !(time - end > m_options.tolerance);
      if (isInside) end = std::max(end, time);
      return isInside;
    };
    bool grows = true;
    while (grows) {
      grows = false;
      if (rows < kMaxDiffWindow && hasBefore(m_i + rows) && reaches(timeBefore(m_i + rows))) {
        ++rows;
        grows = true;
      }
      if (columns < kMaxDiffWindow && hasAfter(m_j + columns) &&
          reaches(timeAfter(m_j + columns))) {
        ++columns;
        grows = true;
      }
    }
    return {rows, columns};
  }

  // Of two records one of which must be skipped first, the one that is. It depends on the records
  // and not on their sides, so that exchanged sequences have exchanged edits.
  bool skipsBefore(std::size_t i, std::size_t j) const {
    if (timeBefore(i) != timeAfter(j)) return isEarlier(i, j);
    return m_before.digests[i] < m_after.digests[j];
  }

  // The cheapest alignment of a window, as the edit distance of two texts. costs[r][c] is that of
  // what lies behind row r and column c.
  void alignWindow() {
    const auto [rows, columns] = windowSize();
    const std::size_t width = columns + 1;
    std::vector<double> costs((rows + 1) * width, 0);
    std::vector<Step> steps((rows + 1) * width, Step::SkipAfter);
    for (std::size_t r = rows + 1; r-- > 0;) {
      for (std::size_t c = columns + 1; c-- > 0;) {
        const std::size_t at = r * width + c;
        const std::size_t i = m_i + r;
        const std::size_t j = m_j + c;
        if (r == rows || c == columns) {
          costs[at] = kSkipCost * static_cast<double>(rows - r + columns - c);
          steps[at] = r == rows ? Step::SkipAfter : Step::SkipBefore;
          continue;
        }
        const double down = costs[at + width] + kSkipCost;
        const double right = costs[at + 1] + kSkipCost;
        const bool isDown = down < right || (down == right && skipsBefore(i, j));
        costs[at] = isDown ? down : right;
        steps[at] = isDown ? Step::SkipBefore : Step::SkipAfter;
        if (!isNear(i, j)) continue;
        const bool isSame = m_isSame(i, j);
        const double across =
            costs[at + width + 1] + (isSame ? 0 : kChangeCost) + distanceCost(i, j);
        if (across <= costs[at]) {
          costs[at] = across;
          steps[at] = isSame ? Step::Same : Step::Change;
        }
      }
    }
    follow(steps, rows, columns);
  }

  void follow(const std::vector<Step>& steps, std::size_t rows, std::size_t columns) {
    std::vector<Step> path;
    std::size_t lastSame = 0;
    for (std::size_t r = 0, c = 0; r < rows || c < columns;) {
      const Step step = steps[r * (columns + 1) + c];
      if (step != Step::SkipAfter) ++r;
      if (step != Step::SkipBefore) ++c;
      path.push_back(step);
      if (step == Step::Same) lastSame = path.size();
    }
    // Behind the last common record of a window that was cut, records may belong to later ones.
    if (rows == kMaxDiffWindow || columns == kMaxDiffWindow) {
      path.resize(std::max(lastSame, path.size() / 2));
    }
    for (const Step step : path) {
      switch (step) {
        case Step::Change:
          m_edits.push_back({DiffEdit::Kind::Changed, m_i, m_j});
          [[fallthrough]];
        case Step::Same:
          ++m_i;
          ++m_j;
          break;
        case Step::SkipBefore:
          remove();
          break;
        case Step::SkipAfter:
          add();
          break;
      }
    }
  }

  const DiffSide& m_before;
  const DiffSide& m_after;
  const DiffOptions& m_options;
  const SameValue& m_isSame;
  std::size_t m_i = 0;
  std::size_t m_j = 0;
  std::vector<DiffEdit> m_edits;
};

// The digests of runs of `length` values, each with the index of its first record.
std::vector<std::pair<std::uint64_t, std::size_t>> runsOf(const DiffSide& side,
                                                          std::size_t length) {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
  std::vector<std::pair<std::uint64_t, std::size_t>> runs;
  for (std::size_t i = 0; i + length <= side.digests.size(); ++i) {
    if (!std::isfinite(side.seconds[i])) continue;
    std::uint64_t digest = 0;
    for (std::size_t k = 0; k < length; ++k) {
      digest = (digest ^ side.digests[i + k]) * kMultiplier;
      digest ^= digest >> 29U;
    }
    runs.emplace_back(digest, i);
  }
  std::sort(runs.begin(), runs.end());
  return runs;
}

// The time differences of runs that both sequences have, but neither often.
std::vector<double> differences(const DiffSide& before, const DiffSide& after, std::size_t length) {
  constexpr std::ptrdiff_t kMaxEqual = 4;
  const auto left = runsOf(before, length);
  const auto right = runsOf(after, length);
  const auto endOfEqual = [](auto from, auto end) {
    return std::find_if(from, end, [from](const auto& run) { return run.first != from->first; });
  };
  std::vector<double> found;
  auto i = left.begin();
  auto j = right.begin();
  while (i != left.end() && j != right.end()) {
    if (i->first < j->first) {
      ++i;
    } else if (j->first < i->first) {
      ++j;
    } else {
      const auto iEnd = endOfEqual(i, left.end());
      const auto jEnd = endOfEqual(j, right.end());
      if (iEnd - i <= kMaxEqual && jEnd - j <= kMaxEqual) {
        for (auto a = i; a != iEnd; ++a) {
          for (auto b = j; b != jEnd; ++b) {
            found.push_back(after.seconds[b->second] - before.seconds[a->second]);
          }
        }
      }
      i = iEnd;
      j = jEnd;
    }
  }
  return found;
}

}  // namespace

std::vector<DiffEdit> diffRecords(const DiffSide& before, const DiffSide& after,
                                  const DiffOptions& options, const SameValue& isSame) {
  return Differ(before, after, options, isSame).edits();
}

std::optional<double> bestOffset(const DiffSide& before, const DiffSide& after, double width) {
  std::vector<double> found;
  for (const std::size_t length : std::array<std::size_t, 3>{4, 2, 1}) {
    if (found.empty()) found = differences(before, after, length);
  }
  if (found.empty()) return std::nullopt;
  std::sort(found.begin(), found.end());
  std::size_t best = 0;
  double offset = 0;
  for (std::size_t first = 0, end = 0; first < found.size(); ++first) {
    while (end < found.size() && found[end] - found[first] <= width) ++end;
    const double lower = found[first + (end - first - 1) / 2];
    const double upper = found[first + (end - first) / 2];
    const double middle = lower == upper ? lower : lower + (upper - lower) / 2;
    if (end - first > best || (end - first == best && std::abs(middle) < std::abs(offset))) {
      best = end - first;
      offset = middle;
    }
  }
  return offset;
}

}  // namespace series
