#include "cli/commlib/skeleton.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <ios>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& folder, const std::string& cause,
                       const std::string& hint = "") {
  throw Failure(ExitStatus::kOther,
                {.action = "cannot write", .object = folder, .cause = cause, .hint = hint});
}

void WriteText(const fs::path& path, std::string_view text) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  if (!file) throw std::system_error(errno, std::generic_category());
}

void WriteFiles(const std::string& language, const fs::path& folder) {
  for (const SkeletonFile& file : SkeletonFiles()) {
    const std::string_view path = file.path;
    if (path.starts_with(language + "/")) {
      WriteText(folder / path.substr(language.size() + 1), file.text);
    }
  }
}

}  // namespace

std::vector<std::string> SkeletonLanguages() {
  std::vector<std::string> languages;
  for (const SkeletonFile& file : SkeletonFiles()) {
    const std::string_view path = file.path;
    const std::string_view language = path.substr(0, path.find('/'));
    if (languages.empty() || languages.back() != language) languages.emplace_back(language);
  }
  return languages;
}

void WriteSkeleton(const std::string& language, const std::string& folder) {
  try {
    const fs::path place = fs::absolute(folder);
    fs::create_directories(place.parent_path());
    if (!fs::create_directory(place)) Fail(folder, "it exists already", "pass a new name");
    try {
      WriteFiles(language, place);
    } catch (const std::system_error&) {
      std::error_code ignored;
      fs::remove_all(place, ignored);
      throw;
    }
  } catch (const std::system_error& error) {
    Fail(folder, error.code().message());
  }
}

}  // namespace ia::cli
