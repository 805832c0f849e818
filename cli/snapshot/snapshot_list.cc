#include "cli/snapshot/snapshot_list.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/printer/queue_name.h"
#include "cli/snapshot/checksum.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

// Raised when older tools would misread the snapshot.
constexpr int kSnapshotVersion = 1;

[[noreturn]] void Fail(const std::string& snapshot, const std::string& cause) {
  throw Failure(ExitStatus::kSnapshot, {.object = "snapshot " + snapshot, .cause = cause});
}

[[noreturn]] void FailForList(const std::string& snapshot, const std::string& cause) {
  Fail(snapshot, std::string(kSnapshotListName) + ": " + cause);
}

[[nodiscard]] std::string ListOf(const Snapshot& snapshot) {
  Json files = Json::array();
  for (const auto& [name, contents] : snapshot.files) {
    files.push_back({{"name", name}, {"size", contents.size()}, {"sha256", Sha256(contents)}});
  }
  const Json list = {{"snapshot_version", kSnapshotVersion},
                     {"date", snapshot.date},
                     {"queue", snapshot.queue},
                     {"device_uri", OrNull(snapshot.device_uri)},
                     {"model_code", OrNull(snapshot.model_code)},
                     {"tool_version", snapshot.tool_version},
                     {"library_version", OrNull(snapshot.library_version)},
                     {"redacted", snapshot.is_redacted},
                     {"files", files}};
  return list.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

[[nodiscard]] Json ParseList(const std::string& text, const std::string& snapshot) {
  Json list = Json::parse(text, nullptr, false);
  if (!list.is_object() || !list.value("snapshot_version", Json()).is_number_integer()) {
    FailForList(snapshot, "is no list of a snapshot");
  }
  const auto version = list["snapshot_version"].get<std::int64_t>();
  if (version > kSnapshotVersion) {
    Fail(snapshot, "is of version " + std::to_string(version) +
                       ", made by a newer info-analyze; this one reads versions up to " +
                       std::to_string(kSnapshotVersion));
  }
  if (version < 1) FailForList(snapshot, "is no list of a snapshot");
  return list;
}

[[nodiscard]] std::string TextIn(const Json& object, const char* key, const std::string& snapshot) {
  const Json value = object.is_object() ? object.value(key, Json()) : Json();
  if (!value.is_string()) FailForList(snapshot, "\"" + std::string(key) + "\" is missing");
  return value.get<std::string>();
}

// Snapshots of older versions have fewer texts.
[[nodiscard]] std::string TextOrNothing(const Json& list, const char* key) {
  const Json value = list.value(key, Json());
  return value.is_string() ? value.get<std::string>() : "";
}

[[nodiscard]] std::string QueueIn(const Json& list, const std::string& snapshot) {
  std::string queue = TextIn(list, "queue", snapshot);
  RequireQueueName(queue);
  return queue;
}

[[nodiscard]] std::vector<std::string> NamesOf(const std::string& queue) {
  std::vector<std::string> names = {SnapshotPpdName(queue)};
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    names.push_back(SnapshotDocumentName(Analyze_Provenance_GetDocumentName(i)));
  }
  return names;
}

[[nodiscard]] const std::string& FileIn(const Files& files, const std::string& name,
                                        const std::string& snapshot) {
  const auto file = files.find(name);
  if (file == files.end()) Fail(snapshot, name + ": " + std::strerror(ENOENT));
  return file->second;
}

void CheckEntry(const Json& entry, const Files& files, const std::string& snapshot_name,
                Snapshot& snapshot) {
  const std::string name = TextIn(entry, "name", snapshot_name);
  if (std::ranges::count(NamesOf(snapshot.queue), name) == 0) {
    FailForList(snapshot_name, "names an unexpected file: " + name);
  }
  const std::string& contents = FileIn(files, name, snapshot_name);
  if (Sha256(contents) != TextIn(entry, "sha256", snapshot_name)) {
    Fail(snapshot_name, name + ": is damaged, its checksum is different");
  }
  snapshot.files[name] = contents;
}

void RequireNoMore(const Files& files, const Snapshot& snapshot, const std::string& snapshot_name) {
  for (const auto& [name, contents] : files) {
    if (name == kSnapshotListName || snapshot.files.contains(name)) continue;
    Fail(snapshot_name, name + ": was added after the snapshot was made");
  }
}

}  // namespace

std::string SnapshotPpdName(const std::string& queue) { return "ppd/" + queue + ".ppd"; }

std::string SnapshotDocumentName(const std::string& file_name) {
  return "device-info/" + file_name;
}

std::vector<std::string> ExpectedNames(const std::string& list, const std::string& snapshot_name) {
  return NamesOf(QueueIn(ParseList(list, snapshot_name), snapshot_name));
}

Files FilesOf(const Snapshot& snapshot) {
  Files files = snapshot.files;
  files[kSnapshotListName] = ListOf(snapshot);
  return files;
}

Snapshot CheckedSnapshot(const Files& files, const std::string& snapshot_name) {
  const Json list = ParseList(FileIn(files, kSnapshotListName, snapshot_name), snapshot_name);
  Snapshot snapshot = {.date = TextOrNothing(list, "date"),
                       .queue = QueueIn(list, snapshot_name),
                       .device_uri = TextOrNothing(list, "device_uri"),
                       .model_code = TextOrNothing(list, "model_code"),
                       .tool_version = TextOrNothing(list, "tool_version"),
                       .library_version = TextOrNothing(list, "library_version"),
                       .is_redacted = list.value("redacted", Json()) == true,
                       .files = {}};
  const Json entries = list.value("files", Json());
  if (!entries.is_array()) FailForList(snapshot_name, "\"files\" is missing");
  for (const Json& entry : entries) CheckEntry(entry, files, snapshot_name, snapshot);
  if (!snapshot.files.contains(SnapshotPpdName(snapshot.queue))) Fail(snapshot_name, "has no PPD");
  RequireNoMore(files, snapshot, snapshot_name);
  return snapshot;
}

}  // namespace ia::cli
