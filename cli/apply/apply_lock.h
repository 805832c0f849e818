#ifndef INFO_ANALYZE_CLI_APPLY_APPLY_LOCK_H_
#define INFO_ANALYZE_CLI_APPLY_APPLY_LOCK_H_

#include <chrono>
#include <string>

namespace ia::cli {

// Lets one process at a time change queues.
class ApplyLock {
 public:
  // Waits for another process at most this long; throws a Failure.
  ApplyLock(const std::string& folder, std::chrono::seconds patience);
  ApplyLock(const ApplyLock&) = delete;
  ApplyLock& operator=(const ApplyLock&) = delete;
  ~ApplyLock();

 private:
  int descriptor_;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_APPLY_APPLY_LOCK_H_
