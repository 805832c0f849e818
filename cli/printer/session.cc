#include "cli/printer/session.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>

#include "cli/terminal/failure.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

[[nodiscard]] BidiPtr LoadLibrary(const std::string& driver_folder) {
  const std::string path = LibraryPath(driver_folder);
  BidiPtr library(Bidi_Create(driver_folder.c_str()));
  if (library) return library;
  const char* reason = dlerror();
  throw Failure(
      ExitStatus::kCommunicationLibrary,
      {.object = "communication library " + path,
       .cause = reason ? reason : "not all entry points of a communication library are there"});
}

// libcups reads both variables once, at its first use, and takes DIR/ppd/QUEUE.ppd without asking a
// server only when the server's name is "localhost".
void UseCupsRoot(const std::string& root) {
  setenv("CUPS_SERVERROOT", root.c_str(), 1);
  setenv("CUPS_SERVER", "localhost", 1);
}

// Without this file libcups would turn to whatever CUPS server runs on this machine.
void RequirePpdFile(const std::string& queue, const std::string& root) {
  const std::string ppd = root + "/ppd/" + queue + ".ppd";
  if (access(ppd.c_str(), R_OK) == 0) return;
  const char* reason = std::strerror(errno);
  throw Failure(ExitStatus::kQueue,
                {.object = "queue " + queue,
                 .cause = "no PPD in the CUPS root " + root + ": " + ppd + ": " + reason});
}

[[nodiscard]] bool HasReadablePpd(const std::string& queue) {
  char* path = nullptr;
  _cups_file_s* file = wrapCupsFileOpen2(queue.c_str(), "r", &path);
  const TextPtr owned_path(path);
  if (file == nullptr) return false;
  wrapCupsFileClose2(file, path);
  return true;
}

[[noreturn]] void FailForQueue(const std::string& queue) {
  throw Failure(
      ExitStatus::kQueue,
      {.object = "queue " + queue,
       .cause = HasReadablePpd(queue) ? "its PPD has no option lines of the driver (\"*QV\")"
                                      : "CUPS has no PPD for it that can be read"});
}

[[nodiscard]] AnalyzerPtr CreateAnalyzer(BidiContext* library, const PrinterLocation& location) {
  UseQueue(location);
  const Progress progress("the PPD of queue " + location.queue);
  AnalyzerPtr analyzer(
      Analyze_Create(library, location.queue.c_str(), location.device_info.c_str()));
  if (!analyzer) FailForQueue(location.queue);
  return analyzer;
}

}  // namespace

std::string LibraryPath(const std::string& driver_folder) {
  char* path = nullptr;
  if (FolderPathToFullPathOfMqpdUtil(driver_folder.c_str(), &path) != 0) {
    throw Failure(ExitStatus::kCommunicationLibrary,
                  {.object = "communication library",
                   .cause = "the driver folder's path is too long: " + driver_folder});
  }
  return TextPtr(path).get();
}

void AddCupsOptions(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("-p,--queue", location.queue, "Name of the CUPS queue")->type_name("NAME");
  AddCupsRootOption(verb, location);
}

void AddCupsRootOption(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("--cups-root", location.cups_root,
                  "Read the PPD from DIR/ppd/NAME.ppd instead of asking a CUPS server")
      ->type_name("DIR");
}

CLI::Option* AddDocumentsOption(CLI::App& verb, PrinterLocation& location) {
  return verb
      .add_option("--device-info", location.device_info, "Folder of the nine device documents")
      ->type_name("DIR");
}

void AddDriverOption(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("--driver-folder", location.driver_folder,
                  "Folder of the driver; its communication library is Bidi/libmqpd_util.so")
      ->type_name("DIR")
      ->required();
}

void AddQueueOptions(CLI::App& verb, PrinterLocation& location) {
  AddCupsOptions(verb, location);
  AddDriverOption(verb, location);
  verb.add_option("--snapshot", location.snapshot, "Query the printer saved in PATH by `snapshot`")
      ->type_name("PATH")
      ->excludes("--queue")
      ->excludes("--cups-root");
}

void AddPrinterOptions(CLI::App& verb, PrinterLocation& location) {
  AddQueueOptions(verb, location);
  AddDocumentsOption(verb, location)->excludes("--snapshot");
  location.needs_documents = true;
}

void UseQueue(const PrinterLocation& location) {
  if (location.cups_root.empty()) return;
  const std::string root = std::filesystem::absolute(location.cups_root).string();
  UseCupsRoot(root);
  RequirePpdFile(location.queue, root);
}

Session OpenSession(const PrinterLocation& location) {
  BidiPtr library = LoadLibrary(location.driver_folder);
  AnalyzerPtr analyzer = CreateAnalyzer(library.get(), location);
  return {std::move(library), std::move(analyzer)};
}

}  // namespace ia::cli
