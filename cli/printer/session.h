// The first steps of every verb that queries a printer: which one it is, and opening it.
#ifndef INFO_ANALYZE_CLI_PRINTER_SESSION_H_
#define INFO_ANALYZE_CLI_PRINTER_SESSION_H_

#include <memory>
#include <string>

#include "cli/printer/handles.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace ia::cli {

inline constexpr int kDefaultTimeout = 30;  // seconds
inline constexpr int kMaxTimeout = 86'400;  // a day

// Where a printer's driver, PPD and documents are, as given on the command line.
struct PrinterLocation {
  std::string queue;
  std::string driver_folder;
  std::string device_info;  // document directory; empty: no documents are needed
  std::string device;       // in place of document directory: URI, or a file of its attributes
  std::string profile;      // of the device; empty: that of the driver folder, if it has one
  bool accepts_any_certificate = false;  // of the device
  std::string cups_root;                 // empty: the CUPS server of the environment
  std::string snapshot;     // empty: none; else it has the queue, its PPD and the documents
  std::string config_file;  // empty: those of the system and the user
  bool needs_driver = false;
  bool needs_documents = false;
  bool has_timeout = false;                        // the command line has it
  int timeout = kDefaultTimeout;                   // seconds to wait for a CUPS server
  std::shared_ptr<const void> unpacked = nullptr;  // keeps the files of an archived snapshot
};

// Each adds one option of a location.
void AddCupsRootOption(CLI::App& verb, PrinterLocation& location);
void AddTimeoutOption(CLI::App& verb, PrinterLocation& location);
void AddConfigOption(CLI::App& verb, PrinterLocation& location);
void AddDriverOption(CLI::App& verb, PrinterLocation& location);
void AddDeviceOptions(CLI::App& verb, PrinterLocation& location);

// Adds the options for the document directory, or for a device in its place; returns the first.
CLI::Option* AddDocumentsOption(CLI::App& verb, PrinterLocation& location);

// The options for a queue and its PPD; those and its driver; all that a query needs. With the last
// two, a snapshot can replace the queue and the documents.
void AddCupsOptions(CLI::App& verb, PrinterLocation& location);
void AddQueueOptions(CLI::App& verb, PrinterLocation& location);
void AddPrinterOptions(CLI::App& verb, PrinterLocation& location);

// The communication library of a driver folder; throws a Failure when the path is too long.
[[nodiscard]] std::string LibraryPath(const std::string& driver_folder);

// Loads it; throws a Failure that names what is missing.
[[nodiscard]] BidiPtr LoadLibrary(const std::string& driver_folder);

// Members are released from the last to the first: the analyser needs the communication library.
struct Session {
  std::string ppd;  // text of the queue's PPD
  BidiPtr library;
  AnalyzerPtr analyzer;
};

// Loads the communication library and creates the analyser; throws a Failure that names what is
// missing. The location must outlive the session.
[[nodiscard]] Session OpenSession(const PrinterLocation& location);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_SESSION_H_
