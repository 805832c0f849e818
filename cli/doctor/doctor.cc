#include "cli/doctor/doctor.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/doctor/checkup.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

struct DoctorQuestion {
  PrinterLocation location;
  std::string format = "text";
};

[[nodiscard]] const char* NameOf(Level level) {
  switch (level) {
    case Level::kOk:
      return "ok";
    case Level::kNote:
      return "note";
    case Level::kWarning:
      return "warning";
    case Level::kFailure:
      break;
  }
  return "failure";
}

[[nodiscard]] Colour ColourOf(Level level) {
  if (level == Level::kFailure) return Colour::kRed;
  return level == Level::kWarning ? Colour::kYellow : Colour::kGreen;
}

[[nodiscard]] Level Worst(const Checkup& checkup) {
  if (checkup.Count(Level::kFailure) > 0) return Level::kFailure;
  return checkup.Count(Level::kWarning) > 0 ? Level::kWarning : Level::kOk;
}

[[nodiscard]] std::string TextOf(const Finding& finding) {
  std::string level = NameOf(finding.level);
  level.resize(9, ' ');
  if (finding.level != Level::kNote) level = Coloured(level, ColourOf(finding.level));
  std::string check = finding.check;
  check.resize(11, ' ');
  std::string text = level + check + Printable(finding.FullSentence()) + "\n";
  if (finding.fix.empty()) return text;
  return text + std::string(20, ' ') + "fix: " + Printable(finding.fix) + "\n";
}

[[nodiscard]] std::string FormatCheckup(const Checkup& checkup) {
  std::string text;
  for (const Finding& finding : checkup.findings()) text += TextOf(finding);
  text += CountOf(checkup.Count(Level::kFailure), "failure") + ", " +
          CountOf(checkup.Count(Level::kWarning), "warning") + "\n";
  if (const Finding* const first = checkup.First()) {
    text += "fix first: " + Printable(first->FullSentence()) + "\n";
  }
  return text;
}

[[nodiscard]] Json ToJson(const Finding& finding) {
  return {{"level", NameOf(finding.level)},
          {"check", finding.check},
          {"sentence", finding.FullSentence()},
          {"fix", finding.fix.empty() ? Json(nullptr) : Json(finding.fix)}};
}

[[nodiscard]] std::string CheckupJson(const Checkup& checkup) {
  Json findings = Json::array();
  for (const Finding& finding : checkup.findings()) findings.push_back(ToJson(finding));
  const Finding* const first = checkup.First();
  return DumpJson({{"result", NameOf(Worst(checkup))},
                   {"failures", checkup.Count(Level::kFailure)},
                   {"warnings", checkup.Count(Level::kWarning)},
                   {"fix_first", first != nullptr ? Json(first->FullSentence()) : Json(nullptr)},
                   {"findings", findings}});
}

[[nodiscard]] Checkup Examine(const PrinterLocation& location) {
  Patient patient;
  patient.location = location;
  Checkup checkup;
  CheckQueue(patient, checkup);
  CheckFlags(patient, checkup);
  CheckDriver(patient, checkup);
  CheckDocuments(patient, checkup);
  CheckKeys(patient, checkup);
  CheckValues(patient, checkup);
  return checkup;
}

void Diagnose(const DoctorQuestion& question) {
  const Checkup checkup = Examine(Locate(question.location));
  WriteAnswer(question.format == "json" ? CheckupJson(checkup) : FormatCheckup(checkup));
  switch (Worst(checkup)) {
    case Level::kFailure:
      throw Verdict(ExitStatus::kFailures);
    case Level::kWarning:
      throw Verdict(ExitStatus::kWarnings);
    default:
      break;
  }
}

}  // namespace

void DefineDoctor(CLI::App& verb) {
  const auto question = std::make_shared<DoctorQuestion>();
  AddPrinterOptions(verb, question->location);
  AddFormatOption(verb, question->format);
  verb.footer(
      "Exit status: 0 all is well, 7 warnings, 8 failures.\n"
      "Examples:\n"
      "  info-analyze doctor --queue office");
  verb.callback([question] { Diagnose(*question); });
}

}  // namespace ia::cli
