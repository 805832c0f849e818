#include "tests/queue/any_conf.h"

#include <numeric>
#include <string>
#include <vector>

namespace ia_test {
namespace {

using namespace std::string_literals;

rc::Gen<std::string> Joined(const rc::Gen<std::string>& piece) {
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(piece),
                      [](const std::vector<std::string>& pieces) {
                        return std::accumulate(pieces.begin(), pieces.end(), std::string());
                      });
}

rc::Gen<std::string> WellFormedEntry() {
  return rc::gen::map(rc::gen::tuple(AnyQueueName(), AnyUri()), [](const auto& entry) {
    const auto& [name, uri] = entry;
    return "<Printer " + name + ">\nDevicePath " + uri + "\n";
  });
}

}  // namespace

rc::Gen<std::string> AnyQueueName() {
  return rc::gen::element("a"s, "b"s, "ab"s, ""s, "a b"s, "#a"s, "a\xFF"s);
}

rc::Gen<std::string> AnyUri() {
  return rc::gen::element("net:1/PDLType=ps"s, "net:2/PDLType=ps"s, "net6:1/PDLType="s,
                          "usb://PDLType=x"s, "notuse:"s, "ipp://1/PDLType=ps"s, "net:1"s, "1"s,
                          ""s, "n"s, "1/PDLType=psx"s);
}

rc::Gen<std::string> AnyConf() {
  const auto piece = rc::gen::element(
      "\n"s, "\n"s, "<Printer "s, "a"s, "b"s, ">"s, "<Printer a>\n"s, "DevicePath "s, "#"s, " "s,
      "net:1"s, "/PDLType=ps"s, "usb://"s, "\0"s, "\r"s, "DevicePath net:1/PDLType=ps\n"s, "<"s);
  return Joined(rc::gen::weightedOneOf<std::string>({{1, WellFormedEntry()}, {3, piece}}));
}

}  // namespace ia_test
