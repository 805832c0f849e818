#include "cli/printer/queue_ppd.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ios>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/printer/child_process.h"
#include "cli/printer/cups_server.h"
#include "cli/printer/queue_name.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/shell_quoting.h"
#include "cli/terminal/terminal.h"
#include "info_analyze/option_table.h"

namespace ia::cli {
namespace {

[[noreturn]] void FailForTemporaryFile(const std::string& queue, const std::string& reason) {
  throw Failure(ExitStatus::kQueue,
                {.action = "cannot read",
                 .object = queue.empty() ? "PPDs" : "PPD of queue \"" + queue + "\"",
                 .cause = "no temporary file can be written in " + TemporaryFolderParent() + " (" +
                          reason + ")",
                 .hint = "set TMPDIR to a folder with free space that this user can write to"});
}

[[nodiscard]] std::string FetchPpd(const PrinterLocation& location, const TemporaryFiles&) {
  const Progress progress("the PPD of queue " + location.queue);
  if (location.cups_root.empty()) {
    return FetchPpdFromServer(location.queue, std::chrono::seconds(location.timeout));
  }
  return ReadPpdOfRoot(location.queue, std::filesystem::absolute(location.cups_root).string());
}

// libcups reads both variables once, at its first use, and takes DIR/ppd/QUEUE.ppd without asking a
// server only when the server's name is "localhost".
void UseCupsRoot(const std::string& root) {
  setenv("CUPS_SERVERROOT", root.c_str(), 1);
  setenv("CUPS_SERVER", "localhost", 1);
}

// CUPS itself makes such a PPD for a printer that needs no driver.
[[nodiscard]] bool IsDriverless(std::string_view ppd) {
  return ppd.find("IPP Everywhere") != std::string_view::npos ||
         ppd.find("*PCFileName: \"ippeve.ppd\"") != std::string_view::npos ||
         ppd.find("*PCFileName: \"drvless.ppd\"") != std::string_view::npos;
}

[[noreturn]] void FailForLines(const std::string& queue, std::string_view ppd) {
  std::string cause = "it has no option lines of the driver (\"*QV\")";
  if (IsDriverless(ppd)) cause += ", because CUPS made it for driverless printing";
  throw ForeignPpd(ExitStatus::kQueue,
                   {.object = "PPD of queue \"" + queue + "\"",
                    .cause = cause,
                    .hint = "give the queue the PPD of the driver package: `lpadmin -p " +
                            QuoteForShell(queue) + " -P FILE.ppd`"});
}

void WriteCopy(const std::string& queue, const std::string& ppd, const std::string& root) {
  std::error_code ignored;
  std::filesystem::create_directory(root + "/ppd", ignored);
  std::ofstream file(root + "/ppd/" + queue + ".ppd", std::ios::binary);
  file << ppd << std::flush;
  if (!file) FailForTemporaryFile(queue, std::strerror(errno));
}

// Of the queue whose PPD libcups finds.
[[nodiscard]] std::string FindModelCode(const std::string& queue) {
  struct Releaser {
    void operator()(OptTable* table) const noexcept { info_common_optlist_destroy(table); }
  };
  const std::unique_ptr<OptTable, Releaser> table(info_common_optlist_create(queue.c_str()));
  const char* const code = info_common_optlist_getvalue(table.get(), "QVAnlz_DriverName");
  return code != nullptr ? code : "";
}

}  // namespace

TemporaryFiles::TemporaryFiles(const std::string& queue) {
  if (const char* const variable = std::getenv("TMPDIR")) variable_ = variable;
  try {
    path_ = folder_.emplace().path();
  } catch (const std::system_error& error) {
    FailForTemporaryFile(queue, error.code().message());
  }
  setenv("TMPDIR", path().c_str(), 1);
}

TemporaryFiles::~TemporaryFiles() {
  if (variable_) {
    setenv("TMPDIR", variable_->c_str(), 1);
  } else {
    unsetenv("TMPDIR");
  }
}

std::string FetchPpd(const PrinterLocation& location) {
  RequireQueueName(location.queue);
  return FetchPpd(location, TemporaryFiles(location.queue));
}

std::string ModelCodeIn(const std::string& queue, const std::string& ppd) {
  constexpr std::chrono::seconds kLimit(30);
  RequireQueueName(queue);
  const TemporaryFiles files(queue);
  WriteCopy(queue, ppd, files.path());
  const ChildResult child = RunInChild(kLimit, [&](int descriptor) {
    UseCupsRoot(files.path());
    WriteAll(descriptor, FindModelCode(queue));
  });
  if (!child.has_timed_out && child.signal == 0 && child.status == 0) return child.answer;
  throw Failure(ExitStatus::kQueue, {.action = "cannot read",
                                     .object = "model code in the PPD of queue \"" + queue + "\"",
                                     .cause = "the process that reads it did not succeed",
                                     .hint = "replace the PPD with that of the driver package"});
}

CopiedPpd::CopiedPpd(const PrinterLocation& location)
    : CopiedPpd(location.queue, FetchPpd(location)) {}

CopiedPpd::CopiedPpd(const std::string& queue, std::string text)
    : CopiedPpd(std::make_shared<const TemporaryFiles>(queue), queue, std::move(text)) {}

CopiedPpd::CopiedPpd(std::shared_ptr<const TemporaryFiles> cups_root, const std::string& queue,
                     std::string text)
    : queue_(queue), files_(std::move(cups_root)), text_(std::move(text)) {
  WriteCopy(queue_, text_, files_->path());
  UseCupsRoot(files_->path());
}

CopiedPpd::~CopiedPpd() { unlink(path().c_str()); }

std::string CopiedPpd::path() const { return files_->path() + "/ppd/" + queue_ + ".ppd"; }

void CopiedPpd::RequireDriver() const {
  if (text_.find("*QV") == std::string::npos) FailForLines(queue_, text_);
}

std::string CopiedPpd::ReadModelCode() const { return FindModelCode(queue_); }

AnalyzerPtr CopiedPpd::CreateAnalyzer(BidiContext* library, const char* device_info) const {
  const Progress progress("the options in the PPD of queue " + queue_);
  AnalyzerPtr analyzer(Analyze_Create(library, queue_.c_str(), device_info));
  if (!analyzer) FailForLines(queue_, text_);
  return analyzer;
}

}  // namespace ia::cli
