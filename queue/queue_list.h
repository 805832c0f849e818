// The spooler's queues in any folder.
#ifndef QUEUE_QUEUE_LIST_H_
#define QUEUE_QUEUE_LIST_H_

#include "info_analyze/queue_list.h"

namespace ia {

// As CupsQueueList_Initialize(), for the PPDs of this folder.
[[nodiscard]] QueueList* NewCupsQueueList(const char* ppd_folder) noexcept;

}  // namespace ia

#endif  // QUEUE_QUEUE_LIST_H_
