// The library's results for a configuration text, in the terms of the model. The text is in a block
// of its exact size.
#ifndef TESTS_QUEUE_CONF_ANSWERS_H_
#define TESTS_QUEUE_CONF_ANSWERS_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "info_analyze/queue_list.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/queue/conf_model.h"

namespace ia_test {

inline std::optional<std::string> TakeText(char* text) {
  const OwnedText owned(text);
  return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

// A handle over a text of the test's own.
class ConfOf {
 public:
  explicit ConfOf(const std::string& text)
      : bytes_(ExactBytes(text)), conf_{bytes_.get(), static_cast<uint32_t>(text.size())} {}

  FolderConf* get() { return &conf_; }
  char* start() const { return conf_.text; }
  char* end() const { return conf_.text + conf_.length; }
  std::string text() const { return {start(), end()}; }

 private:
  std::unique_ptr<char[]> bytes_;
  FolderConf conf_;
};

inline int32_t CountOf(const std::string& text) {
  const ConfOf conf(text);
  return zGetQueueCount(conf.start(), conf.end());
}

// Nothing when there is no list.
inline std::optional<std::vector<std::string>> TakeNames(QueueList* list, int32_t count) {
  if (list == nullptr) return std::nullopt;
  std::vector<std::string> names;
  for (int32_t i = 0; i < count; ++i) names.emplace_back(CupsQueueList_GetQueueName(list, i));
  MqpdQueueList_Terminate(list);
  return names;
}

inline std::optional<std::vector<std::string>> NamesOf(ConfOf& conf) {
  int32_t count = -1;
  QueueList* const list = MqpdQueueList_Initialize(conf.get(), &count);
  return TakeNames(list, count);
}

inline std::optional<std::string> NameForUri(const std::string& text, const std::string& uri) {
  const ConfOf conf(text);
  char* name = nullptr;
  const int32_t found =
      zGetQueueNameFromPrinterAddress(conf.start(), conf.end(), ExactText(uri).get(), &name);
  auto answer = TakeText(name);
  return found == (answer ? 1 : 0) ? answer : "a status that is wrong";
}

inline std::optional<ModelDevice> DeviceOf(const std::string& text, const std::string& name) {
  ConfOf conf(text);
  char* address = nullptr;
  char* protocol = nullptr;
  const int32_t found = FolderPathForConf_GetAddressAndProtocol(conf.get(), ExactText(name).get(),
                                                                &address, &protocol);
  const ModelDevice device{TakeText(address), TakeText(protocol)};
  if (found == 1) return device;
  return found == 0 && device == ModelDevice{} ? std::nullopt
                                               : std::optional(ModelDevice{"wrong", "wrong"});
}

}  // namespace ia_test

#endif  // TESTS_QUEUE_CONF_ANSWERS_H_
