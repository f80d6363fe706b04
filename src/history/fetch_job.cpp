#include "history/fetch_job.hpp"

namespace lotmere {

Fetched fetchAsJob(Desk& desk, Fetcher& fetcher, const std::string& address) {
  const StopScope stop(desk);
  const Job job(desk, 0, Job::Stop::possible);
  Fetched fetched = fetcher.fetch(address);
  if (desk.stopRequested()) return {std::nullopt, {}, true};
  return fetched;
}

}  // namespace lotmere
