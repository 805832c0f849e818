#include "cli/diff/printer_state.h"

#include <stdlib.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "cli/explain/printer_options.h"
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

[[nodiscard]] PrinterState Query(const PrinterLocation& given) {
  const PrinterLocation location = Locate(given);
  const Session session = OpenSession(location);
  const OptionListPtr options = QueryPrinter(*session.analyzer, location.queue);
  PrinterState state;
  state.queue = location.queue;
  const char* const code = session.analyzer->driver_name;
  state.model_code = code != nullptr ? code : "";
  for (std::size_t i = 0; i < kLists.size(); ++i) {
    state.list_counts[i] = std::to_string(session.analyzer->documents[kLists[i]].count);
  }
  state.options = OptionsOf(*session.analyzer, options->next, ParsePpdOptions(session.ppd));
  return state;
}

[[nodiscard]] std::string Write(const PrinterState& state) {
  Message message;
  message.Put(state.queue);
  message.Put(state.model_code);
  for (const std::string& count : state.list_counts) message.Put(count);
  for (const PrinterOption& option : state.options) {
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
    PrinterOption option;
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
