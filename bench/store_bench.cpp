// Compares the store of keyframes with the containers that could replace it: ChunkedMap, std::map
// and boost::container::flat_map, each from exact times to shared pointers. Every store is filled
// and searched the way the parameter does it: an insertion at a known lower bound, a lookup with a
// hint where the store takes one.
#include <benchmark/benchmark.h>

#include <boost/container/flat_map.hpp>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "bench/Frames.h"
#include "host/Kestova/RationalTime.h"
#include "params/ChunkedMap.h"

namespace {

using bench::Order;
using Kestova::RationalTime;
using Value = boost::shared_ptr<int>;

class Chunked {
 public:
  void add(const RationalTime& time, Value value) {
    m_map.insert(m_map.lowerBound(time), time, std::move(value));
  }
  const int* find(const RationalTime& time) {
    const auto found = m_map.lowerBound(time, m_last);
    m_last = found.position();
    return found == m_map.end() ? nullptr : found.value().get();
  }
  void remove(const RationalTime& time) { m_map.erase(m_map.lowerBound(time)); }

 private:
  using Map = Kestova::ChunkedMap<Value>;
  Map m_map;
  Map::Position m_last;
};

template <class Map>
class Standard {
 public:
  void add(const RationalTime& time, Value value) {
    const bool isLast = m_map.empty() || std::prev(m_map.end())->first < time;
    const auto next = isLast ? m_map.end() : m_map.lower_bound(time);
    m_map.emplace_hint(next, time, std::move(value));
  }
  const int* find(const RationalTime& time) const {
    const auto found = m_map.lower_bound(time);
    return found == m_map.end() ? nullptr : found->second.get();
  }
  void remove(const RationalTime& time) { m_map.erase(m_map.lower_bound(time)); }

 private:
  Map m_map;
};
using Tree = Standard<std::map<RationalTime, Value>>;
using Flat = Standard<boost::container::flat_map<RationalTime, Value>>;

template <class Store>
Store filled(const std::vector<std::int64_t>& frames, const Value& value) {
  Store store;
  for (const std::int64_t frame : frames) store.add(RationalTime(frame), value);
  return store;
}

template <class Store, Order order>
void storeFill(benchmark::State& state) {
  const auto frames = bench::keyedFrames(state.range(), order);
  const auto value = boost::make_shared<int>(0);
  while (state.KeepRunning()) {
    Store store = filled<Store>(frames, value);
    state.PauseTiming();
    store = Store();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}

// Searches each frame, whether or not it has a keyframe.
template <class Store>
void find(benchmark::State& state, const std::vector<std::int64_t>& frames) {
  Store store =
      filled<Store>(bench::keyedFrames(state.range(), Order::Rising), boost::make_shared<int>(0));
  while (state.KeepRunning()) {
    for (const std::int64_t frame : frames)
      benchmark::DoNotOptimize(store.find(RationalTime(frame)));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(frames.size()));
}

template <class Store>
void storeFindInSequence(benchmark::State& state) {
  std::vector<std::int64_t> frames;
  for (std::int64_t frame = 0; frame < bench::kStep * state.range(); ++frame)
    frames.push_back(frame);
  find<Store>(state, frames);
}

template <class Store>
void storeFindAtRandom(benchmark::State& state) {
  find<Store>(state, bench::randomFrames(state.range()));
}

// As a shift does: removes every keyframe, first to last, and adds it again one frame later.
template <class Store>
void storeShift(benchmark::State& state) {
  const auto frames = bench::keyedFrames(state.range(), Order::Rising);
  const auto value = boost::make_shared<int>(0);
  Store store = filled<Store>(frames, value);
  std::int64_t offset = 0;
  while (state.KeepRunning()) {
    for (const std::int64_t frame : frames) store.remove(RationalTime(frame + offset));
    ++offset;
    for (const std::int64_t frame : frames) store.add(RationalTime(frame + offset), value);
  }
  state.SetItemsProcessed(state.iterations() * state.range());
}

void sizes(benchmark::internal::Benchmark* path) {
  path->Arg(100)->Arg(10'000)->Arg(1'000'000);
}
void smallSizes(benchmark::internal::Benchmark* path) {  // for what is quadratic in a flat map
  path->Arg(100)->Arg(10'000)->Arg(100'000);
}

#define KESTOVA_BENCH_STORE(Store)                                          \
  BENCHMARK_TEMPLATE(storeFill, Store, Order::Rising)->Apply(sizes);        \
  BENCHMARK_TEMPLATE(storeFill, Store, Order::Falling)->Apply(smallSizes);  \
  BENCHMARK_TEMPLATE(storeFill, Store, Order::Shuffled)->Apply(smallSizes); \
  BENCHMARK_TEMPLATE(storeFindInSequence, Store)->Apply(sizes);             \
  BENCHMARK_TEMPLATE(storeFindAtRandom, Store)->Apply(sizes);               \
  BENCHMARK_TEMPLATE(storeShift, Store)->Apply(smallSizes);
KESTOVA_BENCH_STORE(Chunked)
KESTOVA_BENCH_STORE(Tree)
KESTOVA_BENCH_STORE(Flat)

}  // namespace
