// Fetching the draw list from an address and merging it into the history.
#pragma once

#include <optional>
#include <string>

#include "core/desk.hpp"
#include "core/platform.hpp"
#include "core/store.hpp"

namespace lotmere {

struct DownloadResult {
  bool ok = false;       // the reply was a draw list, whether or not it held anything new
  bool stopped = false;  // the person broke the fetch off; nothing was told or changed then
  int added = 0;         // draws stored that the history didn't have
  int overwritten = 0;   // stored draws that got the reply's date and numbers
  int skipped = 0;       // entries that aren't whole, valid draws
};

// Fetches and compacts, as a job that the person can stop; an empty text when the address can't be read,
// nothing when they stopped it.
[[nodiscard]] std::optional<std::string> fetchDrawText(Desk& desk, Fetcher& fetcher,
                                                       const std::string& address);

// One run: looks at the periods from the newest stored one - 10 to that one + 5000, stores what the reply
// holds of them and computes the statistics of the earliest draw and of that range. Older rows are never
// changed. Rows and statistics stand in one change: a failure or a crash leaves the history as it was. Tells
// "已成功更新!", or what may be wrong when the address can't be read or serves something else; nothing is
// written then. The desk's status says what is under way, and is empty before the result is told. The fetch can
// be stopped, the rest can't. Throws SQLite::Exception when the store refuses.
[[nodiscard]] DownloadResult downloadDraws(Store& store, Desk& desk, Fetcher& fetcher,
                                           const std::string& address);

// Runs on one reply until it holds nothing newer than the history, all in one change. A gap too wide for one
// run is stepped over.
[[nodiscard]] DownloadResult downloadAll(Store& store, Desk& desk, Fetcher& fetcher,
                                         const std::string& address);

// The command (`cmmUpdateHistory(1)`): one run on the remembered address. While none is remembered the person
// is asked for one; nothing happens when they cancel, and an address that is no http, https or file address is
// refused. From an empty history a run reaches at most the period 2008001; the next one goes on from there.
[[nodiscard]] DownloadResult download_Command(Store& store, Desk& desk, Fetcher& fetcher);

}  // namespace lotmere
