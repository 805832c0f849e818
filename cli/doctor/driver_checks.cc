// The doctor's checks of the driver folder and of the communication library in it.
#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "cli/doctor/checkup.h"
#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

struct LibraryCloser {
  void operator()(void* library) const noexcept { dlclose(library); }
};
using LibraryPtr = std::unique_ptr<void, LibraryCloser>;

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
    checkup.Fail("driver", "communication library " + path + ": " + std::strerror(errno),
                 "install the driver package again: its communication library is missing");
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    checkup.Fail("driver", "communication library " + path + ": not a regular file",
                 "install the driver package again");
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
  std::int32_t count = 0;
  bool is_complete = true;
  while (const char* const name = Bidi_GetEntryPointName(count)) {
    ++count;
    if (dlsym(library, name) != nullptr) continue;
    is_complete = false;
    checkup.Fail("driver", "communication library " + path + " lacks the entry point " + name,
                 "install the driver package again: its communication library is incompatible");
  }
  if (is_complete) {
    checkup.Ok("driver", "communication library " + path + " has all " + std::to_string(count) +
                             " entry points");
  }
  return is_complete;
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
  if (!CheckFile(path, checkup)) return;
  const LibraryPtr library = Load(path, checkup);
  if (!library || !CheckSymbols(path, library.get(), checkup)) return;
  patient.library.reset(Bidi_Create(folder.c_str()));
}

}  // namespace ia::cli
