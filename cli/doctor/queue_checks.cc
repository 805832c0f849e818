// The doctor's checks of the queue and of the lines of its PPD that the library reads.
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "cli/doctor/checkup.h"
#include "cli/provenance/provenance.h"
#include "cli/terminal/failure.h"
#include "info_analyze/analyzer.h"
#include "info_analyze/option_table.h"

namespace ia::cli {
namespace {

constexpr const char* kModelCode = "QVAnlz_DriverName";

// False when there is no PPD.
[[nodiscard]] bool FetchPpd(Patient& patient, Checkup& checkup) {
  const std::string& queue = patient.location.queue;
  try {
    UseQueue(patient.location);
  } catch (const Failure& failure) {
    checkup.Fail("queue", failure.what(),
                 "check the queue's name and --cups-root; `info-analyze queues cups` lists queues");
    return false;
  }
  const auto ppd = ReadPpd(queue);
  if (!ppd) {
    checkup.Fail("queue", "queue " + queue + ": CUPS has no PPD for it that can be read",
                 "check the queue's name; `lpstat -p` lists queues, `lpadmin -p " + queue +
                     " -P FILE.ppd` gives it a PPD");
    return false;
  }
  patient.ppd = *ppd;
  patient.ppd_options = ParsePpdOptions(*ppd);
  checkup.Ok("queue", "queue " + queue + " has a PPD of " + std::to_string(ppd->size()) + " bytes");
  return true;
}

void CheckHead(const Patient& patient, Checkup& checkup) {
  if (patient.ppd.starts_with("*PPD-Adobe:")) return;
  checkup.Warn("ppd", "the PPD does not begin with \"*PPD-Adobe:\", so other programs refuse it",
               "take the PPD of the driver package as it is");
}

struct OptionLines {
  std::map<std::string, int> counts;  // by key
};

// Has the library split a line "*QVKey: value", to learn what it reads of it.
void CheckLine(std::string_view line, OptionLines& lines, Checkup& checkup) {
  std::array<char, IA_PPD_TEXT_SIZE> key = {};
  std::array<char, IA_PPD_TEXT_SIZE> value = {};
  const std::string text(line.substr(1));
  if (info_common_optlist_getoptkeyandvalue(text.c_str(), key.data(), value.data(),
                                            IA_PPD_TEXT_SIZE) > 0) {
    ++lines.counts[key.data()];
    return;
  }
  checkup.Warn("ppd",
               "the line that starts with *" + text.substr(0, 40) +
                   " is not read: a keyword or a value has at most " +
                   std::to_string(IA_PPD_TEXT_SIZE - 2) + " bytes",
               "split its items into several lines, with _1, _2 after the keyword");
}

// Option lines are outside the blocks of options; lines in a block are choices.
[[nodiscard]] OptionLines ReadOptionLines(const Patient& patient, Checkup& checkup) {
  OptionLines lines;
  bool is_in_block = false;
  ForEachLine(patient.ppd, [&](std::string_view line) {
    if (line.starts_with("*OpenUI")) is_in_block = true;
    if (line.starts_with("*CloseUI")) is_in_block = false;
    if (!is_in_block && line.starts_with("*QV")) CheckLine(line, lines, checkup);
  });
  if (is_in_block) {
    checkup.Warn("ppd", "a block of the PPD is not closed: option lines after it are not read",
                 "add the missing *CloseUI line");
  }
  return lines;
}

void CheckRepetitions(const OptionLines& lines, Checkup& checkup) {
  for (const auto& [key, count] : lines.counts) {
    if (count < 2) continue;
    checkup.Warn(
        "ppd",
        "the PPD has " + std::to_string(count) + " lines of " + key + "; only the last one is used",
        "keep one line of " + key);
  }
}

[[nodiscard]] std::size_t CountRows(const char* model_code) {
  std::size_t rows = 0;
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    rows += Analyze_Provenance_FindModelRow(family, model_code) != IA_OTHER_MODELS ? 1 : 0;
  }
  return rows;
}

void CheckModelCode(const Patient& patient, Checkup& checkup) {
  const char* const code = patient.ppd_reader->driver_name;
  if (code == nullptr || *code == '\0') {
    checkup.Warn("ppd",
                 std::string("the PPD has no model code (") + kModelCode +
                     "), so the common handlers decide for every option",
                 "take the PPD of this model's driver, or add a line *" + std::string(kModelCode) +
                     ": \"CODE\"");
    return;
  }
  const std::size_t rows = CountRows(code);
  const std::string model = std::string("model code ") + code;
  if (rows > 0) {
    checkup.Ok("ppd", model + " has rows of its own for " + CountOf(rows, "option"));
  } else {
    checkup.Note("ppd", model + " is in no model table: the common handlers decide");
  }
}

}  // namespace

void CheckQueue(Patient& patient, Checkup& checkup) {
  if (!FetchPpd(patient, checkup)) return;
  CheckHead(patient, checkup);
  const OptionLines lines = ReadOptionLines(patient, checkup);
  patient.ppd_reader.reset(
      Analyze_Create(&patient.no_library, patient.location.queue.c_str(), nullptr));
  if (!patient.ppd_reader) {
    checkup.Fail("ppd", "the PPD has no option lines of the driver (\"*QV\")",
                 "give the queue the PPD of the driver package instead of a generic one");
    return;
  }
  checkup.Ok("ppd", "the PPD has " + CountOf(lines.counts.size(), "keyword") + " of the driver");
  CheckRepetitions(lines, checkup);
  CheckModelCode(patient, checkup);
}

}  // namespace ia::cli
