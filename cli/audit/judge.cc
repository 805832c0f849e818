#include "cli/audit/judge.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/acquire/acquire.h"
#include "cli/config/patterns.h"
#include "cli/config/settings.h"
#include "cli/explain/printer_options.h"
#include "cli/printer/documents.h"
#include "cli/printer/ppd.h"
#include "cli/printer/queue_name.h"
#include "cli/snapshot/locate.h"
#include "cli/snapshot/snapshot_files.h"
#include "cli/snapshot/take.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/shell_quoting.h"

namespace ia::cli {
namespace {

namespace fs = std::filesystem;

// All handlers run, also where a document is missing: what then lacks data says so itself.
[[nodiscard]] OptionListPtr RunAllUpdates(AnalyzeContext& analyzer) {
  OptionListPtr options = StartOptionList();
  if (Analyze_Info_FromPrinter(&analyzer, options.get(), 0) == 0) return options;
  options = StartOptionList();
  std::int32_t update = 0;
  UpdateSource source = {};
  while (Analyze_Provenance_GetUpdate(update, &source, sizeof source) != 0) {
    Analyze_Provenance_RunUpdate(&analyzer, update, 1, options.get());
    ++update;
  }
  return options;
}

void RequireDocuments(const AnalyzeContext& analyzer, const std::string& doctor) {
  const std::vector<std::string> missing = ExplainMissingDocuments(analyzer);
  if (missing.size() < IA_DOCUMENT_COUNT) return;
  throw Failure(ExitStatus::kDocuments, {.object = "documents",
                                         .cause = "none can be read; " + missing.front(),
                                         .hint = "find out why with `" + doctor + "`"});
}

void RequirePpd(const std::string& queue, std::string_view ppd) {
  if (ppd.starts_with("*PPD-Adobe")) return;
  const bool is_compressed = ppd.starts_with("\x1f\x8b");
  throw Failure(ExitStatus::kQueue, {.object = "PPD of queue \"" + queue + "\"",
                                     .cause = is_compressed ? "is compressed" : "is not a PPD",
                                     .hint = "install the driver package's PPD again"});
}

[[nodiscard]] std::optional<JudgedOption> Compare(const PrinterOption& option) {
  if (!option.is_in_ppd) return std::nullopt;
  JudgedOption judged = {.keyword = option.keyword,
                         .default_choice = option.default_choice.value_or(""),
                         .value = option.value,
                         .state = OptionState::kDiffers,
                         .reason = ""};
  if (!option.missing_data.empty()) {
    judged.state = OptionState::kUnknown;
    judged.value.clear();  // the library's default, not the device's
    judged.reason = option.missing_data;
  } else if (option.default_choice == option.value) {
    judged.state = OptionState::kEqual;
  } else if (!option.default_choice) {
    judged.state = OptionState::kNotOffered;
    judged.reason = "the PPD has no line *Default" + option.keyword;
  } else if (!option.is_choice) {
    judged.state = OptionState::kNotOffered;
    judged.reason = "the PPD has no such choice";
  }
  return judged;
}

// False only for what is certainly missing.
[[nodiscard]] bool Exists(const std::string& path) {
  std::error_code error;
  const bool exists = fs::exists(path, error);
  if (!error) return exists;
  throw Failure(ExitStatus::kSnapshot, {.action = "cannot read",
                                        .object = "snapshot " + path,
                                        .cause = error.message(),
                                        .hint = "check the folder of --since"});
}

// An archive or a folder of the queue; empty: there is none.
[[nodiscard]] std::string FindSnapshot(const std::string& folder, const std::string& queue) {
  const std::string path = folder + "/" + queue;
  std::string archive = path + std::string(kArchiveSuffix);
  if (Exists(archive)) return archive;
  return Exists(path + "/" + kSnapshotListName) ? path : "";
}

[[nodiscard]] std::string ReasonOf(const Failure& failure) {
  return MessageOf({.action = failure.parts().action,
                    .object = failure.parts().object,
                    .cause = failure.parts().cause});
}

// Replaces an earlier one as a whole.
void Save(const Snapshot& snapshot, const std::string& folder) {
  const std::string path = folder + "/" + snapshot.queue + std::string(kArchiveSuffix);
  const std::string made = folder + "/." + snapshot.queue + ".new" + std::string(kArchiveSuffix);
  std::error_code error;
  fs::remove(made, error);
  WriteSnapshot(snapshot, made);
  fs::rename(made, path, error);
  if (!error) return;
  std::error_code ignored;
  fs::remove(made, ignored);
  throw Failure(ExitStatus::kSnapshot,
                {.action = "cannot replace", .object = path, .cause = error.message()});
}

}  // namespace

struct Judge::Printer {
  PrinterLocation location;
  std::string device_uri;
  std::string ppd;
  std::string model_code;
  std::vector<PrinterOption> options;
};

std::string DoctorCommand(const Target& target, const AuditScope& scope) {
  constexpr const char* kDoctor = "info-analyze doctor";
  if (!target.snapshot.empty()) return kDoctor + (" --snapshot " + QuoteForShell(target.snapshot));
  const std::string& root = scope.location.cups_root;
  return kDoctor + (" --queue " + QuoteForShell(target.queue)) +
         (root.empty() ? "" : " --cups-root " + QuoteForShell(root));
}

Judge::Judge(const AuditScope& scope)
    : scope_(scope), cups_root_(std::make_shared<const TemporaryFiles>("")) {}

Judgement Judge::Of(const Target& target) {
  Judgement judgement;
  judgement.queue = target.queue;
  judgement.snapshot = target.snapshot;
  try {
    if (!target.not_applicable.empty()) {
      judgement.state = QueueState::kNotApplicable;
      judgement.reason = target.not_applicable;
    } else {
      JudgeOptions(target, judgement);
    }
  } catch (const ForeignPpd& failure) {
    judgement.state = QueueState::kNotApplicable;
    judgement.reason = failure.parts().cause;
  } catch (const Failure& failure) {
    judgement.state = QueueState::kFailed;
    judgement.reason = ReasonOf(failure);
    judgement.hint = failure.parts().hint;
  } catch (const std::bad_alloc&) {
    throw;  // the memory of the process is used up
  } catch (const std::exception& error) {
    judgement.state = QueueState::kFailed;
    judgement.reason = error.what();
  }
  const bool is_whole = judgement.state == QueueState::kJudged;  // also its new snapshot
  if (!is_whole) judgement.options.clear();
  return judgement;
}

std::string Judge::FetchLivePpd(const std::string& queue) const {
  const std::string& root = scope_.location.cups_root;
  if (!root.empty()) return ReadPpdOfRoot(queue, root);
  return FetchPpdFrom(scope_.server, queue, std::chrono::seconds(scope_.location.timeout));
}

BidiContext* Judge::LibraryOf(const std::string& driver_folder) {
  BidiPtr& library = libraries_[driver_folder];
  if (!library) library = LoadLibrary(driver_folder);
  return library.get();
}

Judge::Printer Judge::LocatePrinter(const Target& target) const {
  Printer printer;
  printer.device_uri = target.device_uri;
  printer.location = scope_.location;
  printer.location.queue = target.queue;
  printer.location.snapshot = target.snapshot;
  if (target.snapshot.empty()) return printer;
  SnapshotLocation files = LocateFiles(printer.location);
  printer.location = std::move(files.location);
  if (!target.queue.empty()) printer.location.queue = target.queue;
  if (!target.is_live) printer.device_uri = std::move(files.device_uri);
  return printer;
}

void Judge::QueryOptions(const CopiedPpd& copy, const Target& target, Printer& printer) {
  const PrinterLocation& location = printer.location;
  const AnalyzerPtr analyzer =
      copy.CreateAnalyzer(LibraryOf(location.driver_folder), location.device_info.c_str());
  const OptionListPtr options = RunAllUpdates(*analyzer);
  RequireDocuments(*analyzer, DoctorCommand(target, scope_));
  const char* const code = analyzer->driver_name;
  printer.model_code = code != nullptr ? code : "";
  const PpdOptions ppd = ParsePpdOptions(printer.ppd);
  printer.options = OptionsOf(*analyzer, options->next, ppd);
  std::ranges::move(OptionsWithoutDocument(*analyzer, printer.options, ppd),
                    std::back_inserter(printer.options));
}

void Judge::TakeDocuments(Printer& printer) const {
  if (scope_.asks_devices) printer.location.device = printer.device_uri;
  if (!printer.location.device.empty()) {
    printer.location = WithDocumentsOfDevice(printer.location);
  } else if (scope_.asks_devices) {
    throw Failure(ExitStatus::kQueue, {.object = "queue \"" + printer.location.queue + "\"",
                                       .cause = "CUPS knows no device URI for it",
                                       .hint = "set a document directory with --device-info"});
  }
}

Judge::Printer Judge::Query(const Target& target) {
  Printer printer = LocatePrinter(target);
  const std::string& queue = printer.location.queue;
  RequireQueueName(queue);
  printer.ppd =
      target.is_live ? FetchLivePpd(queue) : ReadPpdOfRoot(queue, printer.location.cups_root);
  RequirePpd(queue, printer.ppd);
  const CopiedPpd copy(cups_root_, queue, printer.ppd);
  copy.RequireDriver();
  const QueueWords words = {.queue = queue,
                            .host = [&] { return HostOfDeviceUri(printer.device_uri); },
                            .model = [&] { return copy.ReadModelCode(); }};
  printer.location =
      Complete(printer.location, CurrentSettings(scope_.location.config_file), words);
  if (target.snapshot.empty()) TakeDocuments(printer);
  QueryOptions(copy, target, printer);
  return printer;
}

void Judge::JudgeOptions(const Target& target, Judgement& judgement) {
  const Printer printer = Query(target);
  judgement.queue = printer.location.queue;
  judgement.model_code = printer.model_code;
  for (const PrinterOption& option : printer.options) {
    if (auto judged = Compare(option)) judgement.options.push_back(std::move(*judged));
  }
  if (!scope_.since.empty()) CompareWithEarlier(printer, judgement);
  if (scope_.save.empty()) return;
  Save(ComposeSnapshot({.queue = judgement.queue,
                        .ppd = printer.ppd,
                        .device_info = printer.location.device_info,
                        .device_uri = printer.device_uri,
                        .model_code = printer.model_code}),
       scope_.save);
}

void Judge::CompareWithEarlier(const Printer& printer, Judgement& judgement) {
  Target earlier;
  earlier.is_live = false;
  Printer before;
  try {
    earlier.snapshot = FindSnapshot(scope_.since, judgement.queue);
    if (earlier.snapshot.empty()) return;
    judgement.since = ReadSnapshot(earlier.snapshot).date;
    before = Query(earlier);
  } catch (const Failure& failure) {
    judgement.reason = ReasonOf(failure);
    return;
  }
  if (before.model_code != printer.model_code) {
    judgement.changes.push_back({"QVAnlz_DriverName", before.model_code, printer.model_code});
  }
  for (const PrinterOption& option : printer.options) {
    const auto hit = std::ranges::find(before.options, option.keyword, &PrinterOption::keyword);
    if (hit == before.options.end() || hit->value == option.value) continue;
    if (!hit->missing_data.empty() || !option.missing_data.empty()) continue;
    judgement.changes.push_back({option.keyword, hit->value, option.value});
  }
}

}  // namespace ia::cli
