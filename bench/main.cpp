// Workloads, each with a ratio against a floor measured in the same run (the best of some rounds counts):
//
//   init-100k       init_Tickets for 99,008 tickets against a plain prepared insert of the same rows; at most 1.5
//   run-100k-all    run_Pipeline with every condition on against one plain read of the rows and one plain
//                   write-back of the same changes; at most 2
//   run-100k-walk   walking and updating the rows one by one in the store for each pass, against run_Pipeline;
//                   at least 50
//   shrink-100k/N   the literal centre-by-centre rule at N = 6 against the shrink by bitmaps; at least 20
//   stats-3500      66 counting selects a row against calc_DrawStats over 3,500 draws; at least 20
//   shrink-all/N    all 17,721,088 tickets in memory, seconds a ticket against shrink-100k/N
//   passes-all      every condition over all 17,721,088 tickets in memory, seconds for each ticket that a pass
//                   looks at against the same over 99,008 tickets
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
