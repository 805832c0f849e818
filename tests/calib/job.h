// Arguments of calibration calls: an analyser that knows its model, and a job's options.
#ifndef TESTS_CALIB_JOB_H_
#define TESTS_CALIB_JOB_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/analyzer.h"
#include "info_common/ascii.h"
#include "tests/support/option_lists.h"

namespace ia_test {

class Analyser {
 public:
  explicit Analyser(std::string model) : model_(std::move(model)) {
    context_.driver_name = model_.data();
  }
  Analyser(const Analyser&) = delete;
  Analyser& operator=(const Analyser&) = delete;

  const AnalyzeContext* context() const { return &context_; }

 private:
  std::string model_;
  AnalyzeContext context_ = {};
};

inline constexpr AnalyzeContext kWithoutModel = {};

class Job {
 public:
  explicit Job(Entries options = {}) {
    options.insert(options.begin(), {"QVOther", "Normal"});
    table_ = NewTable(options);
  }
  ~Job() { info_common_optlist_destroy(table_); }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  const OptTable* options() const { return table_; }

 private:
  OptTable* table_ = nullptr;
};

// Model codes that a row of this model serves.
inline std::vector<std::string> CodesThatBeginWith(const std::string& model) {
  return {model, model + "-JP", model + "-MLT-JP", model + "0"};
}

// Model codes that are near and that no row serves.
inline std::vector<std::string> CodesNear(const std::string& model) {
  std::string lower_case = model;
  std::ranges::transform(lower_case, lower_case.begin(), ia::ToLower);
  std::string other_last = model;
  other_last.back() = '#';
  std::vector<std::string> codes = {lower_case, " " + model, "", "R"};
  // Its neighbours are served by the row of RB-X6.
  if (model != "RB-X6-2")
    codes.insert(codes.end(), {model.substr(0, model.size() - 1), other_last});
  return codes;
}

// Rows of parametrised tests are known by their models.
template <class Row>
std::string ModelName(const testing::TestParamInfo<Row>& info) {
  std::string name = info.param.model;
  std::ranges::replace(name, '-', '_');
  return name;
}

}  // namespace ia_test

#endif  // TESTS_CALIB_JOB_H_
