// Workloads, each with a ratio against a floor measured in the same run (the best of some rounds counts, from
// smart-100k to import-linear the median). A row whose two results differ ends the run with a failure.
//
//   init-100k       initTickets for 99,008 tickets against a plain prepared insert of the same rows; at most
//                   1.5
//   run-100k-all    runPipeline with every condition on against one plain read of the rows and one plain
//                   write-back of the same changes; at most 2
//   run-100k-walk   walking and updating the rows one by one in the store for each pass, against
//                   runPipeline; at least 50
//   undo-100k       the tickets packed and kept in front of a run against the run; at most 0.1
//   live-100k       LiveCount over the tickets it holds, every condition on, against one plain read of the
//                   rows: a count that a click waits for takes less than reading what it counts; at most 1
//                   and 50 ms (/shrink: with the smart optimisation and the shrink at 6)
//   shrink-100k/N   the literal centre-by-centre rule at N = 6 against the shrink by bitmaps; at least 20
//   fewer-88k/N     searchCover with the factory effort over 88,008 filtered tickets against the literal
//                   rule at N = 6 over the same tickets; at most 20, and fewer tickets than the plain shrink
//                   leaves
//   guarantee-88k   each of 88,008 tickets as the draw, the 5,148 of their plain shrink checked against it:
//                   ticket by ticket against checkGuarantee; at least 20, and 2 s (/2: on two threads)
//   shrink-repeats  the same for 20,000 imported tickets that each repeat a red; at least 20
//   stats-3500      66 counting selects a row against computeDrawStatistics over 3,500 draws; at least 20
//   smart-100k      the literal comparison of 463 differences a ticket against optimiseSmart; at least 15
//   match-100k/N    one walk over the tickets a draw against filterLiShi at match value N over 3,500 draws
//                   (for N = 4 the newest 150, so that tickets are left); at least 20
//   backtest-3500   every draw judged by every condition, against ten times a plan made anew for each tenth
//                   draw; shares_s: the shares of all sixes at 100 draws, on one thread
//   omission-3500   two selects and a mark in every row a number against analyseRedOmission over 3,500 draws,
//                   which hold the right marks already (repeat) or those of the other colour (rewrite); at
//                   least 20
//   import-1m       importTickets of 1,000,000 lines against a plain read, parse and insert of the same
//                   lines; at most 2
//   import-linear   seconds a line of 1,000,000 lines against those of 100,000; 1
//   shrink-all/N    all 17,721,088 tickets in memory, seconds a ticket against shrink-100k/N
//   passes-all      every condition over all 17,721,088 tickets in memory, seconds for each ticket that a
//                   pass looks at against the same over 99,008 tickets (/2: on two threads)
//   generate-all    generateTickets for all 17,721,088 tickets, every condition on and N = 4, stored, against
//                   the steps over all of them in memory on two threads and the shrink ticket by ticket; at
//                   most 1, and 1 s
//   judge-all       how many of all conditions each of the 1,107,568 red sixes fails, against the passes over
//                   the same sixes (/2: on two threads)
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
  lotmere::bench::registerWorkloads(smoke);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
