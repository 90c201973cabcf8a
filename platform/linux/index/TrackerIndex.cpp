#include "platform/linux/index/TrackerIndex.h"

#include <sys/stat.h>

#include <array>
#include <memory>
#include <utility>

#include "platform/PrintableText.h"
#include "platform/linux/FileUri.h"
#include "platform/linux/index/IndexedRoots.h"
#include "platform/linux/index/SessionBus.h"
#include "platform/linux/index/TrackerQueries.h"

namespace lumivane {
namespace {

constexpr std::array<const char*, 2> kServices = {"org.freedesktop.LocalSearch3",
                                                  "org.freedesktop.Tracker3.Miner.Files"};
constexpr const char* kMinerPath = "/org/freedesktop/Tracker3/Miner/Files";
constexpr const char* kMinerInterface = "org.freedesktop.Tracker3.Miner";
constexpr int kEqualLooks = 5;

struct Service {
  std::string name;
  std::string owner;  // its unique name: another one is another program
};

std::optional<Service> runningService(const SessionBus& bus, TimeLimit& limit) {
  for (const char* name : kServices) {
    if (std::optional<std::string> owner = bus.ownerOf(name, limit)) return Service{name, std::move(*owner)};
  }
  return std::nullopt;
}

// Starts the service where the desktop has one and it sleeps.
Result<Service> findService(const SessionBus& bus, TimeLimit& limit) {
  if (std::optional<Service> running = runningService(bus, limit)) return std::move(*running);
  for (const char* name : kServices) {
    if (!bus.isActivatable(name, limit)) continue;
    if (const Result<Done> started = bus.activate(name, limit); !started)
      return Error{std::string(name) + " does not start: " + started.error()};
    if (std::optional<Service> running = runningService(bus, limit)) return std::move(*running);
  }
  return Error{limit.hasPassed() ? "the session bus takes too long" : "there is no such service"};
}

// Whether the index says that it has gone through all its folders.
Result<bool> saysItIsIdle(const SessionBus& bus, const Service& service, TimeLimit& limit) {
  const Result<double> progress =
      bus.numberFrom(service.name, kMinerPath, kMinerInterface, "GetProgress", limit);
  if (!progress) return Error{progress.error()};
  const Result<std::string> status =
      bus.textFrom(service.name, kMinerPath, kMinerInterface, "GetStatus", limit);
  if (!status) return Error{status.error()};
  return progress.value() >= 1.0 && status.value() == "Idle";
}

// It says so while the last thousands of files are still being written to its database: only when their number stands
// still as well can its answer be whole.
Result<Done> waitUntilSettled(const SessionBus& bus, const Service& service, TrackerQueries& queries,
                              const std::string& folderUri, const TrackerIndex::Limits& limits,
                              TimeLimit& limit) {
  const Error stillAtWork{service.name + " is still at work"};
  int equalLooks = 0;
  std::int64_t lastFiles = -1;
  limit.restart(limits.toSettle);
  for (bool hasAnswered = false;; hasAnswered = true) {
    const Result<bool> idle = saysItIsIdle(bus, service, limit);
    // One that has answered before does not hang: its time ran out in the middle of a question.
    if (!idle && hasAnswered && limit.hasPassed()) return stillAtWork;
    if (!idle) return Error{service.name + " does not say how far it is: " + idle.error()};
    const Result<std::int64_t> files = queries.numFilesBelow(folderUri, limit);
    if (!files && hasAnswered && limit.hasPassed()) return stillAtWork;
    if (!files) return Error{files.error()};
    const bool isEqual = idle.value() && files.value() == lastFiles;
    equalLooks = isEqual ? equalLooks + 1 : 1;
    lastFiles = idle.value() ? files.value() : -1;
    if (isEqual && equalLooks >= kEqualLooks) return Done{};
    if (!limit.waitFor(limits.betweenLooks)) return stillAtWork;
  }
}

class TrackedFolder final : public IndexedFolder {
 public:
  TrackedFolder(std::string folder, SessionBus bus, Service service, std::chrono::milliseconds perRow)
      : folder_(std::move(folder)), bus_(std::move(bus)), service_(std::move(service)), perRow_(perRow) {}

  [[nodiscard]] std::string name() const override { return "the desktop's index (" + service_.name + ")"; }
  [[nodiscard]] bool tellsOfAllFiles() const override { return false; }

  [[nodiscard]] Result<Done> search(const PicturePredicate& predicate, const Found& found,
                                    std::stop_token stop) override {
    OwnMainContext context;
    TimeLimit limit(perRow_, std::move(stop));
    Result<TrackerQueries> queries = TrackerQueries::connect(bus_, service_.name, context, limit);
    if (!queries) return Error{queries.error()};
    const Result<Done> done = queries.value().filesBelow(
        *fileUri(folder_.empty() ? "/" : folder_), predicate.largerThanBytes,
        [&](const IndexRow& row) { hand(row, found); }, limit, perRow_);
    if (!done) return done;
    // The end of what a service has sent looks the same whether it had more to say or not.
    limit.restart(perRow_);
    // Asked by its own name it answers only if it is the same program still.
    const auto alive = bus_.numberFrom(service_.owner, kMinerPath, kMinerInterface, "GetProgress", limit);
    if (!alive) return Error{service_.name + " has gone away: " + alive.error()};
    return Done{};
  }

 private:
  void hand(const IndexRow& row, const Found& found) const {
    std::optional<IndexedFile> file = checkedRow(row, folder_);
    if (!file || (!file->size && !stampFromDisk(*file))) return;
    found(std::move(*file));
  }

  // A file that has to be asked itself: not through a link, which the index does not tell from a file.
  static bool stampFromDisk(IndexedFile& file) {
    struct stat status {};
    if (lstat(file.path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    file.stamp = stampOf(status);
    return true;
  }

  const std::string folder_;  // without a slash at its end
  const SessionBus bus_;
  const Service service_;
  const std::chrono::milliseconds perRow_;
};

// The folder without a slash at its end; absent where the index has not been set to take it in.
Result<std::string> folderToAskFor(const std::string& folder,
                                   const std::optional<std::vector<std::string>>& roots) {
  if (!roots) return Error{"its settings are not there"};
  std::string plain = folder;
  while (plain.ends_with('/')) plain.pop_back();
  if (!fileUri(plain.empty() ? "/" : plain)) return Error{"it has no address"};
  if (!isBelowRoots(plain, *roots)) return Error{"it is not set to take in this folder"};
  return plain;
}

}  // namespace

TrackerIndex::TrackerIndex(std::string busAddress, IndexedRoots roots)
    : TrackerIndex(std::move(busAddress), std::move(roots), Limits()) {}

TrackerIndex::TrackerIndex(std::string busAddress, IndexedRoots roots, Limits limits)
    : busAddress_(std::move(busAddress)), roots_(std::move(roots)), limits_(limits) {}

Result<std::unique_ptr<IndexedFolder>> TrackerIndex::open(const std::string& folder, std::stop_token stop) {
  const auto refusal = [&folder](const std::string& reason) {
    return Error{"The desktop's index does not answer for " + printable(folder) + ": " + printable(reason)};
  };
  if (busAddress_.empty()) return refusal("there is no session bus");
  TimeLimit limit(limits_.perQuestion, std::move(stop));
  Result<SessionBus> bus = SessionBus::connect(busAddress_, limit);
  if (!bus) return refusal(bus.error());
  limit.restart(limits_.perQuestion);
  Result<Service> service = findService(bus.value(), limit);
  if (!service) return refusal(service.error());
  const Result<std::string> plain = folderToAskFor(folder, roots_());
  if (!plain) return refusal(plain.error());
  OwnMainContext context;
  limit.restart(limits_.perQuestion);
  Result<TrackerQueries> queries = TrackerQueries::connect(bus.value(), service.value().name, context, limit);
  if (!queries) return refusal(queries.error());
  const std::string uri = *fileUri(plain.value().empty() ? "/" : plain.value());
  limit.restart(limits_.perQuestion);
  const Result<bool> holds = queries.value().holdsFolder(uri, limit);
  if (!holds) return refusal(holds.error());
  if (!holds.value()) return refusal("it has not come to this folder");
  const Result<Done> settled =
      waitUntilSettled(bus.value(), service.value(), queries.value(), uri, limits_, limit);
  if (!settled) return refusal(settled.error());
  return std::unique_ptr<IndexedFolder>(std::make_unique<TrackedFolder>(
      plain.value(), std::move(bus).value(), std::move(service).value(), limits_.perRow));
}

}  // namespace lumivane
