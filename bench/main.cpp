// Workloads, each with a ratio against a floor measured in the same run (floors and subjects alternate; the
// best of some rounds counts):
//
//   init-100k      init_Tickets for 99,008 tickets / a plain prepared insert of the same rows at most 1.5
//   run-100k-all   run_Pipeline, every condition on / one plain read of the rows and one write-back of the
//   changes   at most 2 run-100k-walk  the walk that updates the rows one by one in the store for each pass /
//   run_Pipeline             at least 50 shrink-100k/N  the literal centre-by-centre rule at N = 6 / the
//   shrink by bitmaps at N = 3 to 6                at least 20 shrink-all/N   all 17,721,088 tickets in
//   memory; seconds per ticket against shrink-100k                       near 1 passes-all     all conditions
//   over all 17,721,088 tickets; seconds per ticket and pass against 99,008 tickets  near 1 stats-3500     66
//   counting selects a row / calc_DrawStats over 3,500 draws                                    at least 20
//
// --smoke runs the small ones with small sizes, to show that they work; its figures mean nothing.
#include <benchmark/benchmark.h>

#include <cstring>

#include "workloads.hpp"

int main(int argc, char** argv) {
  bool smoke = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--smoke") != 0) continue;
    smoke = true;
    for (int j = i; j + 1 < argc; ++j) argv[j] = argv[j + 1];
    --argc;
    --i;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  lotmere::bench::register_Workloads(smoke);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
