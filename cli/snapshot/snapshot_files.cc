#include "cli/snapshot/snapshot_files.h"

#include <fcntl.h>
#include <stdio.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ios>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/printer/documents.h"
#include "cli/printer/regular_file.h"
#include "cli/snapshot/archive.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/temporary_folder.h"

namespace ia::cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& snapshot, const std::string& cause) {
  throw Failure(ExitStatus::kSnapshot, {.object = "snapshot " + snapshot, .cause = cause});
}

[[noreturn]] void ThrowErrno() { throw std::system_error(errno, std::generic_category()); }

// Writing ----------------------------------------------------------------------------------------

void WriteFile(const fs::path& path, const std::string& contents) {
  std::ofstream file(path, std::ios::binary);
  file << contents << std::flush;
  if (!file) ThrowErrno();
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
}

void MakeFolder(const fs::path& path) {
  fs::create_directory(path);
  fs::permissions(path, fs::perms::owner_all);
}

// Never replaces what exists. Not every file system can promise that by itself.
void Publish(const fs::path& made, const fs::path& path) {
  if (renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) return;
  if (errno != EINVAL && errno != ENOSYS) ThrowErrno();
  if (fs::exists(fs::symlink_status(path))) {
    throw std::system_error(EEXIST, std::generic_category());
  }
  fs::rename(made, path);
}

// Beside its place first, so that it is complete when it gets there.
void WriteWhole(const Files& files, const fs::path& path) {
  fs::create_directories(path.parent_path());
  const TemporaryFolder folder(path.parent_path().string());
  const fs::path made = fs::path(folder.path()) / "made";
  if (IsArchiveName(path.string())) {
    WriteFile(made, Pack(files));
  } else {
    MakeFolder(made);
    WriteFiles(files, made.string());
  }
  Publish(made, path);
}

// Without the slashes at its end, which name a folder inside the path.
[[nodiscard]] fs::path PlaceOf(const std::string& path) {
  const fs::path place = fs::absolute(path).lexically_normal();
  return place.has_filename() ? place : place.parent_path();
}

// Reading ----------------------------------------------------------------------------------------

[[nodiscard]] std::string ReadFileOf(const std::string& snapshot, const std::string& name) {
  const std::string path = snapshot + "/" + name;
  if (const auto fault = FindFileFault(path)) Fail(snapshot, name + ": " + *fault);
  return ReadRegularFile(path, IA_DOCUMENT_MAX_SIZE);
}

[[nodiscard]] Files ReadFolder(const std::string& folder) {
  Files files;
  files[kSnapshotListName] = ReadFileOf(folder, kSnapshotListName);
  for (const std::string& name : ExpectedNames(files[kSnapshotListName], folder)) {
    std::error_code ignored;
    const auto status = fs::symlink_status(fs::path(folder) / name, ignored);
    if (fs::exists(status)) files[name] = ReadFileOf(folder, name);
  }
  return files;
}

[[nodiscard]] Files ReadArchive(const std::string& path) {
  try {
    if (const auto fault = FindFileFault(path)) Fail(path, *fault);
    return Unpack(ReadRegularFile(path, IA_DOCUMENT_MAX_SIZE));
  } catch (const ArchiveFault& fault) {
    Fail(path, fault.what());
  }
}

}  // namespace

bool IsArchiveName(std::string_view path) {
  return path.ends_with(kArchiveSuffix) || path.ends_with(".tgz");
}

bool IsFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

void WriteFiles(const Files& files, const std::string& folder) {
  for (const auto& [name, contents] : files) {
    const fs::path path = fs::path(folder) / name;
    if (path.parent_path() != folder) MakeFolder(path.parent_path());
    WriteFile(path, contents);
  }
}

void WriteSnapshot(const Snapshot& snapshot, const std::string& path) {
  try {
    const fs::path place = PlaceOf(path);
    if (fs::exists(fs::symlink_status(place))) Fail(path, "exists already");
    WriteWhole(FilesOf(snapshot), place);
  } catch (const ArchiveFault& fault) {
    Fail(path, fault.what());
  } catch (const std::system_error& error) {
    Fail(path, error.code() == std::errc::file_exists ? "exists already" : error.code().message());
  }
}

Snapshot ReadSnapshot(const std::string& path) {
  return CheckedSnapshot(IsFolder(path) ? ReadFolder(path) : ReadArchive(path), path);
}

}  // namespace ia::cli
