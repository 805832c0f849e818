// The rules of a daemon configuration, line by line over plain strings.
#ifndef TESTS_QUEUE_CONF_MODEL_H_
#define TESTS_QUEUE_CONF_MODEL_H_

#include <optional>
#include <string>
#include <vector>

namespace ia_test {

struct ModelDevice {
  std::optional<std::string> address;
  std::optional<std::string> protocol;

  bool operator==(const ModelDevice&) const = default;
};

class ConfModel {
 public:
  explicit ConfModel(const std::string& text);

  std::vector<std::string> Names() const;
  std::optional<std::string> NameForUri(const std::string& uri) const;
  // Nothing when the lookup fails.
  std::optional<ModelDevice> DeviceOf(const std::string& name) const;

 private:
  struct Queue {
    std::string name;
    std::optional<std::string> device_path;
  };

  std::vector<Queue> queues_;
};

// A text as whoever reads it as a C string sees it.
std::string UpToNul(const std::string& text);

}  // namespace ia_test

#endif  // TESTS_QUEUE_CONF_MODEL_H_
