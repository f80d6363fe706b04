#include "history/fetch_job.hpp"

namespace lotmere {

Fetched fetchAsJob(Desk& desk, Fetcher& fetcher, const std::string& address) {
  const StopScope stop(desk.course());
  const CourseLeg job(desk.course(), 0, Course::Stop::possible);
  Fetched fetched = fetcher.fetch(address);
  if (desk.course().stopRequested()) return {std::nullopt, {}, true};
  return fetched;
}

}  // namespace lotmere
