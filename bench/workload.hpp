// What the workloads share: sizes, rounds, checks and the report of a row.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace lotmere::bench {

// Sizes of a full run and of a smoke run.
struct Sizes {
  int reds;  // picked, with `blues` blues
  int blues;
  int draws;
  int rounds;  // of floor and subject in turn
  int lines;   // of a ticket file
};
inline constexpr Sizes kFull{17, 8, 3500, 5, 1'000'000};
inline constexpr Sizes kSmoke{9, 4, 60, 1, 1000};

// Ends the run with a message and a failure where a result isn't what it should be.
void check(bool holds, const char* what);

// The median of times in seconds.
[[nodiscard]] double median(std::vector<double> times);

// Fills in the row of a workload; `items` 0 leaves the rates out.
void report(benchmark::State& state, double subject, double floor, double ratio, std::size_t items);

template <class Workload>
void add(const std::string& name, Workload&& workload) {
  benchmark::RegisterBenchmark(name.c_str(), std::forward<Workload>(workload))
      ->Iterations(1)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace lotmere::bench
