// Compares the handling of any configuration with a plain model of it.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/queue/any_conf.h"
#include "tests/queue/conf_answers.h"
#include "tests/queue/conf_model.h"

namespace ia_test {
namespace {

RC_GTEST_PROP(AnyConfiguration, HasTheQueuesOfTheModel, ()) {
  const std::string text = *AnyConf();
  const std::vector<std::string> names = ConfModel(text).Names();
  RC_CLASSIFY(!names.empty(), "with queues");
  RC_ASSERT(CountOf(text) == static_cast<int32_t>(names.size()));
  ConfOf conf(text);
  RC_ASSERT(NamesOf(conf) == names);
  RC_ASSERT(NamesOf(conf)->empty());  // a handle returns each of its names once
}

RC_GTEST_PROP(AnyConfiguration, LosesOnlyTheEndOfEachNameInAList, ()) {
  const std::string text = *AnyConf();
  ConfOf conf(text);
  const std::size_t names = NamesOf(conf)->size();
  const std::string after = conf.text();
  std::size_t changed = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (after[i] == text[i]) continue;
    RC_ASSERT(text[i] == '>' && after[i] == '\0');
    ++changed;
  }
  RC_ASSERT(changed == names);
}

RC_GTEST_PROP(AnyConfiguration, AnswersForAUriAsTheModel, ()) {
  const std::string text = *AnyConf();
  const std::string uri = *AnyUri();
  const auto name = ConfModel(text).NameForUri(uri);
  RC_CLASSIFY(name.has_value(), "found");
  RC_ASSERT(NameForUri(text, uri) == name);
}

RC_GTEST_PROP(AnyConfiguration, AnswersForAQueueAsTheModel, ()) {
  const std::string text = *AnyConf();
  const std::string name = *AnyQueueName();
  auto device = ConfModel(text).DeviceOf(name);
  RC_CLASSIFY(device && device->address.has_value(), "with an address");
  if (device && device->address) device->address = UpToNul(*device->address);
  RC_ASSERT(DeviceOf(text, name) == device);
}

}  // namespace
}  // namespace ia_test
