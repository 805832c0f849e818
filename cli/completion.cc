// The verb "completion": scripts that complete command lines, made from the options that the verbs
// define.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "cli/terminal/output.h"
#include "cli/terminal/shell_quoting.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

// A place on the command line: the words after the program's name that are verbs.
struct Place {
  std::string path;  // "/calibration/settings"
  std::vector<std::string> words;
};

enum class ValueType { kFolder, kFile, kWords, kOther };

struct OptionValue {
  std::string path;    // of the verb
  std::string option;  // "--format"
  ValueType type;
  std::vector<std::string> words;
};

struct Tree {
  std::vector<Place> places;
  std::vector<OptionValue> values;
};

// CLI11 names the accepted values after the type: "FORMAT:{text,json}".
[[nodiscard]] std::vector<std::string> CheckedWords(const std::string& type_name) {
  const std::size_t open = type_name.find('{');
  const std::size_t close = type_name.find('}');
  if (open == std::string::npos || close == std::string::npos) return {};
  return CLI::detail::split(type_name.substr(open + 1, close - open - 1), ',');
}

[[nodiscard]] ValueType TypeOf(const std::string& type) {
  if (!CheckedWords(type).empty()) return ValueType::kWords;
  if (type.starts_with("DIR")) return ValueType::kFolder;
  const bool is_file = type.starts_with("FILE") || type.starts_with("PATH");
  return is_file ? ValueType::kFile : ValueType::kOther;
}

void AddOptions(const CLI::App& verb, Place& place, Tree& tree) {
  for (const CLI::Option* const option : verb.get_options()) {
    const std::string type = option->get_type_name();
    if (option->get_positional()) {
      std::ranges::copy(CheckedWords(type), std::back_inserter(place.words));
    }
    for (const std::string& name : option->get_lnames()) {
      place.words.push_back("--" + name);
      if (option->get_items_expected_max() < 1) continue;
      tree.values.push_back({.path = place.path,
                             .option = "--" + name,
                             .type = TypeOf(type),
                             .words = CheckedWords(type)});
    }
  }
}

void AddPlaces(const CLI::App& verb, const std::string& path, Tree& tree) {
  Place place = {path, {}};
  const auto subverbs = verb.get_subcommands([](const CLI::App*) { return true; });
  for (const CLI::App* const subverb : subverbs) place.words.push_back(subverb->get_name());
  AddOptions(verb, place, tree);
  tree.places.push_back(place);
  for (const CLI::App* const subverb : subverbs) {
    AddPlaces(*subverb, path + "/" + subverb->get_name(), tree);
  }
}

[[nodiscard]] std::string Join(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + QuoteForShell(word);
  return text;
}

// What a shell does for each type of word.
struct Shell {
  const char* name;
  const char* head;  // up to the walk along the verbs
  const char* word_array;
  const char* folders;
  const char* files;
  const char* words_before;
  const char* words_after;
  const char* tail;
};

constexpr Shell kBash = {
    .name = "bash",
    .head =
        "# Completion of info-analyze for bash; made by info-analyze completion bash.\n"
        "_info_analyze() {\n"
        "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} place= i\n"
        "  for ((i = 1; i < COMP_CWORD; i++)); do\n",
    .word_array = "COMP_WORDS",
    .folders = "mapfile -t COMPREPLY < <(compgen -d -- \"$cur\")",
    .files = "mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")",
    .words_before = "mapfile -t COMPREPLY < <(compgen -W '",
    .words_after = "' -- \"$cur\")",
    .tail = "}\ncomplete -o filenames -o default -F _info_analyze info-analyze\n",
};

constexpr Shell kZsh = {
    .name = "zsh",
    .head =
        "#compdef info-analyze\n"
        "# Completion of info-analyze for zsh; made by info-analyze completion zsh.\n"
        "_info-analyze() {\n"
        "  local prev=${words[CURRENT-1]} place= i\n"
        "  for ((i = 2; i < CURRENT; i++)); do\n",
    .word_array = "words",
    .folders = "_files -/",
    .files = "_files",
    .words_before = "compadd -- ",
    .words_after = " || _files",
    .tail =
        "}\n"
        "if [[ ${funcstack[1]} == _info-analyze ]]; then\n"
        "  _info-analyze \"$@\"\n"
        "else\n"
        "  compdef _info-analyze info-analyze\n"
        "fi\n",
};

[[nodiscard]] std::string CompleteWords(const Shell& shell, const std::vector<std::string>& words) {
  return shell.words_before + Join(words) + shell.words_after;
}

[[nodiscard]] std::string CompleteValue(const Shell& shell, const OptionValue& value) {
  switch (value.type) {
    case ValueType::kFolder:
      return shell.folders;
    case ValueType::kFile:
      return shell.files;
    case ValueType::kWords:
      return CompleteWords(shell, value.words);
    default:
      return ":";
  }
}

// Options' values come first: a value may read like a verb.
[[nodiscard]] std::string WriteScript(const Shell& shell, const Tree& tree) {
  std::string text = shell.head;
  text += std::string("    case \"$place/${") + shell.word_array + "[i]}\" in\n      ";
  std::string paths;
  for (const Place& place : tree.places) {
    if (!place.path.empty()) paths += (paths.empty() ? "" : "|") + place.path;
  }
  text += paths + ") place+=/${" + shell.word_array + "[i]} ;;\n    esac\n  done\n";
  text += "  case \"$place $prev\" in\n";
  for (const OptionValue& value : tree.values) {
    text += "    '" + value.path + " " + value.option + "') " + CompleteValue(shell, value) +
            "; return ;;\n";
  }
  text += "  esac\n  case \"$place\" in\n";
  for (const Place& place : tree.places) {
    text += "    " + (place.path.empty() ? "''" : place.path) + ") " +
            CompleteWords(shell, place.words) + " ;;\n";
  }
  return text + "  esac\n" + shell.tail;
}

void WriteCompletion(const CLI::App& tool, const std::string& shell) {
  Tree tree;
  AddPlaces(tool, "", tree);
  WriteAnswer(WriteScript(shell == kZsh.name ? kZsh : kBash, tree));
}

}  // namespace

void DefineCompletion(CLI::App& verb) {
  const auto shell = std::make_shared<std::string>();
  verb.add_option("SHELL", *shell, "Shell that is to complete")
      ->required()
      ->check(CLI::IsMember({kBash.name, kZsh.name}));
  verb.footer(
      "Examples:\n"
      "  source <(info-analyze completion bash)\n"
      "  info-analyze completion zsh > ~/.zfunc/_info-analyze");
  verb.callback([&verb, shell] { WriteCompletion(*verb.get_parent(), *shell); });
}

}  // namespace ia::cli
