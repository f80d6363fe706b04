// The filters that judge a ticket against the draws before its period. Their result holds for one period
// only, and they say so.
#pragma once

#include "pipeline/filter_pass.hpp"

namespace lotmere {

// The warning of a condition whose figure depends on earlier draws; other conditions say nothing. The two
// temperatures warn even when no ticket is left.
void warn_IfHistoryRelative(PipelineRun& run, const Condition& condition);

// 前2期和值相同组: rejects a ticket that has, among the sum families switched on, more than two sums in
// common with the stored sums of the two draws before the period (one hit for a family, even when both draws
// match).
std::int64_t filter_Qian2HeZhi(PipelineRun& run);

// 历史数据过滤: rejects a ticket that shares at least the match value of reds with any draw of the range set
// in `历史数据过滤`. A range that reaches the period ends before it; with no draw in the range nothing is
// filtered.
std::int64_t filter_LiShi(PipelineRun& run);

}  // namespace lotmere
