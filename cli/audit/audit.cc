#include "cli/audit/audit.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "cli/audit/judgement.h"
#include "cli/audit/report.h"
#include "cli/audit/targets.h"
#include "cli/config/patterns.h"
#include "cli/config/settings.h"
#include "cli/printer/cups_server.h"
#include "cli/printer/message.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/worker_pool.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress_bar.h"

namespace ia::cli {
namespace {

constexpr int kMaxJobs = 256;

// Of a worker. The sample printers need 64 MiB, and one with a PPD of 15 MiB needs 160 MiB.
constexpr std::size_t kMemory = std::size_t{1} << 30;

// The shadow memory of the address sanitizer is larger than any limit.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kLimitsMemory = false;
#else
constexpr bool kLimitsMemory = true;
#endif

[[nodiscard]] bool IsPort(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= 1 && number <= 65535;
}

[[nodiscard]] bool IsServer(std::string_view text) {
  if (text.starts_with('/')) return true;                             // the path of a socket
  const std::size_t end = text.starts_with('[') ? text.find(']') + 1  // npos + 1 is 0
                                                : std::min(text.find(':'), text.size());
  const std::string_view rest = text.substr(end);
  return end > 0 && (rest.empty() || (rest.starts_with(':') && IsPort(rest.substr(1))));
}

// Empty for a server. libcups would take "::1" for port 1 of a host.
[[nodiscard]] std::string FaultOfServer(const std::string& text) {
  if (IsServer(text)) return "";
  return "\"" + text + "\" is not HOST, HOST:PORT, [IPV6-ADDRESS]:PORT or the path of a socket";
}

struct AuditQuestion {
  AuditPlan plan;
  std::vector<std::string> queues;
  std::vector<std::string> snapshots;
  std::string format = "text";
  bool is_live = false;
  bool with_equal = false;
};

[[nodiscard]] Judgement JudgementOf(const std::string& task, const TaskResult& result,
                                    const AuditScope& scope) {
  if (result.fault.empty()) return Read<Judgement>(result.answer);
  const Target target = Read<Target>(task);
  Judgement judgement;
  judgement.queue = target.queue;
  judgement.snapshot = target.snapshot;
  judgement.state = QueueState::kFailed;
  judgement.reason = "the process that judges it failed: " + result.fault;
  judgement.hint = "check its communication library with `" + DoctorCommand(target, scope) + "`";
  return judgement;
}

// A shell writes the paths of a pattern one after the other. No name of a queue has a slash.
[[nodiscard]] bool IsPath(const std::string& word) {
  std::error_code ignored;
  return word.find('/') != std::string::npos || std::filesystem::exists(word, ignored);
}

void TakePaths(AuditQuestion& question) {
  std::ranges::copy_if(question.queues, std::back_inserter(question.snapshots), IsPath);
  std::erase_if(question.queues, IsPath);
}

[[nodiscard]] std::vector<Target> FindTargets(AuditQuestion& question) {
  AuditScope& scope = question.plan.scope;
  if (question.snapshots.empty()) return FindLiveTargets(scope, question.queues);
  TakePaths(question);
  if (!question.is_live) return FindSavedTargets(question.snapshots, question.queues);
  return PairWithSnapshots(FindLiveTargets(scope, question.queues),
                           FindSavedTargets(question.snapshots, {}));
}

void RequireFolder(const std::string& path) {
  std::error_code ignored;
  if (path.empty() || std::filesystem::is_directory(path, ignored)) return;
  if (std::filesystem::exists(path, ignored)) {
    throw Failure(
        ExitStatus::kSnapshot,
        {.object = path, .cause = "is not a folder", .hint = "name the folder of the snapshots"});
  }
  throw Failure(ExitStatus::kSnapshot,
                {.object = "folder " + path, .cause = "does not exist", .hint = "make it first"});
}

[[nodiscard]] std::string FormatOf(const Judgement& judgement, const AuditQuestion& question) {
  if (question.format == "json") return JsonOf(judgement, question.with_equal);
  if (question.format == "log") return LogOf(judgement);
  return TextOf(judgement, question.with_equal);
}

[[nodiscard]] std::string FormatOf(const AuditSummary& summary, const std::string& format) {
  return format == "json" ? JsonOf(summary) : TextOf(summary);
}

void Audit(AuditQuestion& question) {
  AuditPlan& plan = question.plan;
  if (question.is_live && question.snapshots.empty()) throw CLI::RequiredError("--snapshots");
  UseSettings(plan, question.snapshots.empty());
  RequireFolder(plan.scope.since);
  RequireFolder(plan.scope.save);
  plan.targets = FindTargets(question);
  if (const auto fault = FaultOfDocuments(plan)) ReportWarning(MessageOf(*fault));
  AuditSummary summary;
  JudgeAll(plan, [&](const Judgement& judgement) {
    summary.Add(judgement);
    WriteAnswer(FormatOf(judgement, question));
  });
  WriteAnswer(FormatOf(summary, question.format));
  if (summary.Status() != ExitStatus::kSuccess) throw Verdict(summary.Status());
}

}  // namespace

void UseSettings(AuditPlan& plan, bool needs_documents) {
  PrinterLocation& location = plan.scope.location;
  const Settings& settings = CurrentSettings(location.config_file);
  const bool has_documents =
      !location.device_info.empty() || settings.device_info || !location.device.empty();
  plan.scope.asks_devices = needs_documents && !has_documents;
  location.needs_documents = false;
  RequireLocation(location, settings);
  location.needs_documents = !plan.scope.asks_devices;
  location.timeout = TimeoutOf(location, settings);
}

std::optional<FailureParts> FaultOfDocuments(const AuditPlan& plan) {
  const PrinterLocation& location = plan.scope.location;
  SettingValue folder = DeviceInfoOf(location, CurrentSettings(location.config_file));
  if (!location.device.empty()) folder = {.text = location.device, .source = "--device"};
  const bool has_own = folder.text.find("{queue}") != std::string::npos ||
                       folder.text.find("{host}") != std::string::npos;
  std::set<std::string> devices;
  for (const Target& target : plan.targets) {
    const bool is_judged =
        target.is_live && target.snapshot.empty() && target.not_applicable.empty();
    if (is_judged && !target.device_uri.empty()) devices.insert(target.device_uri);
  }
  if (folder.text.empty() || has_own || devices.size() <= 1) return std::nullopt;
  return FailureParts{
      .object = "documents in " + folder.text + " of " + folder.source,
      .cause = "they are of one device, but the queues are of " + std::to_string(devices.size()),
      .hint = "write {queue} or {host} into the path, or name one queue"};
}

void JudgeAll(const AuditPlan& plan, const std::function<void(const Judgement&)>& use) {
  const TemporaryFiles folder("");  // also for what workers leave that are killed
  const WorkerLimits limits = {.workers = plan.jobs,
                               .seconds = std::chrono::seconds(plan.scope.location.timeout),
                               .memory = kLimitsMemory ? kMemory : 0};
  std::unique_ptr<Judge> judge;  // of the worker process
  const auto work = [&](const std::string& task) {
    if (!judge) judge = std::make_unique<Judge>(plan.scope);
    return Write(judge->Of(Read<Target>(task)));
  };
  auto next = plan.targets.begin();
  const auto next_task = [&] {
    return next != plan.targets.end() ? std::optional(Write(*next++)) : std::nullopt;
  };
  ProgressBar progress(plan.targets.size(), "queues");
  std::size_t done = 0;
  std::size_t failed = 0;
  RunInWorkers(limits, work, next_task, [&](const std::string& task, const TaskResult& result) {
    const Judgement judgement = JudgementOf(task, result, plan.scope);
    ++done;
    if (judgement.state == QueueState::kFailed) ++failed;
    progress.Hide();
    use(judgement);
    progress.Show(done, failed);
  });
}

void AddAuditOptions(CLI::App& verb, AuditPlan& plan, std::vector<std::string>& queues) {
  verb.add_option("QUEUE", queues, "Names of queues; without any, all queues");
  AddDriverOption(verb, plan.scope.location);
  AddDocumentsOption(verb, plan.scope.location);
  AddTimeoutOption(verb, plan.scope.location);
  verb.get_option("--timeout")
      ->description("Wait at most this long for a CUPS server, and as long for each queue");
  AddConfigOption(verb, plan.scope.location);
  plan.jobs = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMaxJobs);
  verb.add_option("-j,--jobs", plan.jobs, "Judge this many queues at the same time")
      ->type_name("COUNT")
      ->check(CLI::Range(1, kMaxJobs))
      ->default_str("number of cores");
  // As the tools of CUPS have it, so that -h is not the help of this verb.
  verb.set_help_flag("--help", "Print this help message and exit");
  verb.add_option("-h,--host", plan.host,
                  "Ask the CUPS server HOST, HOST:PORT or [IPV6-ADDRESS]:PORT")
      ->type_name("HOST")
      ->check(FaultOfServer)
      ->each(UseServer);
}

void DefineAudit(CLI::App& verb) {
  const auto question = std::make_shared<AuditQuestion>();
  AddAuditOptions(verb, question->plan, question->queues);
  AuditScope& scope = question->plan.scope;
  AddCupsRootOption(verb, scope.location);
  verb.get_option("--cups-root")->excludes("--host");
  verb.add_option(
          "--snapshots", question->snapshots,
          "Audit the printers that are saved in this snapshot or folder of snapshots, and in "
          "those of further paths")
      ->type_name("PATH...")
      ->allow_extra_args(false);  // names of queues may follow
  verb.add_flag("--live", question->is_live,
                "With --snapshots: audit the live queues against the saved documents");
  verb.add_option("--since", scope.since, "Report what has changed since the snapshots in DIR")
      ->type_name("DIR");
  verb.add_option("--save", scope.save, "Save a snapshot of each queue in DIR")->type_name("DIR");
  verb.add_flag("--all", question->with_equal, "Print options that are equal, too");
  verb.add_option("--format", question->format,
                  "text: a line for each queue; log: a line for each difference; json: an object "
                  "for each queue")
      ->check(CLI::IsMember({"text", "log", "json"}))
      ->capture_default_str();
  verb.footer(
      "Exit status: 0 when all is right, 10 when an option differs, 11 when something could not "
      "be judged, 12 for both.\n\n"
      "Examples:\n"
      "  info-analyze audit --driver-folder /usr/lib/driver --device-info \"/var/cache/{queue}\"\n"
      "  info-analyze audit office --all\n"
      "  info-analyze audit --snapshots monday --format json");
  verb.callback([question] { Audit(*question); });
}

}  // namespace ia::cli
