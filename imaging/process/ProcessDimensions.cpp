#include "imaging/process/ProcessDimensions.h"

#include <algorithm>
#include <utility>

namespace lumivane {
namespace {

// How many paths from the front go into one request.
std::size_t batchOf(std::span<const std::string> paths) {
  std::size_t count = 0;
  std::size_t bytes = 0;
  for (const std::string& path : paths) {
    bytes += path.size();
    if (count > 0 && (count == kMostPathsAtOnce || bytes > kMostPathBytesAtOnce)) break;
    ++count;
  }
  return count;
}

bool canBeAsked(const std::string& path) {
  return !path.empty() && path.size() <= kLongestPath && path.find('\0') == std::string::npos;
}

}  // namespace

std::vector<std::optional<SizePx>> ProcessDimensions::measure(const std::vector<std::string>& paths) {
  Sizes sizes(paths.size());
  std::vector<std::string> asked;
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!canBeAsked(paths[i])) continue;  // the system would not open it
    asked.push_back(paths[i]);
    places.push_back(i);
  }
  for (std::size_t done = 0; done < asked.size();) {
    const auto batch = std::span<const std::string>(asked).subspan(done);
    for (const std::optional<SizePx>& size : measureTogether(batch.first(batchOf(batch))))
      sizes[places[done++]] = size;
  }
  return sizes;
}

ProcessDimensions::Sizes ProcessDimensions::measureTogether(std::span<const std::string> paths) {
  const bool anyDeadly = std::any_of(paths.begin(), paths.end(),
                                     [this](const std::string& path) { return processes_.isDeadly(path); });
  if (!anyDeadly) {
    std::optional<DecoderProcesses::Loan> loan = processes_.take();
    if (!loan) return Sizes(paths.size());
    auto answered = (*loan)->measure({paths.begin(), paths.end()}, processes_.limits().picture);
    if (auto* const answer = std::get_if<MeasureAnswer>(&answered)) return std::move(answer->sizes);
    loan->giveUp(std::get<DecoderTrouble>(answered), {}, "measured pictures");
  }
  return measureEach(paths);
}

// When a batch is too much for a process, each of its files gets another try alone: which one it was, nobody knows.
// Where one after the other takes too long it is the disk, and the rest is not waited for.
ProcessDimensions::Sizes ProcessDimensions::measureEach(std::span<const std::string> paths) {
  constexpr int kMostSlowOnes = 2;
  Sizes sizes;
  int slowOnes = 0;
  for (const std::string& path : paths) {
    if (slowOnes == kMostSlowOnes) break;
    const Answered<std::optional<SizePx>> answered = measureAlone(path);
    const auto* const trouble = std::get_if<DecoderTrouble>(&answered);
    if (trouble == nullptr) {
      sizes.push_back(std::get<std::optional<SizePx>>(answered));
    } else if (*trouble == DecoderTrouble::TooSlow) {
      ++slowOnes;
      sizes.push_back(std::nullopt);
    } else {
      sizes.push_back(kNoPicture);
    }
  }
  sizes.resize(paths.size());
  return sizes;
}

Answered<std::optional<SizePx>> ProcessDimensions::measureAlone(const std::string& path) {
  if (processes_.isDeadly(path)) return std::optional(kNoPicture);
  std::optional<DecoderProcesses::Loan> loan = processes_.take();
  if (!loan) return std::optional<SizePx>();
  auto answered = (*loan)->measure({path}, processes_.limits().picture);
  if (const auto* const answer = std::get_if<MeasureAnswer>(&answered)) return answer->sizes.front();
  const auto trouble = std::get<DecoderTrouble>(answered);
  loan->giveUp(trouble, path, "measured");
  return trouble;
}

}  // namespace lumivane
