#include "cli/snapshot/addresses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> PlainIn(std::string_view text) {
  std::vector<std::string> plain;
  for (const auto& address : ia::cli::FindAddresses(text)) plain.push_back(address.plain);
  return plain;
}

TEST(Addresses, AreFoundInText) {
  EXPECT_THAT(PlainIn("at 10.0.0.1, (172.16.3.4):80 and IP:192.168.1.9."),
              ElementsAre("10.0.0.1", "172.16.3.4", "192.168.1.9"));
  EXPECT_THAT(PlainIn("http://[fd00::1]:631/ fe80::1%eth0, 2001:DB8:0:0:0:0:0:7."),
              ElementsAre("fd00::1", "fe80::1", "2001:db8::7"));
  EXPECT_THAT(PlainIn("MAC:00:A0:de:11:22:33; 00-a0-DE-11-22-34"),
              ElementsAre("00a0de112233", "00a0de112234"));
}

TEST(Addresses, OfEveryMachineAreNone) {
  EXPECT_THAT(PlainIn("127.0.0.1 127.1.2.3 0.0.0.0 255.255.255.255 ::1 :: ff:ff:ff:ff:ff:ff"),
              IsEmpty());
}

TEST(Addresses, OtherTextsAreNone) {
  for (const char* const text : {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "v1.2.3.4x", "12:34:56",
                                 "a:b", "3010.000", "Cas1:101,Cas2:102", "1.10.0.0.1"}) {
    EXPECT_THAT(PlainIn(text), IsEmpty()) << text;
  }
}

TEST(Addresses, MacNeedsSixBytesAndOneSeparator) {
  EXPECT_TRUE(ia::cli::IsMac("00a0DE112233"));
  EXPECT_TRUE(ia::cli::IsMac("00:a0:DE:11:22:33"));
  for (const char* const text : {"", "00a0de11223", "00a0de1122334", "00a0de11223g",
                                 "00:a0-de:11:22:33", "00:a0:de:11:22:3g", "00a0:de:11:22:3344"}) {
    EXPECT_FALSE(ia::cli::IsMac(text)) << text;
  }
}

}  // namespace
