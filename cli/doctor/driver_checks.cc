// The doctor's checks of the driver folder and of the communication library in it.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cli/doctor/checkup.h"
#include "cli/printer/child_process.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

struct LibraryCloser {
  void operator()(void* library) const noexcept { dlclose(library); }
};
using LibraryPtr = std::unique_ptr<void, LibraryCloser>;

[[nodiscard]] std::string JoinAll(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + text;
  return list;
}

constexpr const char* kFixDriver = "install the driver package, or correct --driver-folder";

[[nodiscard]] bool CheckFolder(const std::string& folder, Checkup& checkup) {
  struct stat status = {};
  if (stat(folder.c_str(), &status) != 0) {
    checkup.Fail("driver", "driver folder " + folder + ": " + std::strerror(errno), kFixDriver);
    return false;
  }
  if (!S_ISDIR(status.st_mode)) {
    checkup.Fail("driver", "driver folder " + folder + ": is no folder", kFixDriver);
    return false;
  }
  checkup.Ok("driver", "driver folder " + folder + " exists");
  return true;
}

[[nodiscard]] bool CheckFile(const std::string& path, Checkup& checkup) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) {
    checkup.Fail(
        "driver", "communication library " + path + ": " + std::strerror(errno),
        FixOf(path, "install the driver package again: its communication library is missing"));
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    checkup.Fail("driver", "communication library " + path + ": not a regular file",
                 "install the driver package again");
    return false;
  }
  if (access(path.c_str(), R_OK) != 0) {
    checkup.Fail("driver", "communication library " + path + ": " + std::strerror(errno),
                 FixOf(path, "install the driver package again"));
    return false;
  }
  return true;
}

[[nodiscard]] LibraryPtr Load(const std::string& path, Checkup& checkup) {
  LibraryPtr library(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (library) return library;
  const char* const reason = dlerror();
  checkup.Fail("driver",
               "communication library " + path +
                   " cannot be loaded: " + (reason != nullptr ? reason : "no reason is given"),
               "install the driver package for this machine's architecture, and what it needs");
  return nullptr;
}

[[nodiscard]] bool CheckSymbols(const std::string& path, void* library, Checkup& checkup) {
  std::size_t count = 0;
  std::vector<std::string> missing;
  for (std::int32_t i = 0; const char* const name = Bidi_GetEntryPointName(i); ++i, ++count) {
    if (dlsym(library, name) == nullptr) missing.emplace_back(name);
  }
  if (missing.empty()) {
    checkup.Ok("driver", "communication library " + path + " has all " + std::to_string(count) +
                             " entry points");
    return true;
  }
  std::string sentence = "communication library " + path + " lacks ";
  if (missing.size() == count) {
    sentence += "all " + std::to_string(count) + " entry points: it is a different library";
  } else if (missing.size() == 1) {
    sentence += "the entry point " + missing.front();
  } else {
    sentence += std::to_string(missing.size()) + " of " + std::to_string(count) +
                " entry points: " + JoinAll(missing);
  }
  checkup.Fail("driver", sentence,
               "install the driver package again: its communication library is incompatible");
  return false;
}

// The trial --------------------------------------------------------------------------------------

constexpr std::string_view kTrialEnd = "the end of the trial";

// What a library prints is no finding, and JSON must stay the only output.
void DiscardOutput() {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
}

// Uses the library as the checks do. Writes each use before it is made, so that the last one is
// known when the process ends in it.
void TryLibrary(Patient& patient, const std::string& path, int descriptor) {
  DiscardOutput();
  Checkup ignored;
  patient.announce = [&](const std::string& use) { WriteAll(descriptor, use + '\0'); };
  patient.announce("it is loaded");
  LibraryPtr library = Load(path, ignored);
  if (library && CheckSymbols(path, library.get(), ignored)) {
    patient.announce("its entry points are bound");
    patient.library.reset(Bidi_Create(patient.location.driver_folder.c_str()));
    CheckDocuments(patient, ignored);
    CheckKeys(patient, ignored);
    CheckValues(patient, ignored);
  }
  patient.announce("it is unloaded");
  patient.analyzer.reset();
  patient.library.reset();
  library.reset();
  patient.announce(std::string(kTrialEnd));
}

[[nodiscard]] std::string LastUse(std::string_view uses) {
  if (uses.empty()) return "it is loaded";
  uses.remove_suffix(1);
  const std::size_t start = uses.rfind('\0');
  return std::string(start == std::string_view::npos ? uses : uses.substr(start + 1));
}

[[nodiscard]] std::string Describe(const ChildResult& trial, int timeout) {
  if (trial.has_timed_out) {
    return "does not return within " + std::to_string(timeout) + " s while ";
  }
  if (trial.signal != 0) return "ends the process with " + NameOfSignal(trial.signal) + " while ";
  return "ends the process with status " + std::to_string(trial.status) + " while ";
}

// False when the library must not be used in this process.
[[nodiscard]] bool SurvivesTrial(Patient& patient, const std::string& path, Checkup& checkup) {
  const Progress progress("the trial of communication library " + path);
  const int timeout = patient.location.timeout;
  const ChildResult trial = RunInChild(std::chrono::seconds(timeout), [&](int descriptor) {
    TryLibrary(patient, path, descriptor);
  });
  const std::string use = LastUse(trial.answer);
  if (use == kTrialEnd && trial.signal == 0) return true;
  checkup.Fail("driver", "communication library " + path + " " + Describe(trial, timeout) + use,
               "install the driver package again, and report the fault to its maker");
  return false;
}

}  // namespace

void CheckDriver(Patient& patient, Checkup& checkup) {
  const std::string& folder = patient.location.driver_folder;
  if (!CheckFolder(folder, checkup)) return;
  std::string path;
  try {
    path = LibraryPath(folder);
  } catch (const Failure& failure) {
    return checkup.Fail("driver", failure.what(), "use a shorter path to the driver folder");
  }
  if (!CheckFile(path, checkup) || !SurvivesTrial(patient, path, checkup)) return;
  const LibraryPtr library = Load(path, checkup);
  if (!library || !CheckSymbols(path, library.get(), checkup)) return;
  patient.library.reset(Bidi_Create(folder.c_str()));
}

}  // namespace ia::cli
