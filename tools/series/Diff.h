// Compares two sequences of timed records: which were added, removed or changed.
//
// Records are known here by index alone, so that one algorithm serves all types. Plain values and
// functions without state, which may be called from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace series {

/// One sequence, its times in rising order, NaN last. Records with the same value have the same
/// digest; `digests` has an element for each time.
struct DiffSide {
  std::vector<double> seconds;
  std::vector<std::uint64_t> digests;
};

struct DiffEdit {
  enum class Kind : std::uint8_t { Added, Removed, Changed };

  Kind kind{};
  std::size_t before = 0;  ///< index in the first sequence, of no use where it was added
  std::size_t after = 0;   ///< index in the second sequence, of no use where it was removed
};

struct DiffOptions {
  /// Seconds by which the second sequence is later than the first.
  double offset = 0;
  /// Seconds by which the times of one record may differ. Not negative.
  double tolerance = 0;
};

/// Whether record `before` of the first sequence and record `after` of the second have the same
/// value.
using SameValue = std::function<bool(std::size_t before, std::size_t after)>;

/// The fewest edits that turn the first sequence into the second, in time order. A change keeps the
/// time, within the tolerance; a record at another time counts as removed and added. Exchanging the
/// sequences (and the sign of the offset) exchanges Added and Removed and nothing else.
///
/// Among more than kMaxDiffWindow records that lie closer together than the tolerance, the number
/// of edits may not be the least. Time is linear in the number of records, and with differences
/// grows by at most a factor of kMaxDiffWindow.
std::vector<DiffEdit> diffRecords(const DiffSide& before, const DiffSide& after,
                                  const DiffOptions& options, const SameValue& isSame);

constexpr std::size_t kMaxDiffWindow = 256;

/// The constant time by which most records of `after` are later than records of `before` with the
/// same value: the middle of the densest group of differences that is `width` seconds wide. Values
/// that recur are told apart by the values that follow them. Nothing when no values agree.
std::optional<double> bestOffset(const DiffSide& before, const DiffSide& after, double width);

}  // namespace series
