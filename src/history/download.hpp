// Fetching the draw list from an address and merging it into the history.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/dates.hpp"
#include "base/desk.hpp"
#include "base/outcome.hpp"
#include "base/platform.hpp"
#include "game/game.hpp"
#include "store/store.hpp"

namespace lotmere {

struct DownloadResult {
  // Done: the reply was a draw list with at least one draw, whether or not it held anything new. Else nothing
  // has changed; refused as well is a run that finds nothing in reach of an empty history.
  Outcome outcome = Outcome::refused;
  std::string cause{};  // of a refusal, in a few words for the user

  int added = 0;        // draws stored that the history didn't have
  int overwritten = 0;  // stored draws that got another date or other numbers
  int skipped = 0;      // entries in reach that aren't whole, valid draws
  // What is wrong with the first few of these: "第 5 行（2024004 期）：红球 35 不对".
  std::vector<std::string> faults{};
  PeriodNo newest = 0;  // of the history behind the download
  bool more = false;    // the list holds draws beyond the reach of the run
};

// One run: looks at the periods from the newest stored one - 10 to that one + 5000, stores what the reply
// holds of them and computes the statistics of the earliest draw and of that range. Older rows are never
// changed, and an entry dated after `today` is skipped. Rows and statistics stand in one change: a failure or
// a crash leaves the history as it was. Tells nothing: see reportLines. The desk's status says what is under
// way. The fetch can be stopped, the rest can't. The address is remembered with the draws. Throws
// SQLite::Exception when the store refuses.
[[nodiscard]] DownloadResult downloadDraws(Store& store, Desk& desk, Fetcher& fetcher,
                                           const std::string& address, Date today);

// Runs on one reply until it holds nothing newer than the history, all in one change. A gap too wide for one
// run is stepped over.
[[nodiscard]] DownloadResult downloadAll(Store& store, Desk& desk, Fetcher& fetcher,
                                         const std::string& address, Date today);

// What a download that is done comes to, in lines: that it is done, the counts, that there was nothing newer,
// the faults of skipped entries.
[[nodiscard]] std::vector<std::string> reportLines(const DownloadResult& result);

// Tells what may be wrong, and the cause, of a download that was refused; nothing of one that was stopped.
void tellFailure(Desk& desk, const DownloadResult& result);

// The command: downloads all from the remembered address and tells what happened.
// While none is remembered the user is asked for one (see knownAddress); nothing happens when they cancel.
[[nodiscard]] DownloadResult downloadCommand(Store& store, Desk& desk, Fetcher& fetcher, Date today,
                                             std::string& address_typed);

}  // namespace lotmere
