#ifndef INFO_ANALYZE_CLI_AUDIT_JUDGE_H_
#define INFO_ANALYZE_CLI_AUDIT_JUDGE_H_

#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "cli/audit/judgement.h"
#include "cli/printer/cups_server.h"
#include "cli/printer/handles.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/session.h"

namespace ia::cli {

// One queue of an audit.
struct Target {
  std::string queue;           // empty: that of the snapshot
  std::string snapshot;        // path; empty: none, so the documents are where the location says
  bool is_live = true;         // the PPD is that of the live queue
  std::string device_uri;      // of a live queue; empty: unknown
  std::string not_applicable;  // why no driver of the library serves it; empty: one may

  // For processes that send targets to each other.
  static auto FieldsOf(auto& target) {
    return std::tie(target.queue, target.snapshot, target.is_live, target.device_uri,
                    target.not_applicable);
  }
};

// What all targets have in common.
struct AuditScope {
  PrinterLocation location;   // without a queue
  ServerSettings server;      // of live queues, unless the location has a CUPS root
  bool asks_devices = false;  // for documents, because no directory is given
  std::string since;          // folder of earlier snapshots; empty: none
  std::string save;           // folder for new snapshots; empty: none
};

// The verb that says what is wrong with a queue: "info-analyze doctor --queue office".
[[nodiscard]] std::string DoctorCommand(const Target& target, const AuditScope& scope);

// Judges queues one after the other, and loads each communication library once. Only one in a
// process, because libcups keeps the first CUPS root that it is given.
class Judge {
 public:
  // The scope must outlive the judge. Throws a Failure.
  explicit Judge(const AuditScope& scope);

  // Never throws a Failure: why a queue is not judged is part of the judgement.
  [[nodiscard]] Judgement Of(const Target& target);

 private:
  struct Printer;

  [[nodiscard]] std::string FetchLivePpd(const std::string& queue) const;
  [[nodiscard]] BidiContext* LibraryOf(const std::string& driver_folder);
  [[nodiscard]] Printer LocatePrinter(const Target& target) const;
  void TakeDocuments(Printer& printer) const;
  void QueryOptions(const CopiedPpd& copy, const Target& target, Printer& printer);
  [[nodiscard]] Printer Query(const Target& target);
  void JudgeOptions(const Target& target, Judgement& judgement);
  void CompareWithEarlier(const Printer& printer, Judgement& judgement);

  const AuditScope& scope_;
  std::shared_ptr<const TemporaryFiles> cups_root_;
  std::map<std::string, BidiPtr> libraries_;  // by driver folder
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_AUDIT_JUDGE_H_
