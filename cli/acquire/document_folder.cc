#include "cli/acquire/document_folder.h"

#include <fcntl.h>
#include <stdio.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <map>
#include <ostream>
#include <string>
#include <system_error>

#include "cli/terminal/failure.h"
#include "cli/terminal/temporary_folder.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& folder, const std::string& cause,
                       const std::string& hint = "") {
  throw Failure(ExitStatus::kOther, {.action = "cannot write",
                                     .object = "document directory " + folder,
                                     .cause = cause,
                                     .hint = hint});
}

[[nodiscard]] bool IsDocumentName(const std::string& name) {
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    if (name == Analyze_Provenance_GetDocumentName(i)) return true;
  }
  return false;
}

// A folder by mistake, such as a home, must not be replaced.
void RequireDocumentsOnly(const fs::path& place, const std::string& folder) {
  if (!fs::is_directory(fs::symlink_status(place))) Fail(folder, "it is not a folder");
  for (const auto& entry : fs::directory_iterator(place)) {
    const std::string name = entry.path().filename().string();
    if (!IsDocumentName(name)) {
      Fail(folder, "it has other files, such as " + name, "pass a new name");
    }
  }
}

// Without the slashes at its end, which name a folder inside the path.
[[nodiscard]] fs::path PlaceOf(const std::string& folder) {
  const fs::path place = fs::absolute(folder).lexically_normal();
  return place.has_filename() ? place : place.parent_path();
}

void Rename(const fs::path& from, const fs::path& to, unsigned flags) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0) return;
  throw std::system_error(errno, std::generic_category());
}

}  // namespace

void WriteDocumentFiles(const std::map<std::string, std::string>& files,
                        const std::string& folder) {
  for (const auto& [name, contents] : files) {
    std::ofstream file(fs::path(folder) / name, std::ios::binary);
    file << contents << std::flush;
    if (!file) throw std::system_error(errno, std::generic_category());
  }
}

void PublishDocuments(const std::map<std::string, std::string>& files, const std::string& folder) {
  try {
    const fs::path place = PlaceOf(folder);
    const bool exists = fs::exists(fs::symlink_status(place));
    if (exists) RequireDocumentsOnly(place, folder);
    fs::create_directories(place.parent_path());
    const TemporaryFolder beside(place.parent_path().string());
    const fs::path made = fs::path(beside.path()) / "made";
    fs::create_directory(made);
    WriteDocumentFiles(files, made.string());
    Rename(made, place, exists ? RENAME_EXCHANGE : RENAME_NOREPLACE);
  } catch (const std::system_error& error) {
    Fail(folder, error.code().message());
  }
}

}  // namespace ia::cli
