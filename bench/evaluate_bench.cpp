// Evaluates a parameter through the interface of hosts; the floor searches a sorted vector.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "bench/Project.h"
#include "bench/Sizes.h"

namespace {

using Kestova::RationalTime;

// Loaded once per process: loading a million keyframes takes longer than evaluating them.
const Kestova::Parameter<double>& parameterOf(std::int64_t count) {
  static const bench::Project project;
  static std::map<std::int64_t, boost::shared_ptr<const Kestova::Parameter<double>>> loaded;
  auto& parameter = loaded[count];
  if (!parameter) {
    const auto order = bench::Order::Rising;
    parameter = project.load(&bench::Project::Loader::loadDoubles,
                             bench::streamFileName(bench::Stream::Doubles, order, count));
  }
  return *parameter;
}

void evaluateInSequence(benchmark::State& state) {
  const auto& parameter = parameterOf(state.range());
  const std::int64_t end = bench::kStep * state.range();
  while (state.KeepRunning()) {
    for (std::int64_t frame = 0; frame < end; ++frame) {
      benchmark::DoNotOptimize(parameter.valueAt(RationalTime(frame)));
    }
  }
  state.SetItemsProcessed(state.iterations() * end);
}
BENCHMARK(evaluateInSequence)->Apply(bench::tenfold);

void evaluateAtRandom(benchmark::State& state) {
  const auto& parameter = parameterOf(state.range());
  const auto frames = bench::randomFrames(state.range());
  while (state.KeepRunning()) {
    for (const std::int64_t frame : frames) {
      benchmark::DoNotOptimize(parameter.valueAt(RationalTime(frame)));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK(evaluateAtRandom)->Apply(bench::tenfoldAndDoubling);

using Sorted = std::vector<std::pair<RationalTime, double>>;

Sorted sortedKeyFrames(std::int64_t count) {
  Sorted sorted;
  for (const std::int64_t frame : bench::keyedFrames(count, bench::Order::Rising)) {
    sorted.emplace_back(frame, bench::opacityAt(frame));
  }
  return sorted;
}

// Advances an iterator with the frames.
void evaluateSortedInSequence(benchmark::State& state) {
  const Sorted sorted = sortedKeyFrames(state.range());
  const std::int64_t end = bench::kStep * state.range();
  while (state.KeepRunning()) {
    auto current = sorted.begin();
    for (std::int64_t frame = 0; frame < end; ++frame) {
      const RationalTime time(frame);
      while (std::next(current) != sorted.end() && std::next(current)->first <= time) ++current;
      benchmark::DoNotOptimize(current->second);
    }
  }
  state.SetItemsProcessed(state.iterations() * end);
}
BENCHMARK(evaluateSortedInSequence)->Apply(bench::tenfold);

void evaluateSortedAtRandom(benchmark::State& state) {
  const Sorted sorted = sortedKeyFrames(state.range());
  const auto frames = bench::randomFrames(state.range());
  while (state.KeepRunning()) {
    for (const std::int64_t frame : frames) {
      const auto after = std::upper_bound(
          sorted.begin(), sorted.end(), RationalTime(frame),
          [](const RationalTime& time, const auto& keyFrame) { return time < keyFrame.first; });
      benchmark::DoNotOptimize(std::prev(after)->second);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}
BENCHMARK(evaluateSortedAtRandom)->Apply(bench::tenfoldAndDoubling);

}  // namespace
