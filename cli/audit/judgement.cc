#include "cli/audit/judgement.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string>

#include "cli/printer/message.h"

namespace ia::cli {
namespace {

template <class Enum>
void PutEnum(Enum value, Message& message) {
  message.Put(std::to_string(static_cast<int>(value)));
}

template <class Enum>
[[nodiscard]] Enum TakeEnum(Message& message) {
  return static_cast<Enum>(std::atoi(message.Take().c_str()));
}

[[nodiscard]] std::size_t TakeCount(Message& message) {
  return static_cast<std::size_t>(std::atoll(message.Take().c_str()));
}

}  // namespace

std::size_t Judgement::Count(OptionState option_state) const {
  return static_cast<std::size_t>(std::ranges::count(options, option_state, &JudgedOption::state));
}

bool Judgement::Differs() const {
  return Count(OptionState::kDiffers) + Count(OptionState::kNotOffered) > 0;
}

bool Judgement::IsUnjudged() const {
  return state == QueueState::kFailed || Count(OptionState::kUnknown) > 0;
}

std::string Write(const Judgement& judgement) {
  Message message;
  message.Put(judgement.queue);
  message.Put(judgement.snapshot);
  message.Put(judgement.model_code);
  PutEnum(judgement.state, message);
  message.Put(judgement.reason);
  message.Put(judgement.hint);
  message.Put(std::to_string(judgement.options.size()));
  for (const JudgedOption& option : judgement.options) {
    message.Put(option.keyword);
    message.Put(option.default_choice);
    message.Put(option.value);
    PutEnum(option.state, message);
    message.Put(option.reason);
  }
  message.Put(judgement.since);
  message.Put(std::to_string(judgement.changes.size()));
  for (const ChangedOption& change : judgement.changes) {
    message.Put(change.keyword);
    message.Put(change.before);
    message.Put(change.after);
  }
  return message.bytes();
}

Judgement ReadJudgement(const std::string& bytes) {
  Message message(bytes);
  Judgement judgement;
  judgement.queue = message.Take();
  judgement.snapshot = message.Take();
  judgement.model_code = message.Take();
  judgement.state = TakeEnum<QueueState>(message);
  judgement.reason = message.Take();
  judgement.hint = message.Take();
  for (std::size_t left = TakeCount(message); left > 0 && !message.IsAtEnd(); --left) {
    JudgedOption& option = judgement.options.emplace_back();
    option.keyword = message.Take();
    option.default_choice = message.Take();
    option.value = message.Take();
    option.state = TakeEnum<OptionState>(message);
    option.reason = message.Take();
  }
  judgement.since = message.Take();
  for (std::size_t left = TakeCount(message); left > 0 && !message.IsAtEnd(); --left) {
    ChangedOption& change = judgement.changes.emplace_back();
    change.keyword = message.Take();
    change.before = message.Take();
    change.after = message.Take();
  }
  return judgement;
}

}  // namespace ia::cli
