#include "cli/calibration/job_options.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>
#include <vector>

namespace ia::cli {
namespace {

[[nodiscard]] std::string CheckOption(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals != std::string::npos && equals > 0) return "";
  return "KEY=VALUE wanted, not \"" + text + "\"";
}

}  // namespace

void AddJobOptions(CLI::App& verb, std::vector<std::string>& texts) {
  verb.add_option("-o,--option", texts, "Print option of the job, ahead of that of the PPD")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false)
      ->check(CLI::Validator(CheckOption, ""));
}

JobOptions::JobOptions(const std::vector<std::string>& texts, OptTable* of_ppd) : head_(of_ppd) {
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    chosen_.emplace_back(text.substr(0, equals), text.substr(equals + 1));
  }
  nodes_.reserve(chosen_.size());  // nodes point to each other
  for (auto& [key, value] : chosen_) {
    head_ = &nodes_.emplace_back(OptTable{key.data(), value.data(), head_});
  }
}

}  // namespace ia::cli
