#include <limits>
#include <vector>

#include "tests/params/Values.h"

namespace Kestova {
namespace {

// With keyframes at 10 (lead-in 0) and 20 (lead-in 4): what may be added.
struct Row {
  RationalTime time;
  RationalTime leadIn;
  bool fits;
};

const Row kRows[] = {
    {time(10), time(0), false},      {time(20), time(0), false},    {time(9), time(0), true},
    {time(16), time(0), true},       {time(33, 2), time(0), false}, {time(17), time(0), false},
    {time(319, 16), time(0), false}, {time(15), time(5), true},     {time(15), time(51, 10), false},
    {time(15), time(6), false},      {time(21), time(1), true},     {time(21), time(2), false},
    {time(5), time(100), true},      {time(25), time(-3), true},    {kBeforeAll, time(0), true},
    {kBeforeAll, time(1), false},  // reaches past the time that stands for "none before"
    {kAfterAll, time(1), true},      {kAfterAll, kAfterAll, false},
};

class Placement : public Fixture<int> {
 protected:
  void SetUp() override {
    shared->addKeyFrame(time(10), 1, time(0));
    shared->addKeyFrame(time(20), 2, time(4));
  }
};

TEST_F(Placement, DecidesWhatMayBeAdded) {
  for (const Row& row : kRows) {
    EXPECT_EQ(shared->canAddKeyFrame(row.time, row.leadIn), row.fits)
        << row.time << " " << row.leadIn;
    if (row.fits) {
      shared->addKeyFrame(row.time, 3, row.leadIn);
      shared->removeKeyFrame(row.time);
    } else {
      expectRefusal(row.time, "name", [&] { shared->addKeyFrame(row.time, 3, row.leadIn); });
      const auto made = boost::make_shared<KeyFrame<int>>(project, row.time, 3, row.leadIn);
      expectRefusal(row.time, "name", [&] { shared->addKeyFrame(made); });
    }
    EXPECT_EQ(times(), (std::vector<RationalTime>{time(10), time(20)}));
  }
}

TEST_F(Placement, DistinguishesOccupiedTimesFromLeadInsThatAreTooLong) {
  EXPECT_TRUE(shared->isOccupied(time(17)));
  EXPECT_TRUE(shared->leadInFits(time(17), time(7)));
  EXPECT_FALSE(shared->isOccupied(time(15)));
  EXPECT_FALSE(shared->leadInFits(time(15), time(6)));
}

TEST_F(Placement, AppliesToChangedLeadIns) {
  Counter keyFrame;
  Counter changes;
  shared->keyFrameAt(time(20))->attach(&keyFrame);
  shared->attach(&changes);
  EXPECT_EQ(shared->setKeyFrameLeadInLength(time(20), time(10)), time(4));
  EXPECT_EQ(keyFrame.take(), 1);
  EXPECT_EQ(changes.take(), 1);
  EXPECT_EQ(shared->setKeyFrameLeadInLength(time(20), time(10)), time(10));
  EXPECT_EQ(keyFrame.take(), 0);  // nothing changed
  EXPECT_EQ(changes.take(), 1);
  expectRefusal(time(20), "name",
                [&] { shared->setKeyFrameLeadInLength(time(20), time(101, 10)); });
  expectRefusal(time(15), "name", [&] { shared->setKeyFrameLeadInLength(time(15), time(0)); });
  EXPECT_EQ(shared->keyFrameAt(time(20))->leadInLength(), time(10));
}

TEST_F(Placement, AppliesToMovesButNotAgainstTheMovingKeyframe) {
  shared->addKeyFrame(time(30), 3, time(8));
  struct Move {
    RationalTime from;
    RationalTime to;
    RationalTime refusedAt;  // ignored for a move that fits
    bool fits;
  };
  for (const Move& move : {
           Move{time(11), time(12), time(11), false},  // no keyframe there
           Move{time(20), time(30), time(30), false},  // occupied
           Move{time(20), time(20), time(20), false},  // occupied by itself
           Move{time(20), time(23), time(23), false},  // inside the lead-in of 30
           Move{time(20), time(22), time(22), true},   // where that lead-in starts
           Move{time(20), time(13), time(13), false},  // its own lead-in would reach past 10
           Move{time(20), time(14), time(14), true},
           Move{time(30), time(27), time(27), false},  // its own lead-in would reach past 20
           Move{time(30), time(28), time(28), true},   // and is no obstacle to itself
           Move{time(20), time(40), time(40), true},   // past its neighbour
           Move{time(10), time(17), time(17), false},  // inside the lead-in of 20
       }) {
    if (move.fits) {
      const auto keyFrame = shared->keyFrameAt(move.from);
      shared->moveKeyFrame(move.from, move.to);
      EXPECT_EQ(shared->keyFrameAt(move.to), keyFrame);
      EXPECT_EQ(keyFrame->time(), move.to);
      shared->moveKeyFrame(move.to, move.from);
    } else {
      expectRefusal(move.refusedAt, "name", [&] { shared->moveKeyFrame(move.from, move.to); });
    }
    EXPECT_EQ(times(), (std::vector<RationalTime>{time(10), time(20), time(30)})) << move.to;
  }
}

TEST_F(Placement, AppliesToMovesFromAndToTheTimesThatStandForNone) {
  const auto last = [](int64 before) { return time(std::numeric_limits<int64>::max() - before); };
  shared->addKeyFrame(kAfterAll, 3, time(5));
  expectRefusal(last(4), "name", [&] { shared->moveKeyFrame(kAfterAll, last(4)); });  // its own
  shared->moveKeyFrame(kAfterAll, last(5));
  shared->moveKeyFrame(last(5), last(4));
  expectRefusal(kBeforeAll, "name", [&] { shared->moveKeyFrame(last(4), kBeforeAll); });
  shared->moveKeyFrame(time(10), kBeforeAll);
  shared->moveKeyFrame(kBeforeAll, time(10));
  EXPECT_EQ(times(), (std::vector<RationalTime>{time(10), time(20), last(4)}));
}

TEST_F(Placement, NeverThrowsOverflowAtTheExtremes) {
  const RationalTime extremes[] = {kBeforeAll,
                                   time(std::numeric_limits<int64>::min() + 1),
                                   time(1, std::numeric_limits<int64>::max()),
                                   time(0),
                                   time(std::numeric_limits<int64>::max() - 1),
                                   kAfterAll};
  shared->addKeyFrame(kBeforeAll, 0, time(0));
  shared->addKeyFrame(kAfterAll, 9, time(1));
  for (const RationalTime& at : extremes) {
    for (const RationalTime& leadIn : extremes) {
      EXPECT_NO_THROW(shared->canAddKeyFrame(at, leadIn)) << at << " " << leadIn;
      EXPECT_NO_THROW(shared->hasKeyFrameIn({at, leadIn})) << at << " " << leadIn;
    }
  }
  EXPECT_TRUE(shared->isOccupied(time(std::numeric_limits<int64>::max())));
}

}  // namespace
}  // namespace Kestova
