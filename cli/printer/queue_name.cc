#include "cli/printer/queue_name.h"

#include <strings.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

constexpr std::size_t kMaxLength = 127;

[[nodiscard]] bool IsRefused(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte <= ' ' || byte == 0x7F || byte == '/' || byte == '#';
}

// What CUPS does not accept in the name; empty: nothing.
[[nodiscard]] std::string FaultOf(std::string_view queue) {
  if (queue.empty()) return "is empty";
  if (queue.size() > kMaxLength) {
    return "is longer than " + std::to_string(kMaxLength) + " bytes";
  }
  if (std::ranges::none_of(queue, IsRefused)) return "";
  return "contains a blank, a control character, \"/\" or \"#\"";
}

}  // namespace

void RequireQueueName(const std::string& queue) {
  const std::string fault = FaultOf(queue);
  if (fault.empty()) return;
  throw Failure(ExitStatus::kQueue, {.object = "not the name of a queue: \"" + queue + "\"",
                                     .cause = "CUPS refuses a name that " + fault,
                                     .hint = "list the queues with `info-analyze queues cups`"});
}

bool IsSameQueue(const std::string& left, const std::string& right) {
  return strcasecmp(left.c_str(), right.c_str()) == 0;
}

}  // namespace ia::cli
