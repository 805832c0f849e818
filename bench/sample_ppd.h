// PPDs of the sample printer: its lines for the analyser and a given number of further entries,
// amid some 2,500 lines of ordinary options.
#ifndef BENCH_SAMPLE_PPD_H_
#define BENCH_SAMPLE_PPD_H_

#include <cstdint>
#include <filesystem>
#include <string>

namespace ia_bench {

enum class PpdStyle {
  kUniform,  // distinct keys of one width, so that each entry costs the same
  kDriver,   // as drivers write them; see driver_ppd.h
};

class SamplePpd {
 public:
  SamplePpd(std::int64_t entries, PpdStyle style);

  [[nodiscard]] const std::string& queue() const { return queue_; }
  [[nodiscard]] const std::filesystem::path& file() const { return file_; }

 private:
  std::string queue_;
  std::filesystem::path file_;
};

// What the library needs libcups for, made without the library.
void FetchPpd(const SamplePpd& ppd);
void ReadLines(const SamplePpd& ppd);

}  // namespace ia_bench

#endif  // BENCH_SAMPLE_PPD_H_
