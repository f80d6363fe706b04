#include "workload.hpp"

#include <algorithm>
#include <stdexcept>

#include "world.hpp"

namespace lotmere::bench {

void check(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

double median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

void report(benchmark::State& state, double subject, double floor, double ratio, std::size_t items) {
  state.SetIterationTime(subject);
  state.counters["ratio"] = ratio;
  state.counters["subject_ms"] = subject * 1000;
  state.counters["floor_ms"] = floor * 1000;
  if (items != 0) state.counters["items"] = static_cast<double>(items);
  if (items != 0) state.counters["items_per_s"] = static_cast<double>(items) / subject;
  state.counters["peak_MB"] = peakMegabytes();
}

}  // namespace lotmere::bench
