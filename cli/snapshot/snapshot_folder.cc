#include "cli/snapshot/snapshot_folder.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>
#include <string>
#include <system_error>

#include "cli/printer/documents.h"
#include "cli/printer/queue_name.h"
#include "cli/snapshot/checksum.h"
#include "cli/terminal/failure.h"
#include "info_analyze/device_documents.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kListName = "snapshot.json";

// Raised when older tools would misread the folder.
constexpr int kSnapshotVersion = 1;

[[noreturn]] void Fail(const std::string& folder, const std::string& what) {
  throw Failure(ExitStatus::kSnapshot, "snapshot " + folder + ": " + what);
}

// Writing ----------------------------------------------------------------------------------------

void WriteFile(const std::filesystem::path& path, const std::string& contents) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << contents << std::flush;
  if (!file) {
    throw Failure(ExitStatus::kSnapshot, path.string() + ": " + std::strerror(errno));
  }
}

[[nodiscard]] std::string ListOf(const Snapshot& snapshot) {
  Json files = Json::array();
  for (const auto& [name, contents] : snapshot.files) {
    files.push_back({{"name", name}, {"size", contents.size()}, {"sha256", Sha256(contents)}});
  }
  const Json list = {{"snapshot_version", kSnapshotVersion},
                     {"tool_version", IA_TOOL_VERSION},
                     {"queue", snapshot.queue},
                     {"redacted", snapshot.is_redacted},
                     {"files", files}};
  return list.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

// The folder must be new: files that exist already would be taken for the printer's.
void MakeFolder(const std::string& folder) {
  std::error_code error;
  if (std::filesystem::exists(folder, error)) Fail(folder, "exists already");
  std::filesystem::create_directories(folder, error);
  if (error) Fail(folder, error.message());
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
}

// Reading ----------------------------------------------------------------------------------------

[[nodiscard]] std::string ReadContents(const std::string& folder, const std::string& name) {
  const std::string path = folder + "/" + name;
  if (const auto fault = FindFileFault(path)) Fail(folder, name + ": " + *fault);
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

[[nodiscard]] Json ReadList(const std::string& folder) {
  Json list = Json::parse(ReadContents(folder, kListName), nullptr, false);
  if (!list.is_object() || !list.value("snapshot_version", Json()).is_number_integer()) {
    Fail(folder, std::string(kListName) + ": is no list of a snapshot");
  }
  const auto version = list["snapshot_version"].get<std::int64_t>();
  if (version > kSnapshotVersion) {
    Fail(folder, "is of version " + std::to_string(version) +
                     ", made by a newer info-analyze; this one reads versions up to " +
                     std::to_string(kSnapshotVersion));
  }
  if (version < 1) Fail(folder, std::string(kListName) + ": is no list of a snapshot");
  return list;
}

[[nodiscard]] std::string TextIn(const std::string& folder, const Json& object, const char* key) {
  const Json value = object.is_object() ? object.value(key, Json()) : Json();
  if (!value.is_string()) Fail(folder, std::string(kListName) + ": \"" + key + "\" is missing");
  return value.get<std::string>();
}

[[nodiscard]] std::set<std::string> FittingNames(const std::string& queue) {
  std::set<std::string> names = {SnapshotPpdName(queue)};
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    names.insert(SnapshotDocumentName(Analyze_Provenance_GetDocumentName(i)));
  }
  return names;
}

void ReadListed(const std::string& folder, const Json& entry, Snapshot& snapshot) {
  const std::string name = TextIn(folder, entry, "name");
  if (!FittingNames(snapshot.queue).contains(name)) {
    Fail(folder, std::string(kListName) + ": names an unexpected file: " + name);
  }
  const std::string contents = ReadContents(folder, name);
  if (Sha256(contents) != TextIn(folder, entry, "sha256")) {
    Fail(folder, name + ": is damaged, its checksum is another");
  }
  snapshot.files[name] = contents;
}

void RequireNoMore(const std::string& folder, const Snapshot& snapshot) {
  for (const std::string& name : FittingNames(snapshot.queue)) {
    if (snapshot.files.contains(name)) continue;
    std::error_code error;
    const auto status =
        std::filesystem::symlink_status(std::filesystem::path(folder) / name, error);
    if (!std::filesystem::exists(status)) continue;
    Fail(folder, name + ": was not there when the snapshot was made");
  }
}

}  // namespace

std::string SnapshotPpdName(const std::string& queue) { return "ppd/" + queue + ".ppd"; }

std::string SnapshotDocumentName(const std::string& file_name) {
  return "device-info/" + file_name;
}

void WriteSnapshot(const Snapshot& snapshot, const std::string& folder) {
  MakeFolder(folder);
  try {
    for (const auto& [name, contents] : snapshot.files) {
      WriteFile(std::filesystem::path(folder) / name, contents);
    }
    WriteFile(std::filesystem::path(folder) / kListName, ListOf(snapshot));
  } catch (const std::exception&) {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    throw;
  }
}

Snapshot ReadSnapshot(const std::string& folder) {
  const Json list = ReadList(folder);
  Snapshot snapshot;
  snapshot.queue = TextIn(folder, list, "queue");
  RequireQueueName(snapshot.queue);
  snapshot.is_redacted = list.value("redacted", Json()) == true;
  const Json files = list.value("files", Json());
  if (!files.is_array()) Fail(folder, std::string(kListName) + ": \"files\" is missing");
  for (const Json& entry : files) ReadListed(folder, entry, snapshot);
  if (!snapshot.files.contains(SnapshotPpdName(snapshot.queue))) Fail(folder, "has no PPD");
  RequireNoMore(folder, snapshot);
  return snapshot;
}

}  // namespace ia::cli
