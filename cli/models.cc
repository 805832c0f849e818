// The verb "models": the model tables, as text, JSON and Markdown.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/provenance/provenance.h"
#include "cli/terminal/output.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

struct Family {
  std::string option;
  std::vector<Row> rows;  // in table order; that of other models is the last
};

using Matrix = std::vector<Family>;

// All rows, or those that one model code selects.
[[nodiscard]] Matrix ReadMatrix(const std::string& model_code) {
  Matrix matrix;
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    matrix.push_back(
        {OptionOfFamily(family),
         model_code.empty() ? RowsOf(family) : std::vector{FindRow(family, model_code.c_str())}});
  }
  return matrix;
}

[[nodiscard]] std::string HandlerOf(const Row& row) {
  return row.handler != nullptr ? row.handler : "-";
}

[[nodiscard]] std::string InputsText(const Row& row) {
  std::string text;
  for (const InputKey* const input : row.inputs) {
    text += (text.empty() ? "" : ", ") + Describe(*input);
  }
  return text.empty() ? "-" : text;
}

// Option, model, handler and what it reads, with tabs between them.
[[nodiscard]] std::string MatrixText(const Matrix& matrix) {
  std::string text;
  for (const Family& family : matrix) {
    for (const Row& row : family.rows) {
      text += family.option + "\t" + PatternOf(row) + "\t" + HandlerOf(row) + "\t" +
              InputsText(row) + "\n";
    }
  }
  return text;
}

[[nodiscard]] Json RowJson(const Row& row) {
  const bool is_other = *row.code == '\0';
  Json inputs = Json::array();
  for (const InputKey* const input : row.inputs) inputs.push_back(ToJson(*input));
  return {{"code", is_other ? Json(nullptr) : Json(row.code)},
          {"match", is_other ? "other models" : (row.whole_code != 0 ? "whole" : "prefix")},
          {"handler", row.handler != nullptr ? Json(row.handler) : Json(nullptr)},
          {"inputs", inputs}};
}

[[nodiscard]] std::string MatrixJson(const Matrix& matrix) {
  Json families = Json::array();
  for (const Family& family : matrix) {
    Json rows = Json::array();
    for (const Row& row : family.rows) rows.push_back(RowJson(row));
    families.push_back({{"option", family.option}, {"rows", rows}});
  }
  return DumpJson({{"families", families}});
}

using Cells = std::vector<std::string>;

[[nodiscard]] std::string MarkdownRow(const Cells& cells) {
  std::string line = "|";
  for (const std::string& cell : cells) line += " " + cell + " |";
  return line + "\n";
}

[[nodiscard]] std::string MarkdownHead(const Cells& cells) {
  std::string line = MarkdownRow(cells) + "|";
  for (std::size_t i = 0; i < cells.size(); ++i) line += "---|";
  return line + "\n";
}

[[nodiscard]] std::string Code(const std::string& text) {
  return text == "-" ? text : "`" + text + "`";
}

// The common prefix of all handlers' names is left out of a table of them.
[[nodiscard]] std::string ShortName(const std::string& handler) {
  constexpr std::string_view kPrefix = "analyze_Get";
  return handler.starts_with(kPrefix) ? handler.substr(kPrefix.size()) : handler;
}

[[nodiscard]] std::set<std::string> CodesOf(const Matrix& matrix) {
  std::set<std::string> codes;
  for (const Family& family : matrix) {
    for (const Row& row : family.rows) {
      if (*row.code != '\0') codes.insert(row.code);
    }
  }
  return codes;
}

[[nodiscard]] std::string ModelLine(const std::string& title, const char* code) {
  Cells cells = {title};
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    cells.push_back(Code(ShortName(HandlerOf(FindRow(family, code)))));
  }
  return MarkdownRow(cells);
}

[[nodiscard]] std::string ModelsMarkdown(const Matrix& matrix) {
  Cells head = {"Model code"};
  for (const Family& family : matrix) head.push_back(family.option);
  std::string text = MarkdownHead(head);
  for (const std::string& code : CodesOf(matrix)) text += ModelLine(Code(code), code.c_str());
  return text + ModelLine("other models", nullptr);
}

[[nodiscard]] std::string FamilyMarkdown(const Family& family) {
  std::string text =
      "\n## " + family.option + "\n\n" + MarkdownHead({"Model codes", "Handler", "Inputs"});
  for (const Row& row : family.rows) {
    const std::string pattern = PatternOf(row);
    text += MarkdownRow({*row.code == '\0' ? "other models" : Code(pattern), Code(HandlerOf(row)),
                         InputsText(row)});
  }
  return text;
}

[[nodiscard]] std::string MatrixMarkdown(const Matrix& matrix) {
  std::string text =
      "# Models\n\n"
      "Made by `info-analyze models --format markdown` from the tables by which the library\n"
      "decides; a test keeps it so.\n\n"
      "## Handlers by model\n\n"
      "The function that decides each option for the models whose code begins with the one that "
      "is\n"
      "named, without the `analyze_Get` of its name; \"-\" where there is none.\n\n" +
      ModelsMarkdown(matrix);
  for (const Family& family : matrix) text += FamilyMarkdown(family);
  return text;
}

struct MatrixFormat {
  const char* name;
  std::string (*write)(const Matrix& matrix);
};

constexpr auto kFormats = std::to_array<MatrixFormat>({
    {"text", MatrixText},
    {"json", MatrixJson},
    {"markdown", MatrixMarkdown},
});

struct ModelsQuestion {
  std::string model_code;
  std::string format = "text";
};

void ShowModels(const ModelsQuestion& question) {
  const auto* const format = std::ranges::find(kFormats, question.format, &MatrixFormat::name);
  WriteAnswer(format->write(ReadMatrix(question.model_code)));
}

}  // namespace

void DefineModels(CLI::App& verb) {
  const auto question = std::make_shared<ModelsQuestion>();
  std::vector<std::string> names;
  names.reserve(kFormats.size());
  for (const MatrixFormat& format : kFormats) names.emplace_back(format.name);
  verb.add_option("CODE", question->model_code, "Only the rows that this model code selects");
  verb.add_option("--format", question->format, "Format of the answer")
      ->check(CLI::IsMember(names))
      ->type_name("FORMAT")
      ->capture_default_str();
  verb.footer(
      "Examples:\n"
      "  info-analyze models\n"
      "  info-analyze models RA-H5-MLT-JP\n"
      "  info-analyze models --format markdown > docs/models.md");
  verb.callback([question] { ShowModels(*question); });
}

}  // namespace ia::cli
