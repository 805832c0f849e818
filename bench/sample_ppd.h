// PPDs like those of drivers: the sample printer's lines for the analyser and a given number of
// further entries, amid some 2,500 lines of ordinary options.
#ifndef BENCH_SAMPLE_PPD_H_
#define BENCH_SAMPLE_PPD_H_

#include <cstdint>
#include <filesystem>
#include <string>

namespace ia_bench {

class SamplePpd {
 public:
  explicit SamplePpd(std::int64_t entries);

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
