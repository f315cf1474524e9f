// The peer libopenshot: its Keyframe has one number per frame, so a point needs two of them.
#include <KeyFrame.h>
#include <benchmark/benchmark.h>

#include <optional>

#include "bench/Frames.h"
#include "bench/Recordings.h"
#include "bench/Sizes.h"

namespace {

using bench::Order;

openshot::Point constantPoint(std::int64_t frame, double value) {
  return {openshot::Coordinate(static_cast<double>(frame), value), openshot::CONSTANT};
}

void loadOpenShot(benchmark::State& state, Order order) {
  const auto frames = bench::keyedFrames(state.range(), order);
  while (state.KeepRunning()) {
    std::optional<openshot::Keyframe> x;
    std::optional<openshot::Keyframe> y;
    x.emplace();
    y.emplace();
    for (const std::int64_t frame : frames) {
      x->AddPoint(constantPoint(frame, bench::pixelAt(frame)));
      y->AddPoint(constantPoint(frame, bench::pixelAt(2 * frame)));
    }
    state.PauseTiming();
    x.reset();
    y.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}

// Takes seconds, because every insertion before other points moves them.
void once(benchmark::internal::Benchmark* path) {
  path->Arg(100'000)->Iterations(1)->Repetitions(1);
}
BENCHMARK_CAPTURE(loadOpenShot, rising, Order::Rising)->Apply(bench::tenfold);
BENCHMARK_CAPTURE(loadOpenShot, falling, Order::Falling)->Apply(once);
BENCHMARK_CAPTURE(loadOpenShot, shuffled, Order::Shuffled)->Apply(once);

openshot::Keyframe opacities(std::int64_t count) {
  openshot::Keyframe keyFrame;
  for (const std::int64_t frame : bench::keyedFrames(count, Order::Rising)) {
    keyFrame.AddPoint(constantPoint(frame, bench::opacityAt(frame)));
  }
  return keyFrame;
}

void evaluateOpenShotInSequence(benchmark::State& state) {
  const openshot::Keyframe keyFrame = opacities(state.range());
  const std::int64_t end = bench::kStep * state.range();
  while (state.KeepRunning()) {
    for (std::int64_t frame = 0; frame < end; ++frame) {
      benchmark::DoNotOptimize(keyFrame.GetValue(frame));
    }
  }
  state.SetItemsProcessed(state.iterations() * end);
}
BENCHMARK(evaluateOpenShotInSequence)->Apply(bench::tenfold);

void evaluateOpenShotAtRandom(benchmark::State& state) {
  const openshot::Keyframe keyFrame = opacities(state.range());
  const auto frames = bench::randomFrames(state.range());
  while (state.KeepRunning()) {
    for (const std::int64_t frame : frames) benchmark::DoNotOptimize(keyFrame.GetValue(frame));
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK(evaluateOpenShotAtRandom)->Apply(bench::tenfold);

}  // namespace
