// Lists of print queues.
#include "queue/queue_list.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <span>
#include <string_view>

#include "info_common/owned.h"
#include "info_common/paths.h"

static_assert(offsetof(QueueRecord, name) == 0 &&
              offsetof(QueueRecord, modification_time) == sizeof(char*));
static_assert(offsetof(QueueList, count) == 0 && offsetof(QueueList, records) == sizeof(char*));

namespace ia {
namespace {

constexpr char kPpdFolder[] = "/etc/cups/ppd";
constexpr std::string_view kPpdSuffix = ".ppd";

struct ListDeleter {
  void operator()(QueueList* list) const noexcept { CupsQueueList_Terminate(list); }
};
using OwnedList = std::unique_ptr<QueueList, ListDeleter>;

// An empty list with memory for this many queues.
OwnedList NewList(std::size_t capacity) noexcept {
  OwnedList list(NewZeroed<QueueList>().release());
  if (!list || capacity == 0) return list;
  list->records = static_cast<QueueRecord*>(std::calloc(capacity, sizeof(QueueRecord)));
  if (list->records == nullptr) list.reset();
  return list;
}

class FolderEntries {
 public:
  // None when the folder cannot be read.
  explicit FolderEntries(const char* folder) noexcept
      : count_(scandir(folder, &entries_, nullptr, nullptr)) {}
  FolderEntries(const FolderEntries&) = delete;
  FolderEntries& operator=(const FolderEntries&) = delete;
  ~FolderEntries() {
    for (dirent* const entry : all()) std::free(entry);
    if (count_ >= 0) std::free(static_cast<void*>(entries_));
  }

  [[nodiscard]] std::span<dirent* const> all() const noexcept {
    return {entries_, static_cast<std::size_t>(std::max(count_, 0))};
  }

 private:
  dirent** entries_ = nullptr;
  int count_;
};

bool IsPpd(std::string_view file_name) noexcept {
  return file_name.size() > kPpdSuffix.size() && file_name.ends_with(kPpdSuffix);
}

// 0 when stat() fails, such as for a file that was removed meanwhile.
std::int32_t ModificationTime(const char* path) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  struct stat status = {};
  if (stat(path, &status) != 0) return 0;
  return static_cast<std::int32_t>(
      std::clamp<decltype(status.st_mtime)>(status.st_mtime, Limits::min(), Limits::max()));
}

bool AddPpd(QueueList& list, std::string_view folder, std::string_view file_name) noexcept {
  const CString path = MakePath({folder, "/", file_name});
  file_name.remove_suffix(kPpdSuffix.size());
  CString name = path ? Duplicate(file_name) : nullptr;
  if (!name) return false;
  list.records[list.count++] = {name.release(), ModificationTime(path.get())};
  return true;
}

}  // namespace

QueueList* NewCupsQueueList(const char* ppd_folder) noexcept {
  const FolderEntries entries(ppd_folder);
  const auto is_ppd = [](const dirent* entry) { return IsPpd(entry->d_name); };
  OwnedList list = NewList(static_cast<std::size_t>(std::ranges::count_if(entries.all(), is_ppd)));
  if (!list) return nullptr;
  for (const dirent* const entry : entries.all()) {
    if (is_ppd(entry) && !AddPpd(*list, ppd_folder, entry->d_name)) return nullptr;
  }
  return list.release();
}

}  // namespace ia

QueueList* CupsQueueList_Initialize(int32_t* count) noexcept {
  if (count != nullptr) *count = 0;
  QueueList* const list = ia::NewCupsQueueList(ia::kPpdFolder);
  if (list != nullptr && count != nullptr) *count = list->count;
  return list;
}

QueueList* MqpdQueueList_Initialize(FolderConf* conf, int32_t* count) noexcept {
  if (count != nullptr) *count = 0;
  if (conf == nullptr || conf->text == nullptr || count == nullptr) return nullptr;
  char* const end = conf->text + conf->length;
  const int32_t queues = zGetQueueCount(conf->text, end);
  ia::OwnedList list = ia::NewList(static_cast<std::size_t>(queues));
  if (!list) return nullptr;
  char* next = conf->text;
  for (; list->count < queues; ++list->count) {
    if (zGetFirstQueueName(next, end, &next, &list->records[list->count].name) == 0) return nullptr;
  }
  *count = queues;
  return list.release();
}

void CupsQueueList_Terminate(QueueList* list) noexcept {
  if (list == nullptr) return;
  for (int32_t i = 0; i < list->count; ++i) std::free(list->records[i].name);
  std::free(list->records);
  std::free(list);
}

void MqpdQueueList_Terminate(QueueList* list) noexcept { CupsQueueList_Terminate(list); }

const char* CupsQueueList_GetQueueName(const QueueList* list, int32_t index) noexcept {
  if (list == nullptr || index < 0 || index >= list->count) return nullptr;
  return list->records[index].name;
}

int32_t CupsQueueList_GetQueueModifyTimeStamp(const QueueList* list, int32_t index) noexcept {
  if (list == nullptr || index < 0 || index >= list->count) return 0;
  return list->records[index].modification_time;
}
