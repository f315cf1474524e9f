// The numbers of records and keyframes that paths are measured at.
#pragma once

#include <benchmark/benchmark.h>

namespace bench {

/// From 1e3 to 1e6 tenfold.
inline void tenfold(benchmark::internal::Benchmark* path) {
  for (const std::int64_t count : {1'000, 10'000, 100'000, 1'000'000}) path->Arg(count);
}

/// The same and what doubles up to 1e6.
inline void tenfoldAndDoubling(benchmark::internal::Benchmark* path) {
  tenfold(path);
  for (const std::int64_t count : {125'000, 250'000, 500'000}) path->Arg(count);
}

}  // namespace bench
