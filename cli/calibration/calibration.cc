#include "cli/calibration/calibration.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <ios>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/calibration/calibration_answers.h"
#include "cli/calibration/curve_tables.h"
#include "cli/calibration/job_options.h"
#include "cli/printer/session.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"

namespace ia::cli {
namespace {

struct JobQuestion {
  PrinterLocation location;
  std::vector<std::string> options;
  std::string format = "text";
};

template <auto kGet>
void Answer(const JobQuestion& question) {
  const PrinterLocation location = Locate(question.location);
  const Session session = OpenSession(location);
  const JobOptions job(question.options, session.analyzer->ppd_options);
  const auto answer = kGet(*session.analyzer, job.table());
  WriteAnswer(question.format == "json" ? FormatJson(answer) : FormatText(answer));
}

template <auto kGet>
void DefineJobQuestion(CLI::App& verb) {
  const auto question = std::make_shared<JobQuestion>();
  AddQueueOptions(verb, question->location);
  AddJobOptions(verb, question->options);
  AddFormatOption(verb, question->format);
  verb.footer("Examples:\n  info-analyze calibration " + verb.get_name() +
              " --queue office \\\n"
              "      --driver-folder /usr/lib/driver --option QVGradation=High2");
  verb.callback([question] { Answer<kGet>(*question); });
}

struct CurvesQuestion {
  std::string table = CurveTables().front().name;
  std::string svg_file;
  bool is_csv = false;
};

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  if (file) return;
  throw Failure(ExitStatus::kOther, {.object = path, .cause = std::strerror(errno)});
}

void ShowCurves(const CurvesQuestion& question) {
  const CurveTable& table = FindCurveTable(question.table);
  if (question.is_csv) {
    WriteAnswer(FormatCsv(table));
  } else if (!question.svg_file.empty()) {
    WriteFile(question.svg_file, FormatSvg(table));
  } else {
    throw CLI::RequiredError("--svg or --csv");
  }
}

[[nodiscard]] std::vector<std::string> TableNames() {
  std::vector<std::string> names;
  for (const CurveTable& table : CurveTables()) names.emplace_back(table.name);
  return names;
}

void DefineCurves(CLI::App& verb) {
  const auto question = std::make_shared<CurvesQuestion>();
  verb.add_option("--table", question->table, "Name of the table")
      ->check(CLI::IsMember(TableNames()))
      ->type_name("NAME")
      ->capture_default_str();
  CLI::Option* const svg =
      verb.add_option("--svg", question->svg_file, "Draw the curves into this file, in SVG")
          ->type_name("FILE");
  verb.add_flag("--csv", question->is_csv, "Print the values, one line for each input level")
      ->excludes(svg);
  verb.footer(
      "Examples:\n"
      "  info-analyze calibration curves --svg curves.svg\n"
      "  info-analyze calibration curves --table Linden_Def_Calib_4bit --csv");
  verb.callback([question] { ShowCurves(*question); });
}

}  // namespace

void DefineCalibration(CLI::App& verb) {
  verb.require_subcommand(1);
  verb.footer("Examples:\n  info-analyze calibration curves --svg curves.svg");
  DefineJobQuestion<GetSettings>(
      *verb.add_subcommand("settings", "Print the calibration settings of a print job"));
  DefineJobQuestion<GetDefaults>(
      *verb.add_subcommand("defaults", "Print the default calibration data of a model"));
  DefineCurves(*verb.add_subcommand("curves", "Show the default curves"));
}

}  // namespace ia::cli
