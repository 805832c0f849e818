// Any bytes as a daemon configuration, compared with a plain parser. The first line is looked up as
// a URI and as a queue name.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/queue/conf_answers.h"
#include "tests/queue/conf_model.h"

namespace {

using namespace ia_test;

void Require(bool is_right) {
  if (!is_right) std::abort();
}

void CompareLists(const std::string& text, const ConfModel& model) {
  const std::vector<std::string> names = model.Names();
  Require(CountOf(text) == static_cast<int32_t>(names.size()));
  ConfOf conf(text);
  Require(NamesOf(conf) == names);
}

void CompareLookups(const std::string& text, const ConfModel& model, const std::string& wanted) {
  Require(NameForUri(text, wanted) == model.NameForUri(wanted));
  auto device = model.DeviceOf(wanted);
  if (device && device->address) device->address = UpToNul(*device->address);
  Require(DeviceOf(text, wanted) == device);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(data, data + size);
  const std::size_t feed = std::min(input.find('\n'), input.size());
  const std::string text = input.substr(std::min(feed + 1, input.size()));
  const ConfModel model(text);
  CompareLists(text, model);
  CompareLookups(text, model, UpToNul(input.substr(0, feed)));
  return 0;
}
