#ifndef INFO_ANALYZE_CLI_PRINTER_WORKER_POOL_H_
#define INFO_ANALYZE_CLI_PRINTER_WORKER_POOL_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace ia::cli {

struct WorkerLimits {
  int workers;                   // processes, at least one
  std::chrono::seconds seconds;  // for each task
  std::size_t memory;            // address space of each worker, in bytes; 0: no limit
};

// How a task ended.
struct TaskResult {
  std::string answer;  // when nothing below is set
  std::string fault;   // why there is none: "it was ended by SIGSEGV"
};

// What a worker does with one task. Standard output and standard error lead nowhere, because
// libraries print to them.
using Work = std::function<std::string(const std::string& task)>;

// The next task; nothing: there are no more.
using NextTask = std::function<std::optional<std::string>()>;

// Called in this process, in the order of the tasks.
using UseResult = std::function<void(const std::string& task, const TaskResult& result)>;

// Does tasks in worker processes; each does one at a time and many in turn. A task whose
// worker crashes, hangs or uses too much memory costs no other: a worker that crashes after other
// tasks may do so because of them, so its task is tried again in a new worker. Reads only a few
// tasks ahead of the results that were used.
void RunInWorkers(const WorkerLimits& limits, const Work& work, const NextTask& next_task,
                  const UseResult& use_result);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_WORKER_POOL_H_
