// The input of calibration: an analyser with a model, and a job's options.
#ifndef BENCH_SAMPLE_JOB_H_
#define BENCH_SAMPLE_JOB_H_

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

#include "info_analyze/calibration.h"
#include "info_analyze/option_table.h"

namespace ia_bench {

class SampleJob {
 public:
  // Of so many options; the last ones are those that are read, so that nothing is found early.
  SampleJob(std::string model, std::int64_t options) : model_(std::move(model)) {
    context_.driver_name = model_.data();
    for (const auto& [key, value] :
         {std::pair{"Resolution", "1200x600dpi"}, std::pair{"QVHTPattern9", "124"},
          std::pair{"QVHalftone", "pattern9"}, std::pair{"QVColorMode", "mono"}}) {
      info_common_optlist_additem_front(&options_, key, value);
    }
    for (std::int64_t i = 4; i < options; ++i) Prepend("QVOther" + std::to_string(i));
  }
  ~SampleJob() { info_common_optlist_destroy(options_); }
  SampleJob(const SampleJob&) = delete;
  SampleJob& operator=(const SampleJob&) = delete;

  [[nodiscard]] const OptTable* options() const { return options_; }

  void CreateDefaults() const {
    Calib3Info info = {};
    Analyze_Info_CreateDefault_Calib3Info(&context_, options_, &info);
    if (info.first_set == nullptr || info.second_set == nullptr) std::abort();
    std::free(info.first_set);
    std::free(info.second_set);
  }

  void GetSettings() const {
    std::uint32_t flag = 0;
    std::uint32_t x_dpi = 0;
    std::uint32_t y_dpi = 0;
    std::uint32_t words[IA_CALIB4_WORD_COUNT] = {};
    Analyze_Info_GetCalib4Settings(&context_, options_, &flag, &x_dpi, &y_dpi, words);
    if (x_dpi != 1200) std::abort();
  }

 private:
  // Without the search for the key that the library's insertion makes.
  void Prepend(const std::string& key) {
    OptTable* rest = std::exchange(options_, nullptr);
    info_common_optlist_additem_front(&options_, key.c_str(), "value");
    options_->next = rest;
  }

  std::string model_;
  AnalyzeContext context_ = {};
  OptTable* options_ = nullptr;
};

}  // namespace ia_bench

#endif  // BENCH_SAMPLE_JOB_H_
