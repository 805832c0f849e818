// What the doctor finds, in the order of its checks.
#ifndef INFO_ANALYZE_CLI_DOCTOR_CHECKUP_H_
#define INFO_ANALYZE_CLI_DOCTOR_CHECKUP_H_

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/printer/ppd.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/session.h"

namespace ia::cli {

// "1 item", "2 items".
[[nodiscard]] inline std::string CountOf(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// "a, b, c and 7 more".
[[nodiscard]] inline std::string JoinSome(const std::vector<std::string>& texts) {
  constexpr std::size_t kMaxTexts = 8;
  const std::size_t shown = std::min(texts.size(), kMaxTexts);
  std::string list;
  for (std::size_t i = 0; i < shown; ++i) list += (i > 0 ? ", " : "") + texts[i];
  return shown == texts.size() ? list
                               : list + " and " + std::to_string(texts.size() - shown) + " more";
}

enum class Level { kOk, kNote, kWarning, kFailure };

struct Finding {
  Level level;
  std::string check;     // which check: "queue", "ppd", "flags", "driver", "documents", ...
  std::string sentence;  // what was found
  std::string fix;       // what to do about it; empty: nothing
  std::string group;     // of findings that are summed up; empty: none
  std::vector<std::string> others;  // objects with the same fault

  [[nodiscard]] std::string FullSentence() const {
    return others.empty() ? sentence : sentence + "; the same for " + JoinSome(others);
  }
};

// Findings with the same fault in different objects are one: the first, which names the others.
struct Repeated {
  std::string group;
  std::string object;
};

class Checkup {
 public:
  void Ok(const std::string& check, const std::string& sentence) {
    Add({.level = Level::kOk,
         .check = check,
         .sentence = sentence,
         .fix = "",
         .group = "",
         .others = {}});
  }
  void Note(const std::string& check, const std::string& sentence, const Repeated& repeated = {}) {
    Add({.level = Level::kNote,
         .check = check,
         .sentence = sentence,
         .fix = "",
         .group = repeated.group,
         .others = {}},
        repeated.object);
  }
  void Warn(const std::string& check, const std::string& sentence, const std::string& fix,
            const Repeated& repeated = {}) {
    Add({.level = Level::kWarning,
         .check = check,
         .sentence = sentence,
         .fix = fix,
         .group = repeated.group,
         .others = {}},
        repeated.object);
  }
  void Fail(const std::string& check, const std::string& sentence, const std::string& fix) {
    Add({.level = Level::kFailure,
         .check = check,
         .sentence = sentence,
         .fix = fix,
         .group = "",
         .others = {}});
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
  void Add(const Finding& finding, const std::string& object = "") {
    const auto is_same = [&](const Finding& earlier) {
      return !finding.group.empty() && earlier.group == finding.group;
    };
    const auto hit = std::ranges::find_if(findings_, is_same);
    if (hit == findings_.end()) {
      findings_.push_back(finding);
    } else {
      hit->others.push_back(object);
    }
  }

  std::vector<Finding> findings_;
};

// The printer that is examined. What a check cannot get stays null, and later checks do without it.
struct Patient {
  PrinterLocation location;
  std::unique_ptr<const CopiedPpd> ppd;
  PpdOptions ppd_options;  // its options and their choices
  BidiContext no_library = {};
  AnalyzerPtr ppd_reader;  // has read the PPD only
  BidiPtr library;
  AnalyzerPtr analyzer;  // with library and documents
  // Whether the faults found so far are the communication library's.
  bool has_bad_library = false;
  // Called before each use of the communication library, with what it is used for.
  std::function<void(const std::string& use)> announce = [](const std::string&) {};
};

// What to do about a file or folder that cannot be read.
[[nodiscard]] inline std::string FixOf(const std::string& path, const std::string& usual) {
  const bool is_denied = access(path.c_str(), R_OK) != 0 && errno == EACCES;
  return is_denied ? "run as a user who may read it" : usual;
}

// The checks, in the order in which they are made.
void CheckQueue(Patient& patient, Checkup& checkup);
void CheckFlags(const Patient& patient, Checkup& checkup);
void CheckDriver(Patient& patient, Checkup& checkup);
void CheckDocuments(Patient& patient, Checkup& checkup);
void CheckKeys(Patient& patient, Checkup& checkup);
void CheckValues(const Patient& patient, Checkup& checkup);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_DOCTOR_CHECKUP_H_
