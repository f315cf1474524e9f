#include <algorithm>

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
    {T(10), T(0), false},      {T(20), T(0), false},          {T(9), T(0), true},
    {T(16), T(0), true},       {T(33, 2), T(0), false},       {T(17), T(0), false},
    {T(319, 16), T(0), false}, {T(15), T(5), true},           {T(15), T(51, 10), false},
    {T(15), T(6), false},      {T(21), T(1), true},           {T(21), T(2), false},
    {T(5), T(100), true},      {T(25), T(-3), true},          {kBeforeAll, T(0), true},
    {kBeforeAll, T(1), false},  // reaches past what stands for "nothing before"
    {kAfterAll, T(1), true},   {kAfterAll, kAfterAll, false},
};

class Placement : public Fixture<int> {
 protected:
  void SetUp() override {
    shared->addKeyFrame(T(10), 1, T(0));
    shared->addKeyFrame(T(20), 2, T(4));
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
    EXPECT_EQ(times(), (std::vector<RationalTime>{T(10), T(20)}));
  }
}

TEST_F(Placement, TellsTakenTimesFromLeadInsThatReachTooFar) {
  EXPECT_TRUE(shared->isOccupied(T(17)));
  EXPECT_TRUE(shared->leadInFits(T(17), T(7)));
  EXPECT_FALSE(shared->isOccupied(T(15)));
  EXPECT_FALSE(shared->leadInFits(T(15), T(6)));
}

TEST_F(Placement, BindsLeadInsThatAreSetLater) {
  Counter keyFrame;
  Counter changes;
  shared->keyFrameAt(T(20))->attach(&keyFrame);
  shared->attach(&changes);
  EXPECT_EQ(shared->setKeyFrameLeadInLength(T(20), T(10)), T(4));
  EXPECT_EQ(keyFrame.take(), 1);
  EXPECT_EQ(changes.take(), 1);
  EXPECT_EQ(shared->setKeyFrameLeadInLength(T(20), T(10)), T(10));
  EXPECT_EQ(keyFrame.take(), 0);  // nothing changed
  EXPECT_EQ(changes.take(), 1);
  expectRefusal(T(20), "name", [&] { shared->setKeyFrameLeadInLength(T(20), T(101, 10)); });
  expectRefusal(T(15), "name", [&] { shared->setKeyFrameLeadInLength(T(15), T(0)); });
  EXPECT_EQ(shared->keyFrameAt(T(20))->leadInLength(), T(10));
}

TEST_F(Placement, BindsMovesWithoutTheMovingKeyframe) {
  shared->addKeyFrame(T(30), 3, T(8));
  struct Move {
    RationalTime from;
    RationalTime to;
    RationalTime refusedAt;  // what the refusal names; `from` itself stands for none
    bool fits;
  };
  for (const Move& move : {
           Move{T(11), T(12), T(11), false},  // nobody there
           Move{T(20), T(30), T(30), false},  // taken
           Move{T(20), T(20), T(20), false},  // taken by itself
           Move{T(20), T(23), T(23), false},  // inside the lead-in of 30
           Move{T(20), T(22), T(22), true},   // where it begins
           Move{T(20), T(13), T(13), false},  // its own lead-in would pass 10
           Move{T(20), T(14), T(14), true},
           Move{T(30), T(20 + 7), T(27), false},  // its own lead-in would pass 20
           Move{T(30), T(28), T(28), true},       // and is no obstacle to itself
           Move{T(20), T(40), T(40), true},       // past its neighbour
           Move{T(10), T(17), T(17), false},      // inside the lead-in of 20
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
    EXPECT_EQ(times(), (std::vector<RationalTime>{T(10), T(20), T(30)})) << move.to;
  }
}

TEST_F(Placement, NeverThrowsOverflowAtTheExtremes) {
  const RationalTime extremes[] = {
      kBeforeAll, T(std::numeric_limits<int64>::min() + 1), T(1, std::numeric_limits<int64>::max()),
      T(0),       T(std::numeric_limits<int64>::max() - 1), kAfterAll};
  shared->addKeyFrame(kBeforeAll, 0, T(0));
  shared->addKeyFrame(kAfterAll, 9, T(1));
  for (const RationalTime& time : extremes) {
    for (const RationalTime& leadIn : extremes) {
      EXPECT_NO_THROW(shared->canAddKeyFrame(time, leadIn)) << time << " " << leadIn;
      EXPECT_NO_THROW(shared->hasKeyFrameIn({time, leadIn})) << time << " " << leadIn;
    }
  }
  EXPECT_TRUE(shared->isOccupied(T(std::numeric_limits<int64>::max())));
}

}  // namespace
}  // namespace Kestova
