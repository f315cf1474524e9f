// Operations on whole parameters, compared with building one in time order through the same
// interface.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench/Project.h"

namespace {

using Kestova::Parameter;
using Kestova::Point;
using Kestova::RationalTime;
using PointParameter = Parameter<Point>;

boost::shared_ptr<PointParameter> loaded(const bench::Project& project, std::int64_t count) {
  const auto order = bench::Order::Rising;
  return project.load(&bench::Project::Loader::loadPoints,
                      bench::streamFileName(bench::Stream::Points, order, count));
}

void build(benchmark::State& state) {
  const bench::Project project;
  const auto frames = bench::keyedFrames(state.range(), bench::Order::Rising);
  while (state.KeepRunning()) {
    state.PauseTiming();
    auto parameter = loaded(project, 0);
    state.ResumeTiming();
    for (const std::int64_t frame : frames) {
      parameter->addKeyFrame(RationalTime(frame), {static_cast<double>(frame), 0, 0},
                             RationalTime());
    }
    state.PauseTiming();
    parameter.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}

void clone(benchmark::State& state) {
  const bench::Project project;
  const auto parameter = loaded(project, state.range());
  while (state.KeepRunning()) {
    std::unique_ptr<Kestova::Cloneable> copy(parameter->clone());
    state.PauseTiming();
    copy.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}

void shift(benchmark::State& state) {
  const bench::Project project;
  const auto parameter = loaded(project, state.range());
  const auto all = [](const RationalTime&) { return true; };
  while (state.KeepRunning()) parameter->shiftKeyFrames(RationalTime(1), all);
  state.SetItemsProcessed(state.iterations() * state.range());
}

void isEquivalent(benchmark::State& state) {
  const bench::Project project;
  const auto one = loaded(project, state.range());
  const auto other = loaded(project, state.range());
  while (state.KeepRunning()) {
    if (!one->isEquivalentTo(*other)) state.SkipWithError("they differ");
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}

void doubled(benchmark::internal::Benchmark* path) {
  path->Arg(50'000)->Arg(100'000);
}
BENCHMARK(build)->Apply(doubled);
BENCHMARK(clone)->Apply(doubled);
BENCHMARK(shift)->Apply(doubled);
BENCHMARK(isEquivalent)->Apply(doubled);

}  // namespace
