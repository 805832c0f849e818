// The doctor's checks of the queue and of the lines of its PPD that the library reads.
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
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

// "the snapshot DIR", "the CUPS root DIR" or "CUPS".
[[nodiscard]] std::string SourceOf(const PrinterLocation& location) {
  if (!location.snapshot.empty()) return "the snapshot " + location.snapshot;
  return location.cups_root.empty() ? "CUPS" : "the CUPS root " + location.cups_root;
}

void Fail(const std::string& check, const Failure& failure, Checkup& checkup) {
  FailureParts parts = failure.parts();
  parts.hint.clear();
  checkup.Fail(check, MessageOf(parts), failure.parts().hint);
}

// False when there is no PPD.
[[nodiscard]] bool TakePpd(Patient& patient, Checkup& checkup) {
  try {
    patient.ppd = std::make_unique<const CopiedPpd>(patient.location);
  } catch (const Failure& failure) {
    Fail("queue", failure, checkup);
    return false;
  }
  patient.ppd_options = ParsePpdOptions(patient.ppd->text());
  checkup.Ok("queue", "queue " + patient.location.queue + " has a PPD of " +
                          CountOf(patient.ppd->text().size(), "byte") + " in " +
                          SourceOf(patient.location));
  if (!patient.location.snapshot.empty()) {
    checkup.Note("queue", "this is a snapshot: the queue and its printer may differ from it now");
  }
  return true;
}

void CheckHead(const Patient& patient, Checkup& checkup) {
  if (patient.ppd->text().starts_with("*PPD-Adobe:")) return;
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
               "split its items into several lines, with _1, _2 after the keyword",
               {.group = "long line", .object = "*" + text.substr(0, 40)});
}

// Option lines are outside the blocks of options; lines in a block are choices.
[[nodiscard]] OptionLines ReadOptionLines(const Patient& patient, Checkup& checkup) {
  OptionLines lines;
  bool is_in_block = false;
  ForEachLine(patient.ppd->text(), [&](std::string_view line) {
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
        "keep one line of " + key, {.group = "repeated line", .object = key});
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
  if (!TakePpd(patient, checkup)) return;
  CheckHead(patient, checkup);
  const OptionLines lines = ReadOptionLines(patient, checkup);
  try {
    patient.ppd_reader = patient.ppd->CreateAnalyzer(&patient.no_library, "");
  } catch (const Failure& failure) {
    return Fail("ppd", failure, checkup);
  }
  checkup.Ok("ppd", "the PPD has " + CountOf(lines.counts.size(), "keyword") + " of the driver");
  CheckRepetitions(lines, checkup);
  CheckModelCode(patient, checkup);
}

}  // namespace ia::cli
