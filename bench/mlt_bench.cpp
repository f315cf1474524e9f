// The peer MLT: one animated property per number. Each insertion walks a list, so the maximum is
// 1e4.
#include <benchmark/benchmark.h>
#include <framework/mlt.h>

#include <memory>

#include "bench/Frames.h"
#include "bench/Recordings.h"

namespace {

constexpr double kFramesPerSecond = bench::kEditRate;

struct Close {
  void operator()(mlt_property property) const { mlt_property_close(property); }
};
using Property = std::unique_ptr<mlt_property_s, Close>;

void set(const Property& property, std::int64_t frame, double value, int length) {
  mlt_property_anim_set_double(property.get(), value, kFramesPerSecond, nullptr,
                               static_cast<int>(frame), length, mlt_keyframe_discrete);
}

int lengthOf(std::int64_t count) {
  return static_cast<int>(bench::kStep * count);
}

void loadMlt(benchmark::State& state) {
  const auto frames = bench::keyedFrames(state.range(), bench::Order::Rising);
  const int length = lengthOf(state.range());
  while (state.KeepRunning()) {
    const Property x(mlt_property_init());
    const Property y(mlt_property_init());
    for (const std::int64_t frame : frames) {
      set(x, frame, bench::pixelAt(frame), length);
      set(y, frame, bench::pixelAt(2 * frame), length);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK(loadMlt)->Arg(1'000)->Arg(10'000);

void evaluateMltAtRandom(benchmark::State& state) {
  const Property property(mlt_property_init());
  const int length = lengthOf(state.range());
  for (const std::int64_t frame : bench::keyedFrames(state.range(), bench::Order::Rising)) {
    set(property, frame, bench::opacityAt(frame), length);
  }
  const auto frames = bench::randomFrames(state.range());
  while (state.KeepRunning()) {
    for (const std::int64_t frame : frames) {
      benchmark::DoNotOptimize(mlt_property_anim_get_double(
          property.get(), kFramesPerSecond, nullptr, static_cast<int>(frame), length));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK(evaluateMltAtRandom)->Arg(1'000)->Arg(10'000);

}  // namespace
