#include "engine/LastRunRecord.h"

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

constexpr std::size_t kLargestRecordBytes = 1024 * 1024;
constexpr const char* kImageIndexKey = "ImageIndex";
constexpr const char* kLastScanKey = "LastScan";

// A record of an unusable type reads as if the key were absent.
LastRun lastRunIn(const PropertyListDictionary& record) {
  LastRun run;
  if (const auto found = record.find(kImageIndexKey); found != record.end()) {
    if (const auto* index = found->second.as<std::int64_t>())
      run.imageIndex = static_cast<ImageIndex>(*index);
  }
  if (const auto found = record.find(kLastScanKey); found != record.end()) {
    if (const auto* date = found->second.as<WallTime>()) run.lastScan = *date;
  }
  return run;
}

}  // namespace

std::optional<LastRun> LastRunRecord::loadLastRunInfo(const std::string& path, const LastRun& fresh) {
  lastRunInfoPath_ = path;
  lastRunInfo_.reset();
  log_.information("load last run info from: " + printable(path));
  if (!files_.exists(path)) {
    log_.information("No LastRunInfo yet; initializing.");
    lastRunInfo_.emplace();
    saveLastRunInfo(fresh);
    return lastRunIn(*lastRunInfo_);
  }
  std::string reason;
  if (auto bytes = files_.read(path, kLargestRecordBytes); !bytes) {
    reason = bytes.error();
  } else if (auto list = parsePropertyList(bytes.value()); !list) {
    reason = list.error();
  } else if (const auto* record = list.value().as<PropertyListDictionary>()) {
    lastRunInfo_ = *record;
    return lastRunIn(*record);
  } else {
    reason = "the root is not a dictionary";
  }
  log_.error("Could not read LastRunInfo from " + printable(path) + "!\nerror: " + reason);
  return std::nullopt;
}

void LastRunRecord::saveLastRunInfo(const LastRun& run) {
  if (lastRunInfoPath_.empty() || !lastRunInfo_) {
    log_.error("lastRunInfoPath_ or lastRunInfo_ = nil!");
    return;
  }
  lastRunInfo_->insert_or_assign(kImageIndexKey, PropertyList(static_cast<std::int64_t>(run.imageIndex)));
  if (run.lastScan) {
    lastRunInfo_->insert_or_assign(kLastScanKey, PropertyList(*run.lastScan));
  } else {
    lastRunInfo_->erase(kLastScanKey);
  }
  auto xml = writePropertyListXml(*lastRunInfo_);
  const auto written =
      xml ? files_.writeAtomically(lastRunInfoPath_, xml.value()) : Result<Done>(Error{xml.error()});
  if (!written) {
    log_.error("Couldn't write last run info to file: " + printable(lastRunInfoPath_) +
               "!\nerror: " + written.error());
  }
}

ImageIndex resumePosition(ImageIndex recorded, std::size_t imageCount) {
  const ImageIndex before = recorded - 1;  // wraps around from 0
  return before < imageCount ? before : 0;
}

}  // namespace lumivane
