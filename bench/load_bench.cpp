// Loads a stream as a parameter, from the file to the last keyframe; the floor adds the same
// keyframes to the lean model.
#include <benchmark/benchmark.h>

#include <optional>

#include "bench/Lean.h"
#include "bench/Project.h"
#include "bench/Sizes.h"

namespace {

using bench::Order;

void load(benchmark::State& state, Order order) {
  const bench::Project project;
  const std::string name = bench::streamFileName(bench::Stream::Points, order, state.range());
  while (state.KeepRunning()) {
    auto parameter = project.load(&bench::Project::Loader::loadPoints, name);
    state.PauseTiming();
    if (parameter->numKeyFrames() != state.range()) state.SkipWithError("keyframes are missing");
    parameter.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK_CAPTURE(load, rising, Order::Rising)->Apply(bench::tenfoldAndDoubling);
BENCHMARK_CAPTURE(load, falling, Order::Falling)->Arg(100'000);
BENCHMARK_CAPTURE(load, shuffled, Order::Shuffled)->Arg(100'000);

void loadLean(benchmark::State& state, Order order) {
  const auto owner = boost::make_shared<Kestova::ThreadSafe>();
  const auto frames = bench::keyedFrames(state.range(), order);
  while (state.KeepRunning()) {
    std::optional<bench::LeanParameter> parameter(owner);
    for (const std::int64_t frame : frames) {
      parameter->add(Kestova::RationalTime(frame), {static_cast<double>(frame), 0, 0});
    }
    state.PauseTiming();
    parameter.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK_CAPTURE(loadLean, rising, Order::Rising)->Apply(bench::tenfold);
BENCHMARK_CAPTURE(loadLean, falling, Order::Falling)->Arg(100'000);
BENCHMARK_CAPTURE(loadLean, shuffled, Order::Shuffled)->Arg(100'000);

}  // namespace
