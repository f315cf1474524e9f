// The numbers of records and keyframes in the benchmarks.
#pragma once

#include <benchmark/benchmark.h>

namespace bench {

/// Powers of ten from 1e3 to 1e6.
inline void tenfold(benchmark::internal::Benchmark* path) {
  for (const std::int64_t count : {1'000, 10'000, 100'000, 1'000'000}) path->Arg(count);
}

/// The same, and the sizes that double up to 1e6.
inline void tenfoldAndDoubling(benchmark::internal::Benchmark* path) {
  tenfold(path);
  for (const std::int64_t count : {125'000, 250'000, 500'000}) path->Arg(count);
}

}  // namespace bench
