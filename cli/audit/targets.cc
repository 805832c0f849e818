#include "cli/audit/targets.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <map>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/printer/cups_server.h"
#include "cli/printer/queue_facts.h"
#include "cli/printer/queue_name.h"
#include "cli/snapshot/snapshot_files.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

namespace fs = std::filesystem;

[[nodiscard]] std::string ReasonAgainst(const QueueAttributes& queue) {
  if (queue.is_class) return "it is a class";
  if (IsDriverless(queue)) return "it is driverless";
  return IsRaw(queue) ? "it is a raw queue" : "";
}

[[nodiscard]] Target TargetOf(const QueueAttributes& queue) {
  Target target;
  target.queue = queue.name;
  target.device_uri = WithoutCredentials(queue.device_uri);
  target.not_applicable = ReasonAgainst(queue);
  return target;
}

[[nodiscard]] std::vector<QueueAttributes> QueuesOfRoot(const std::string& root) {
  std::vector<QueueAttributes> queues;
  for (const ServerQueue& queue : ListQueuesOfRoot(root)) {
    QueueAttributes attributes;
    attributes.name = queue.name;
    queues.push_back(attributes);
  }
  return queues;
}

[[nodiscard]] std::vector<QueueAttributes> QueuesOf(AuditScope& scope) {
  const Progress progress("the list of queues");
  if (!scope.location.cups_root.empty()) return QueuesOfRoot(scope.location.cups_root);
  AllQueues all = FetchAllQueues(std::chrono::seconds(scope.location.timeout));
  scope.server = std::move(all.server);
  return std::move(all.queues);
}

[[nodiscard]] Target FindTarget(const std::vector<QueueAttributes>& queues,
                                const std::string& name) {
  const auto hit = std::ranges::find_if(
      queues, [&](const QueueAttributes& queue) { return IsSameQueue(queue.name, name); });
  if (hit != queues.end()) return TargetOf(*hit);
  Target target;
  target.queue = name;
  return target;  // its PPD is not found, which the judgement says
}

[[nodiscard]] bool IsSnapshot(const fs::path& path) {
  std::error_code ignored;
  return IsArchiveName(path.string()) || fs::exists(path / kSnapshotListName, ignored);
}

[[nodiscard]] bool IsHidden(const fs::path& path) {
  return path.filename().string().starts_with('.');
}

// By name.
[[nodiscard]] std::vector<std::string> SnapshotsIn(const std::string& folder) {
  std::error_code error;
  std::vector<std::string> paths;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (IsSnapshot(entry.path()) && !IsHidden(entry.path())) paths.push_back(entry.path().string());
  }
  if (error || paths.empty()) {
    throw Failure(ExitStatus::kSnapshot, {.object = folder,
                                          .cause = error ? error.message() : "has no snapshot",
                                          .hint = "name snapshots, or a folder that has some"});
  }
  std::ranges::sort(paths);
  return paths;
}

[[nodiscard]] Target SavedTarget(const std::string& path) {
  Target target;
  target.snapshot = path;
  target.is_live = false;
  return target;
}

// Empty for what is damaged.
[[nodiscard]] std::string QueueOf(const std::string& snapshot) {
  try {
    return ReadSnapshot(snapshot).queue;
  } catch (const Failure&) {
    return "";
  }
}

[[nodiscard]] std::vector<Target> TargetsOf(const std::vector<std::string>& names,
                                            const std::vector<Target>& saved) {
  std::vector<Target> targets;
  std::vector<std::string> missing = names;
  for (Target target : saved) {
    target.queue = QueueOf(target.snapshot);
    const auto is_its_name = [&](const std::string& name) {
      return IsSameQueue(name, target.queue);
    };
    if (std::ranges::none_of(names, is_its_name)) continue;
    std::erase_if(missing, is_its_name);
    targets.push_back(target);
  }
  if (missing.empty()) return targets;
  throw Failure(ExitStatus::kSnapshot, {.object = "queue \"" + missing.front() + "\"",
                                        .cause = "no snapshot of it can be read",
                                        .hint = "check the name, or the path"});
}

}  // namespace

std::vector<Target> FindLiveTargets(AuditScope& scope, const std::vector<std::string>& names) {
  const std::vector<QueueAttributes> queues = QueuesOf(scope);
  std::vector<Target> targets;
  for (const std::string& name : names) {
    const bool is_new = std::ranges::none_of(
        targets, [&](const Target& target) { return IsSameQueue(target.queue, name); });
    if (is_new) targets.push_back(FindTarget(queues, name));
  }
  if (!names.empty()) return targets;
  for (const QueueAttributes& queue : queues) {
    if (!queue.is_temporary) targets.push_back(TargetOf(queue));
  }
  return targets;
}

std::vector<Target> FindSavedTargets(const std::vector<std::string>& paths,
                                     const std::vector<std::string>& names) {
  std::vector<Target> targets;
  for (const std::string& path : paths) {
    const std::vector<std::string> snapshots =
        IsFolder(path) && !IsSnapshot(path) ? SnapshotsIn(path) : std::vector{path};
    std::ranges::transform(snapshots, std::back_inserter(targets), SavedTarget);
  }
  return names.empty() ? targets : TargetsOf(names, targets);
}

std::vector<Target> PairWithSnapshots(std::vector<Target> live, const std::vector<Target>& saved) {
  std::map<std::string, std::string> paths;
  for (const Target& target : saved) paths[QueueOf(target.snapshot)] = target.snapshot;
  for (Target& target : live) {
    const auto hit = paths.find(target.queue);
    if (hit != paths.end()) {
      target.snapshot = hit->second;
    } else if (target.not_applicable.empty()) {
      target.not_applicable = "it has no snapshot";
    }
  }
  return live;
}

}  // namespace ia::cli
