#include "cli/printer/session.h"

#include <dlfcn.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "cli/printer/queue_ppd.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {

std::string LibraryPath(const std::string& driver_folder) {
  char* path = nullptr;
  if (FolderPathToFullPathOfMqpdUtil(driver_folder.c_str(), &path) != 0) {
    throw Failure(ExitStatus::kCommunicationLibrary,
                  {.object = "communication library",
                   .cause = "the driver folder's path is too long: " + driver_folder});
  }
  return TextPtr(path).get();
}

BidiPtr LoadLibrary(const std::string& driver_folder) {
  const std::string path = LibraryPath(driver_folder);
  const Step step("the communication library " + path);
  std::error_code ignored;
  const auto type = std::filesystem::status(path, ignored).type();
  const bool can_be_loaded = type == std::filesystem::file_type::regular ||
                             type == std::filesystem::file_type::not_found ||
                             type == std::filesystem::file_type::none;
  if (!can_be_loaded) {  // loading a FIFO would wait for its writer
    throw Failure(ExitStatus::kCommunicationLibrary, {.object = "communication library " + path,
                                                      .cause = "not a regular file",
                                                      .hint = "install the driver package again"});
  }
  BidiPtr library(Bidi_Create(driver_folder.c_str()));
  if (library) return library;
  const char* reason = dlerror();
  throw Failure(
      ExitStatus::kCommunicationLibrary,
      {.object = "communication library " + path,
       .cause = reason ? reason : "not all entry points of a communication library are there"});
}

void AddCupsOptions(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("-p,--queue", location.queue, "Name of the CUPS queue")->type_name("NAME");
  AddCupsRootOption(verb, location);
  AddTimeoutOption(verb, location);
  AddConfigOption(verb, location);
}

void AddCupsRootOption(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("--cups-root", location.cups_root,
                  "Read the PPD from DIR/ppd/NAME.ppd instead of asking a CUPS server")
      ->type_name("DIR");
}

void AddTimeoutOption(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("--timeout", location.timeout, "Wait at most this long for a CUPS server")
      ->type_name("SECONDS")
      ->check(CLI::Range(1, kMaxTimeout))
      ->each([&location](const std::string&) { location.has_timeout = true; })
      ->capture_default_str();
}

void AddConfigOption(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("--config", location.config_file,
                  "Read the settings from FILE only, not from the files of the system and the user")
      ->type_name("FILE")
      ->each([](const std::string& file) {
        if (file.empty()) throw CLI::ValidationError("--config", "the name of the file is empty");
      });
}

CLI::Option* AddDocumentsOption(CLI::App& verb, PrinterLocation& location) {
  CLI::Option* const folder =
      verb.add_option("--device-info", location.device_info, "Folder of the nine device documents")
          ->type_name("DIR");
  verb.add_option("--device", location.device,
                  "Read the documents from the device at an ipp:// or ipps:// URI, or from a file "
                  "of its attributes")
      ->type_name("URI")
      ->excludes(folder);
  AddDeviceOptions(verb, location);
  return folder;
}

void AddDeviceOptions(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("--profile", location.profile,
                  "Profile of the device, in place of device-profile.json in the driver folder")
      ->type_name("FILE");
  verb.add_flag("--insecure", location.accepts_any_certificate,
                "Accept any certificate of the device");
}

void AddDriverOption(CLI::App& verb, PrinterLocation& location) {
  verb.add_option("--driver-folder", location.driver_folder,
                  "Folder of the driver; its communication library is Bidi/libmqpd_util.so")
      ->type_name("DIR");
  location.needs_driver = true;
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
  verb.get_option("--device")->excludes("--snapshot");
  location.needs_documents = true;
}

Session OpenSession(const PrinterLocation& location) {
  BidiPtr library = LoadLibrary(location.driver_folder);
  const CopiedPpd ppd(location);
  AnalyzerPtr analyzer = ppd.CreateAnalyzer(library.get(), location.device_info.c_str());
  return {.ppd = ppd.text(), .library = std::move(library), .analyzer = std::move(analyzer)};
}

}  // namespace ia::cli
