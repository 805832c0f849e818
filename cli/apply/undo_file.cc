#include "cli/apply/undo_file.h"

#include <fcntl.h>
#include <iconv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/apply/ppd_defaults.h"
#include "cli/printer/child_process.h"
#include "cli/printer/ppd.h"
#include "cli/printer/regular_file.h"
#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kUndoVersion = 1;
constexpr std::size_t kMaxSize = std::size_t{256} << 20;
constexpr const char* kNameOfApply = "name the file that apply has printed";

[[noreturn]] void Fail(const std::string& path, const std::string& why, const std::string& fix) {
  throw Failure(ExitStatus::kOther, {.object = "undo file " + path, .cause = why, .hint = fix});
}

// Throws a std::system_error for a character that the encoding does not have.
[[nodiscard]] std::string Recode(std::string text, const char* from, const char* to) {
  std::string recoded(2 * text.size(), '\0');
  char* in = text.data();
  char* out = recoded.data();
  std::size_t in_left = text.size();
  std::size_t out_left = recoded.size();
  iconv_t converter = iconv_open(to, from);
  if (converter == reinterpret_cast<iconv_t>(-1)) ThrowErrno();
  const std::size_t result = iconv(converter, &in, &in_left, &out, &out_left);
  const int error = errno;
  iconv_close(converter);
  if (result == static_cast<std::size_t>(-1)) {
    throw std::system_error(error, std::generic_category());
  }
  recoded.resize(recoded.size() - out_left);
  return recoded;
}

// Texts of PPDs may be in any encoding, so their bytes are written as characters of Latin-1.
[[nodiscard]] std::string ToUtf8(const std::string& bytes) {
  return Recode(bytes, "ISO-8859-1", "UTF-8");
}

[[nodiscard]] std::string Write(const UndoRecord& record) {
  Json defaults = Json::array();
  for (const ChangedDefault& changed : record.defaults) {
    Json before = Json::array();
    for (const std::string& text : changed.before) before.push_back(ToUtf8(text));
    defaults.push_back({{"keyword", ToUtf8(changed.keyword)},
                        {"before", before},
                        {"after", ToUtf8(changed.after)}});
  }
  const Json json = {{"undo_version", kUndoVersion},
                     {"server", ToUtf8(record.server)},
                     {"queue", ToUtf8(record.queue)},
                     {"defaults", defaults}};
  return json.dump(-1, ' ', true) + "\n";
}

// A line of its own in a PPD could name a filter, which CUPS would run.
[[nodiscard]] std::string TakeText(const Json& json) {
  std::string text = Recode(json.get<std::string>(), "UTF-8", "ISO-8859-1");
  if (!IsOneLine(text)) throw std::invalid_argument("a control character");
  return text;
}

// What others can write is not written into PPDs.
void RequireTrust(const std::string& path, const struct stat& status) {
  if (status.st_uid != geteuid() && status.st_uid != 0) {
    Fail(path, "belongs to a different user", "name the file that your apply has printed");
  }
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    Fail(path, "other users can write to it", "check it, and use chmod 600");
  }
}

[[nodiscard]] std::string ReadTrusted(const std::string& path) {
  try {
    return ReadRegularFile(path, kMaxSize,
                           [&](const struct stat& status) { RequireTrust(path, status); });
  } catch (const FileFault& fault) {
    Fail(path, fault.what(), kNameOfApply);
  }
}

[[nodiscard]] UndoRecord Read(const Json& json) {
  UndoRecord record;
  if (json.at("undo_version") != kUndoVersion) throw std::invalid_argument("a different version");
  record.server = TakeText(json.at("server"));
  record.queue = TakeText(json.at("queue"));
  for (const Json& changed : json.at("defaults")) {
    ChangedDefault& of_record = record.defaults.emplace_back();
    of_record.keyword = TakeText(changed.at("keyword"));
    of_record.after = TakeText(changed.at("after"));
    for (const Json& text : changed.at("before")) {
      of_record.before.push_back(TakeText(text));
    }
  }
  return record;
}

[[nodiscard]] std::string FolderOfUser() {
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::string(state) + "/info-analyze";
  const char* const home = std::getenv("HOME");
  return std::string(home != nullptr ? home : "") + "/.local/state/info-analyze";
}

}  // namespace

std::string StateFolder() {
  const char* const of_service = std::getenv("STATE_DIRECTORY");  // set by systemd
  std::string folder = geteuid() == 0 ? "/var/lib/info-analyze" : FolderOfUser();
  if (of_service != nullptr && *of_service != '\0') {
    folder = std::string(of_service).substr(0, std::string_view(of_service).find(':'));
  }
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error) return folder;
  throw Failure(ExitStatus::kOther, {.object = "folder " + folder,
                                     .cause = "cannot be made: " + error.message(),
                                     .hint = "run as a user who may make it"});
}

UndoFile::UndoFile(std::string path) : path_(std::move(path)) {
  if (std::filesystem::exists(std::filesystem::symlink_status(path_))) {
    Fail(path_, "exists already", "name a new file");
  }
  const std::string folder = std::filesystem::absolute(path_).parent_path().string();
  if (access(folder.c_str(), W_OK | X_OK) != 0) {
    Fail(path_, std::strerror(errno), "check its folder");
  }
}

UndoFile::~UndoFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

void UndoFile::Make() {
  descriptor_ = open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (descriptor_ < 0) Fail(path_, std::strerror(errno), "check its folder");
  const std::string folder = std::filesystem::absolute(path_).parent_path().string();
  const int of_folder = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const bool is_on_disk = of_folder >= 0 && fsync(of_folder) == 0;
  if (of_folder >= 0) close(of_folder);
  if (!is_on_disk) Fail(path_, std::strerror(errno), "check its folder");
}

void UndoFile::Add(const UndoRecord& record) {
  if (descriptor_ < 0) Make();
  size_before_last_ = lseek(descriptor_, 0, SEEK_END);
  try {
    WriteAll(descriptor_, Write(record));
  } catch (const std::system_error& error) {
    Fail(path_, error.code().message(), "free space, and run it again");
  }
  if (fsync(descriptor_) != 0) Fail(path_, std::strerror(errno), "check its disk");
}

void UndoFile::RemoveLast() {
  if (size_before_last_ > 0) {
    if (ftruncate(descriptor_, size_before_last_) == 0) return;
    Fail(path_, std::strerror(errno), "check its disk");
  }
  close(descriptor_);
  descriptor_ = -1;
  if (unlink(path_.c_str()) != 0) Fail(path_, std::strerror(errno), "remove it");
}

std::string NewUndoPath(const std::string& folder) {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H%M%SZ", gmtime_r(&now, &utc));
  return folder + "/" + text.data() + "-" + std::to_string(getpid()) + ".json";
}

std::vector<UndoRecord> ReadUndoFile(const std::string& path) {
  const std::string text = ReadTrusted(path);
  const std::size_t complete = text.rfind('\n') + 1;
  if (complete == 0) {
    Fail(path, "it has no complete record", "apply writes one before its first change");
  }
  if (complete != text.size()) {
    ReportWarning("undo file " + path + ": its end is missing; what it has is restored");
  }
  std::vector<UndoRecord> records;
  try {
    ForEachLine(std::string_view(text).substr(0, complete),
                [&](std::string_view line) { records.push_back(Read(Json::parse(line))); });
  } catch (const std::exception&) {
    Fail(path, "line " + std::to_string(records.size() + 1) + " has a different format",
         kNameOfApply);
  }
  return records;
}

}  // namespace ia::cli
