// The spooler's and the daemon's queues where the library looks for them, under a root of the
// test's own.
#ifndef TESTS_INTEGRATION_QUEUE_SETTING_H_
#define TESTS_INTEGRATION_QUEUE_SETTING_H_

#include <string>

#include "info_analyze/info_analyze.h"
#include "tests/support/temp_folder.h"

namespace ia_test {

inline constexpr char kDriverFolder[] = "/Library/Printers/Vorel/CUPSKAPPA2";
inline constexpr char kConfPath[] = "/var/cache/Vorel/CUPSKAPPA2/MQPD/mqpd.conf";
inline constexpr char kDeviceUri[] = "usb://Vorel/X1/PDLType=kappa2";

// Long enough for the buffer to grow several times. "office" and "lobby" are its queues; the second
// has the device URI.
extern const char kConf[];

class QueueSetting {
 public:
  static const QueueSetting& Get();

  // Leads the library's fixed paths here, as they are led at first.
  void Use() const;

 private:
  QueueSetting();

  TempFolder root_;
};

// The names of a list, sorted, each with '@' and its time when it has one; the list is released.
// "(none)" for no list.
std::string TakeShown(QueueList* list);

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_QUEUE_SETTING_H_
