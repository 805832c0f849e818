#include <stdio.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>

#include "info_analyze/info_analyze.h"
#include "tests/integration/allocation_scenarios.h"
#include "tests/integration/queue_setting.h"
#include "tests/integration/sample_setting.h"

namespace ia_test {
namespace {

void ListsCupsQueues(Round& round) {
  QueueSetting::Get();
  int32_t count = 99;
  QueueList* const list = round.Try([&] { return CupsQueueList_Initialize(&count); });
  const std::string shown = TakeShown(list);
  round.Expect(shown == "a@7 office@7" && count == 2, shown == "(none)" && count == 0, shown);
}

// A text of the test's own, with a handle on it.
class SampleConf {
 public:
  FolderConf* get() { return &conf_; }
  [[nodiscard]] char* start() const { return conf_.text; }
  [[nodiscard]] char* end() const { return conf_.text + conf_.length; }
  [[nodiscard]] bool IsUnchanged() const { return text_ == kConf; }

 private:
  std::string text_ = kConf;
  FolderConf conf_{text_.data(), static_cast<uint32_t>(text_.size())};
};

void ListsDaemonQueues(Round& round) {
  SampleConf conf;
  int32_t count = 99;
  QueueList* const list = round.Try([&] { return MqpdQueueList_Initialize(conf.get(), &count); });
  const std::string shown = TakeShown(list);
  round.Expect(shown == "lobby office" && count == 2, shown == "(none)" && count == 0, shown);
}

void TakesFirstQueue(Round& round) {
  const SampleConf conf;
  char* next = nullptr;
  char* name = nullptr;
  const int32_t found =
      round.Try([&] { return zGetFirstQueueName(conf.start(), conf.end(), &next, &name); });
  const std::string shown = Take(name);
  const bool is_at_device_path = next != nullptr && std::strncmp(next, "DevicePath net:", 15) == 0;
  round.Expect(is_at_device_path && found == 1 && shown == "office" && !conf.IsUnchanged(),
               is_at_device_path && found == 0 && shown == "(none)" && conf.IsUnchanged(), shown);
}

void ReadsConf(Round& round) {
  QueueSetting::Get();
  FolderConf* const conf = round.Try([] { return FolderPathForConf_Initialize(kDriverFolder); });
  round.Expect(conf != nullptr && std::string(conf->text, conf->length) == kConf, conf == nullptr,
               "a configuration");
  FolderPathForConf_Terminate(conf);
}

void FindsQueueOfUri(Round& round) {
  QueueSetting::Get();
  char stale[] = "stale";
  char* name = stale;
  const int32_t status = round.Try([&] { return MqpdUriToQueueName(kDeviceUri, &name); });
  const std::string shown = Take(name);
  round.Expect(status == 0 && shown == "lobby", status == -1 && shown == "(none)", shown);
}

void FindsQueueOfUriInText(Round& round) {
  const SampleConf conf;
  char* name = nullptr;
  const int32_t found = round.Try(
      [&] { return zGetQueueNameFromPrinterAddress(conf.start(), conf.end(), kDeviceUri, &name); });
  const std::string shown = Take(name);
  round.Expect(found == 1 && shown == "lobby", found == 0 && shown == "(none)", shown);
}

void FindsDeviceOfQueue(Round& round) {
  SampleConf conf;
  char* address = nullptr;
  char* protocol = nullptr;
  const int32_t found = round.Try([&] {
    return FolderPathForConf_GetAddressAndProtocol(conf.get(), "lobby", &address, &protocol);
  });
  const std::string shown = Take(protocol) + " " + Take(address);
  round.Expect(found == 1 && shown == "usb:// Vorel/X1", found == 0 && shown == "(none) (none)",
               shown);
}

void ReadsStream(Round& round) {
  std::string text(1000, 'x');
  FILE* const stream = fmemopen(text.data(), text.size(), "r");
  char* data = nullptr;
  uint32_t length = 99;
  const int32_t status = round.Try([&] { return zGetAllDataFromStream(stream, &data, &length); });
  fclose(stream);
  const bool has_all = data != nullptr && std::string(data, length) == text;
  round.Expect(status == 0 && has_all, status == -1 && data == nullptr && length == 0,
               std::to_string(status) + " " + std::to_string(length));
  CallFaults::Instance().Release(data);
}

}  // namespace

std::span<const Scenario> QueueScenarios() {
  static const auto scenarios = std::to_array<Scenario>({
      {"ListsCupsQueues", ListsCupsQueues},
      {"ListsDaemonQueues", ListsDaemonQueues},
      {"TakesFirstQueue", TakesFirstQueue},
      {"ReadsConf", ReadsConf},
      {"FindsQueueOfUri", FindsQueueOfUri},
      {"FindsQueueOfUriInText", FindsQueueOfUriInText},
      {"FindsDeviceOfQueue", FindsDeviceOfQueue},
      {"ReadsStream", ReadsStream},
  });
  return scenarios;
}

}  // namespace ia_test
