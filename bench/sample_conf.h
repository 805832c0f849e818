// A cache folder with a daemon configuration of a given number of queues, and a search for the
// last.
#ifndef BENCH_SAMPLE_CONF_H_
#define BENCH_SAMPLE_CONF_H_

#include <cstdint>
#include <string>

namespace ia_bench {

class SampleConf {
 public:
  explicit SampleConf(std::int64_t queues);

  [[nodiscard]] std::string folder() const { return folder_; }
  [[nodiscard]] std::string file() const { return folder_ + "/MQPD/mqpd.conf"; }
  [[nodiscard]] const std::string& last_name() const { return last_name_; }
  [[nodiscard]] const std::string& last_uri() const { return last_uri_; }

 private:
  std::string folder_;
  std::string last_name_;
  std::string last_uri_;
};

// These abort when they find something else.
void FindByUri(const SampleConf& conf);
void FindByName(const SampleConf& conf);
void ListQueues(const SampleConf& conf);

}  // namespace ia_bench

#endif  // BENCH_SAMPLE_CONF_H_
