// The daemon's configuration in any cache folder.
#ifndef QUEUE_MQPD_CONF_H_
#define QUEUE_MQPD_CONF_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "info_analyze/mqpd_conf.h"
#include "info_common/owned.h"

namespace ia {

// A larger configuration is refused; smaller lengths fit signed and unsigned 32-bit numbers.
inline constexpr std::size_t kLargestConfBuffer = std::size_t{1} << 31;

// The data read from a stream.
struct StreamData {
  CString bytes;  // null when they do not fit in memory, or in a buffer of the largest size
  std::uint32_t length = 0;
  std::int32_t error = 0;  // that of the stream
};

[[nodiscard]] StreamData ReadToEnd(std::FILE* stream,
                                   std::size_t largest_buffer = kLargestConfBuffer) noexcept;

// As FolderPathForConf_Initialize() and MqpdUriToQueueName(), for the configuration in this cache
// folder.
[[nodiscard]] FolderConf* NewConf(std::string_view cache_folder) noexcept;
[[nodiscard]] std::int32_t FindQueueOfUri(std::string_view cache_folder, std::string_view uri,
                                          char** queue_name) noexcept;

}  // namespace ia

#endif  // QUEUE_MQPD_CONF_H_
