#pragma once

#include "workload.hpp"

namespace lotmere::bench {

// Registers the workloads of main.cpp's list; with `smoke` the small ones in small sizes.
void registerWorkloads(bool smoke);
// Those that judge tickets in memory: smart-100k, match-100k, fewer-88k, guarantee-88k.
void registerJudgementWorkloads(const Sizes& sizes);
// Those that read and write the store: omission-3500, import-1m.
void registerStoreWorkloads(const Sizes& sizes);

}  // namespace lotmere::bench
