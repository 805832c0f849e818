// The PPD of a printer's queue, and the copy of it that the library reads.
#ifndef INFO_ANALYZE_CLI_PRINTER_QUEUE_PPD_H_
#define INFO_ANALYZE_CLI_PRINTER_QUEUE_PPD_H_

#include <memory>
#include <optional>
#include <string>

#include "cli/printer/handles.h"
#include "cli/printer/session.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/temporary_folder.h"

namespace ia::cli {

// A folder of temporary files, where libcups makes its own while it lives.
class TemporaryFiles {
 public:
  // Throws a Failure that names the queue; empty: many of them.
  explicit TemporaryFiles(const std::string& queue);
  TemporaryFiles(const TemporaryFiles&) = delete;
  TemporaryFiles& operator=(const TemporaryFiles&) = delete;
  ~TemporaryFiles();

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::optional<std::string> variable_;  // the former TMPDIR
  std::optional<TemporaryFolder> folder_;
  std::string path_;
};

// The text of the PPD; throws a Failure that names the cause.
[[nodiscard]] std::string FetchPpd(const PrinterLocation& location);

// Thrown for a PPD that no driver of the library made.
class ForeignPpd : public Failure {
 public:
  using Failure::Failure;
};

// The model code (QVAnlz_DriverName) in the text of a queue's PPD, as the library reads it; empty:
// none. A child process reads it, so libcups can still use any CUPS root in this one. Throws a
// Failure.
[[nodiscard]] std::string ModelCodeIn(const std::string& queue, const std::string& ppd);

// A copy of the PPD in a CUPS root of this process. While it lives, libcups reads it without
// waiting for a server, or for a file that is not a regular one.
class CopiedPpd {
 public:
  // Each throws a Failure.
  explicit CopiedPpd(const PrinterLocation& location);
  CopiedPpd(const std::string& queue, std::string text);

  // For several in one process: libcups keeps the first CUPS root that it is given.
  CopiedPpd(std::shared_ptr<const TemporaryFiles> cups_root, const std::string& queue,
            std::string text);
  CopiedPpd(const CopiedPpd&) = delete;
  CopiedPpd& operator=(const CopiedPpd&) = delete;
  ~CopiedPpd();

  [[nodiscard]] const std::string& text() const { return text_; }

  // Throws a ForeignPpd when the PPD certainly has no option lines of a driver.
  void RequireDriver() const;

  // QVAnlz_DriverName as the library reads it; empty: none.
  [[nodiscard]] std::string ReadModelCode() const;

  // Throws a ForeignPpd when the PPD has no option lines of the driver. The library and the text of
  // the document directory must outlive the analyser; no directory: no documents.
  [[nodiscard]] AnalyzerPtr CreateAnalyzer(BidiContext* library, const char* device_info) const;

 private:
  [[nodiscard]] std::string path() const;

  std::string queue_;
  std::shared_ptr<const TemporaryFiles> files_;
  std::string text_;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_QUEUE_PPD_H_
