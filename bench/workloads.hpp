#pragma once

namespace lotmere::bench {

// Registers the workloads of main.cpp's list; with `smoke` the small ones in small sizes.
void register_Workloads(bool smoke);

}  // namespace lotmere::bench
