// What the doctor finds, in the order of its checks.
#ifndef INFO_ANALYZE_CLI_DOCTOR_CHECKUP_H_
#define INFO_ANALYZE_CLI_DOCTOR_CHECKUP_H_

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "cli/printer/ppd.h"
#include "cli/printer/session.h"

namespace ia::cli {

// "1 item", "2 items".
[[nodiscard]] inline std::string CountOf(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

enum class Level { kOk, kNote, kWarning, kFailure };

struct Finding {
  Level level;
  std::string check;     // which check: "queue", "ppd", "flags", "driver", "documents", ...
  std::string sentence;  // what was found
  std::string fix;       // what to do about it; empty: nothing
};

class Checkup {
 public:
  void Ok(const std::string& check, const std::string& sentence) {
    Add(Level::kOk, check, sentence, "");
  }
  void Note(const std::string& check, const std::string& sentence) {
    Add(Level::kNote, check, sentence, "");
  }
  void Warn(const std::string& check, const std::string& sentence, const std::string& fix) {
    Add(Level::kWarning, check, sentence, fix);
  }
  void Fail(const std::string& check, const std::string& sentence, const std::string& fix) {
    Add(Level::kFailure, check, sentence, fix);
  }

  [[nodiscard]] const std::vector<Finding>& findings() const { return findings_; }
  [[nodiscard]] std::size_t Count(Level level) const {
    return static_cast<std::size_t>(std::ranges::count(findings_, level, &Finding::level));
  }
  // What to fix first: the first failure, or else the first warning; null: nothing.
  [[nodiscard]] const Finding* First() const {
    for (const Level level : {Level::kFailure, Level::kWarning}) {
      const auto hit = std::ranges::find(findings_, level, &Finding::level);
      if (hit != findings_.end()) return &*hit;
    }
    return nullptr;
  }

 private:
  void Add(Level level, const std::string& check, const std::string& sentence,
           const std::string& fix) {
    findings_.push_back({.level = level, .check = check, .sentence = sentence, .fix = fix});
  }

  std::vector<Finding> findings_;
};

// The printer that is examined. What a check cannot get stays null, and later checks do without it.
struct Patient {
  PrinterLocation location;
  std::string ppd;         // text of the queue's PPD
  PpdOptions ppd_options;  // its options and their choices
  BidiContext no_library = {};
  AnalyzerPtr ppd_reader;  // has read the PPD only
  BidiPtr library;
  AnalyzerPtr analyzer;  // with library and documents
};

// The checks, in the order in which they are made.
void CheckQueue(Patient& patient, Checkup& checkup);
void CheckFlags(const Patient& patient, Checkup& checkup);
void CheckDriver(Patient& patient, Checkup& checkup);
void CheckDocuments(Patient& patient, Checkup& checkup);
void CheckKeys(const Patient& patient, Checkup& checkup);
void CheckValues(const Patient& patient, Checkup& checkup);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_DOCTOR_CHECKUP_H_
