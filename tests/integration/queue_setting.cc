#include "tests/integration/queue_setting.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <set>
#include <string>

#include "tests/integration/call_faults.h"

namespace ia_test {

const char kConf[] =
    "# Queues of the printer daemon\n"
    "<Printer office>\n"
    "DevicePath net:192.0.2.10/PDLType=kappa2\n"
    "State Idle\n"
    "</Printer>\n"
    "<Printer lobby>\n"
    "DevicePath usb://Vorel/X1/PDLType=kappa2\n"
    "State Idle\n"
    "</Printer>\n";

const QueueSetting& QueueSetting::Get() {
  static const QueueSetting setting;
  return setting;
}

QueueSetting::QueueSetting() {
  root_.Write(kConfPath + 1, kConf);
  const timespec times[2] = {{7, 0}, {7, 0}};
  for (const char* file : {"etc/cups/ppd/a.ppd", "etc/cups/ppd/office.ppd"}) {
    root_.Write(file, "");
    utimensat(AT_FDCWD, (root_ / file).c_str(), times, 0);
  }
  root_.Write("etc/cups/ppd/notes.txt", "");
  Use();
}

void QueueSetting::Use() const { CallFaults::Instance().SetRoot(root_.path()); }

std::string TakeShown(QueueList* list) {
  if (list == nullptr) return "(none)";
  std::set<std::string> queues;
  for (int32_t i = 0; i < list->count; ++i) {
    const int32_t time = CupsQueueList_GetQueueModifyTimeStamp(list, i);
    queues.insert(CupsQueueList_GetQueueName(list, i) +
                  (time != 0 ? "@" + std::to_string(time) : ""));
  }
  CupsQueueList_Terminate(list);
  std::string shown;
  for (const std::string& queue : queues) shown += (shown.empty() ? "" : " ") + queue;
  return shown;
}

}  // namespace ia_test
