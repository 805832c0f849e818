// What an audit finds out about a queue: the PPD's default of each option beside what the device
// has.
#ifndef INFO_ANALYZE_CLI_AUDIT_JUDGEMENT_H_
#define INFO_ANALYZE_CLI_AUDIT_JUDGEMENT_H_

#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

namespace ia::cli {

enum class OptionState {
  kEqual,
  kDiffers,
  kNotOffered,  // the device's value differs, but the PPD has no such choice
  kUnknown,     // the device did not report what the value depends on
};

struct JudgedOption {
  std::string keyword;
  std::string default_choice;  // of the PPD
  std::string value;           // of the device; empty for one that is unknown
  OptionState state;
  std::string reason;  // why it is unknown or not offered

  static auto FieldsOf(auto& option) {
    return std::tie(option.keyword, option.default_choice, option.value, option.state,
                    option.reason);
  }
};

// A value of the device that differs from that of an earlier snapshot; or QVAnlz_DriverName, when
// the PPD was that of a different model.
struct ChangedOption {
  std::string keyword;
  std::string before;
  std::string after;

  static auto FieldsOf(auto& change) {
    return std::tie(change.keyword, change.before, change.after);
  }
};

enum class QueueState {
  kJudged,
  kNotApplicable,  // no driver of the library serves the queue
  kFailed,         // nothing can be said about it
};

struct Judgement {
  std::string queue;
  std::string snapshot;    // path; empty: the queue is live
  std::string model_code;  // empty: none
  QueueState state = QueueState::kJudged;
  std::string reason;  // why it is not judged, or not compared with an earlier snapshot
  std::string hint;
  std::vector<JudgedOption> options;
  std::string since;  // when the earlier snapshot was taken; empty: none
  std::vector<ChangedOption> changes;

  [[nodiscard]] std::size_t Count(OptionState state) const;

  // Whether an option differs from the device's, and whether something could not be judged.
  [[nodiscard]] bool Differs() const;
  [[nodiscard]] bool IsUnjudged() const;

  // For processes that send judgements to each other.
  static auto FieldsOf(auto& judgement) {
    return std::tie(judgement.queue, judgement.snapshot, judgement.model_code, judgement.state,
                    judgement.reason, judgement.hint, judgement.options, judgement.since,
                    judgement.changes);
  }
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_AUDIT_JUDGEMENT_H_
