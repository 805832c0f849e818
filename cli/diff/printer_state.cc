#include "cli/diff/printer_state.h"

#include <stdlib.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/explain/decision.h"
#include "cli/explain/explanation.h"
#include "cli/explain/unknown_values.h"
#include "cli/printer/child_process.h"
#include "cli/printer/message.h"
#include "cli/printer/ppd.h"
#include "cli/printer/printer_query.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/temporary_folder.h"

namespace ia::cli {
namespace {

constexpr std::array<std::int32_t, kListNames.size()> kLists = {
    IA_DOCUMENT_FINISHER_LIST, IA_DOCUMENT_BIN_LIST, IA_DOCUMENT_TRAY_LIST,
    IA_DOCUMENT_FAX_LINE_LIST};

[[nodiscard]] StateOption OptionOf(const Explanation& why, const PpdOptions& ppd) {
  StateOption option = {.keyword = why.keyword,
                        .value = why.value,
                        .keyword_text = "",
                        .value_text = "",
                        .missing_data = why.missing_data,
                        .is_choice = false};
  const auto in_ppd = ppd.find(option.keyword);
  if (in_ppd == ppd.end()) return option;
  option.keyword_text = in_ppd->second.text;
  option.is_choice = in_ppd->second.HasChoice(option.value);
  for (const PpdChoice& choice : in_ppd->second.choices) {
    if (choice.name == option.value) option.value_text = choice.text;
  }
  return option;
}

[[nodiscard]] bool MayDecide(const UnknownValue& unknown, const Explanation& why,
                             const Decision& decision) {
  if (!decision.is_known) return IsIn(why.raw_values, unknown.raw);
  return IsIn(decision.needed, unknown.raw) || IsIn(decision.unmatched, unknown.raw);
}

// What nothing knows may be what the printer has, under a different name.
void AddUnknownValues(AnalyzeContext& analyzer, std::vector<Explanation>& explanations) {
  const std::vector<UnknownValue> unknown_values = FindUnknownValues(analyzer);
  if (unknown_values.empty()) return;
  const std::vector<Decision> decisions = FindDecisions(analyzer, explanations);
  for (std::size_t i = 0; i < explanations.size(); ++i) {
    const auto unknown = std::ranges::find_if(unknown_values, [&](const UnknownValue& value) {
      return MayDecide(value, explanations[i], decisions[i]);
    });
    const bool is_complete = explanations[i].missing_data.empty();
    if (is_complete && unknown != unknown_values.end()) {
      explanations[i].missing_data = Describe(*unknown);
    }
  }
}

[[nodiscard]] PrinterState Query(const PrinterLocation& given) {
  const PrinterLocation location = Locate(given);
  const Session session = OpenSession(location);
  const OptionListPtr options = QueryPrinter(*session.analyzer, location.queue);
  const PpdOptions ppd = ParsePpdOptions(session.ppd);
  PrinterState state;
  state.queue = location.queue;
  const char* const code = session.analyzer->driver_name;
  state.model_code = code != nullptr ? code : "";
  for (std::size_t i = 0; i < kLists.size(); ++i) {
    state.list_counts[i] = std::to_string(session.analyzer->documents[kLists[i]].count);
  }
  std::vector<Explanation> explanations = Explain(*session.analyzer, options->next);
  AddUnknownValues(*session.analyzer, explanations);
  for (const Explanation& why : explanations) state.options.push_back(OptionOf(why, ppd));
  return state;
}

[[nodiscard]] std::string Write(const PrinterState& state) {
  Message message;
  message.Put(state.queue);
  message.Put(state.model_code);
  for (const std::string& count : state.list_counts) message.Put(count);
  for (const StateOption& option : state.options) {
    for (const std::string& text : {option.keyword, option.value, option.keyword_text,
                                    option.value_text, option.missing_data}) {
      message.Put(text);
    }
    message.Put(option.is_choice);
  }
  return message.bytes();
}

[[nodiscard]] PrinterState Read(const std::string& bytes) {
  Message message(bytes);
  PrinterState state;
  state.queue = message.Take();
  state.model_code = message.Take();
  for (std::string& count : state.list_counts) count = message.Take();
  while (!message.IsAtEnd()) {
    StateOption option;
    option.keyword = message.Take();
    option.value = message.Take();
    option.keyword_text = message.Take();
    option.value_text = message.Take();
    option.missing_data = message.Take();
    option.is_choice = message.TakeFlag();
    state.options.push_back(option);
  }
  return state;
}

[[nodiscard]] std::string ReadAll(int descriptor) {
  std::string bytes;
  std::array<char, 4096> buffer;
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return bytes;
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

[[nodiscard]] ExitStatus Fail(ExitStatus status, const FailureParts& parts) {
  ReportFailure(status, parts);
  return status;
}

[[nodiscard]] ExitStatus QueryAndWrite(const PrinterLocation& given, int descriptor) {
  try {
    WriteAll(descriptor, Write(Query(given)));
    return ExitStatus::kSuccess;
  } catch (const CLI::ParseError& error) {
    return Fail(ExitStatus::kUsage, {.cause = error.what()});
  } catch (const Failure& failure) {
    return Fail(failure.status(), failure.parts());
  } catch (const std::exception& error) {
    return Fail(ExitStatus::kOther, {.cause = error.what()});
  }
}

[[nodiscard]] ExitStatus StatusOf(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return ExitStatus::kOther;
  }
  return WIFEXITED(status) ? static_cast<ExitStatus>(WEXITSTATUS(status)) : ExitStatus::kOther;
}

}  // namespace

PrinterState QueryInOwnProcess(const PrinterLocation& given) {
  int ends[2];
  if (pipe(ends) != 0) throw Failure(ExitStatus::kOther, std::strerror(errno));
  const pid_t child = fork();
  if (child < 0) throw Failure(ExitStatus::kOther, std::strerror(errno));
  if (child == 0) {
    close(ends[0]);
    RemoveTemporaryFoldersOnInterrupt();
    _exit(static_cast<int>(QueryAndWrite(given, ends[1])));
  }
  close(ends[1]);
  const std::string bytes = ReadAll(ends[0]);
  close(ends[0]);
  const ExitStatus status = StatusOf(child);
  if (status != ExitStatus::kSuccess) throw Verdict(status);
  return Read(bytes);
}

}  // namespace ia::cli
