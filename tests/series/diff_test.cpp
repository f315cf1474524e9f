// The records that two sequences do not share.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "tools/recording/Dice.h"
#include "tools/series/RecordDiff.h"

namespace {

using series::DiffEdit;
using series::DiffSide;

using Sequence = std::vector<std::pair<double, int>>;

struct Compared {
  std::string edits;  // "-time:value", "+time:value", "~time:value>time:value"
  std::size_t count = 0;
};

struct Pair {
  series::DiffRecords<int> before, after;
  DiffSide beforeSide, afterSide;

  Pair(const Sequence& left, const Sequence& right) {
    for (const auto& [seconds, value] : left) before.add(seconds, value);
    for (const auto& [seconds, value] : right) after.add(seconds, value);
    beforeSide = before.finish();
    afterSide = after.finish();
  }

  Compared compare(const series::DiffOptions& options = {}) const {
    const auto edits =
        series::diffRecords(beforeSide, afterSide, options, [this](std::size_t i, std::size_t j) {
          return series::isSameRecord(before.record(i), after.record(j));
        });
    Compared result;
    result.count = edits.size();
    for (const DiffEdit& edit : edits) {
      const auto shown = [](const auto& records, std::size_t index) {
        const double seconds = records.seconds(index);
        const auto time = std::isfinite(seconds) ? std::to_string(std::lround(seconds * 10))
                          : std::isnan(seconds)  ? "nan"
                                                 : "inf";
        return time + ":" + std::to_string(records.record(index));
      };
      if (!result.edits.empty()) result.edits += " ";
      switch (edit.kind) {
        case DiffEdit::Kind::Removed:
          result.edits += "-" + shown(before, edit.before);
          break;
        case DiffEdit::Kind::Added:
          result.edits += "+" + shown(after, edit.after);
          break;
        case DiffEdit::Kind::Changed:
          result.edits += "~" + shown(before, edit.before) + ">" + shown(after, edit.after);
          break;
      }
    }
    return result;
  }
};

// The edits of the exchanged sequences.
std::string mirrored(const std::string& edits) {
  std::string result;
  for (std::size_t at = 0; at < edits.size();) {
    const std::size_t end = std::min(edits.find(' ', at), edits.size());
    std::string edit = edits.substr(at, end - at);
    if (edit[0] == '~') {
      const std::size_t arrow = edit.find('>');
      edit = "~" + edit.substr(arrow + 1) + ">" + edit.substr(1, arrow - 1);
    } else {
      edit[0] = edit[0] == '-' ? '+' : '-';
    }
    result += (result.empty() ? "" : " ") + edit;
    at = end + 1;
  }
  return result;
}

TEST(Diff, ReportsTheFewestEdits) {
  const double nan = NAN;
  const struct {
    Sequence before, after;
    double tolerance;
    const char* edits;
  } cases[] = {
      {{}, {}, 0, ""},
      {{{1, 5}}, {}, 0, "-10:5"},
      {{{1, 5}, {2, 6}, {3, 7}}, {{1, 5}, {3, 7}}, 0, "-20:6"},
      {{{1, 5}, {3, 7}}, {{1, 5}, {3, 8}, {4, 9}}, 0, "~30:7>30:8 +40:9"},
      {{{1, 5}}, {{2, 5}}, 0, "-10:5 +20:5"},
      {{{1, 5}}, {{1.5, 5}}, 0.5, ""},
      {{{1, 5}, {1.1, 6}, {1.2, 7}}, {{1.1, 6}, {1.2, 7}}, 0.1, "-10:5"},
      {{{1, 5}, {1, 6}, {1, 7}}, {{1, 6}, {1, 7}}, 0, "-10:5"},
      {{{1, 5}, {1, 6}}, {{1, 6}, {1, 5}}, 0, "~10:5>10:6 ~10:6>10:5"},
      {{{5, 1}, {1, 2}, {2, 3}}, {{1, 2}, {2, 3}}, 0, "-50:1"},  // times fall
      {{{1, 5}, {nan, 6}}, {{1, 5}, {nan, 6}}, 0, ""},
      {{{HUGE_VAL, 5}}, {{HUGE_VAL, 5}}, 1, ""},
      {{{1, 5}, {nan, 6}, {nan, 7}}, {{1, 5}, {nan, 8}, {nan, 7}}, 0.1, "~nan:6>nan:8"},
      {{{HUGE_VAL, 6}, {HUGE_VAL, 7}}, {{HUGE_VAL, 8}, {HUGE_VAL, 7}}, 0.1, "~inf:6>inf:8"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Pair(row.before, row.after).compare({0, row.tolerance}).edits, row.edits);
    EXPECT_EQ(Pair(row.after, row.before).compare({0, row.tolerance}).edits, mirrored(row.edits));
  }
}

TEST(Diff, OfScriptedEditsIsExactAndMirrored) {
  recording::Dice dice(4);
  for (int round = 0; round < 200; ++round) {
    Sequence before;
    double seconds = 0;
    for (int n = 0; n < 600; ++n) {
      seconds += dice.below(4) == 0 ? 0 : 0.1;  // some share a time
      before.emplace_back(seconds, n);
    }
    Sequence after;
    std::size_t edits = 0;
    for (const auto& [time, value] : before) {
      switch (dice.below(40)) {
        case 0:
          ++edits;
          break;
        case 1:
          ++edits;
          after.emplace_back(time, -value - 1);
          break;
        case 2:
          ++edits;
          after.emplace_back(time, value);
          after.emplace_back(time + 0.05, value);
          break;
        default:
          after.emplace_back(time, value);
      }
    }
    const Pair there(before, after);
    const Pair back(after, before);
    EXPECT_EQ(Pair(before, before).compare().edits, "");
    EXPECT_LE(there.compare().count, edits);  // a removal and an addition at one time are a change
    EXPECT_EQ(back.compare().edits, mirrored(there.compare().edits));
    // With a tolerance that spans many records, the windows are cut.
    EXPECT_LE(there.compare({0, 2}).count, edits);
    EXPECT_EQ(back.compare({0, 2}).edits, mirrored(there.compare({0, 2}).edits));
  }
}

TEST(Diff, FindsTheConstantOffset) {
  recording::Dice dice(5);
  for (const double offset : {0.0, 0.75, -3.2, 12345.678}) {
    for (const int values : {1000000, 30}) {
      Sequence before;
      Sequence after;
      double seconds = 10;
      for (int n = 0; n < 500; ++n) {
        seconds += 0.001 * (1 + dice.below(200));
        const int value = dice.below(values);
        if (dice.below(10) != 0) before.emplace_back(seconds, value);
        if (dice.below(10) != 0) after.emplace_back(seconds + offset, value);
      }
      const Pair pair(before, after);
      const auto found = series::bestOffset(pair.beforeSide, pair.afterSide, 2e-6);
      ASSERT_TRUE(found);
      EXPECT_NEAR(*found, offset, 1e-9);
      EXPECT_NEAR(*series::bestOffset(pair.afterSide, pair.beforeSide, 2e-6), -offset, 1e-9);
      const std::string edits = pair.compare({*found, 1e-6}).edits;
      EXPECT_EQ(edits.find('~'), std::string::npos) << edits;
    }
  }
  EXPECT_FALSE(series::bestOffset(Pair({{1, 1}}, {}).beforeSide, {}, 1));
}

}  // namespace
