#include "cli/snapshot/secrets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

using ia::cli::Category;
using ia::cli::Secrets;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Secrets, HaveOneReplacementWhateverTheirCase) {
  Secrets secrets("");
  secrets.Add(Category::kQueue, "Office");
  secrets.Add(Category::kLocation, "Tower 7");
  secrets.Add(Category::kSerial, "OFFICE");
  EXPECT_EQ(secrets.Replaced("office OFFICE Backoffice: Tower 7, TOWER%207"),
            "queue-1 queue-1 Backqueue-1: location-1, location-1");
  EXPECT_EQ(secrets.places(Category::kQueue), 3U);
  EXPECT_EQ(secrets.places(Category::kLocation), 2U);
  EXPECT_EQ(secrets.places(Category::kSerial), 0U);
}

TEST(Secrets, AreReplacedFromTheLongest) {
  Secrets secrets("");
  secrets.Add(Category::kSerial, "VX12");
  secrets.Add(Category::kSerial, "VX1234");
  EXPECT_EQ(secrets.Replaced("VX1234 VX12"), "serial-2 serial-1");
}

TEST(Secrets, ShortOnesAreReplacedAsWords) {
  Secrets secrets("");
  secrets.Add(Category::kQueue, "lp");
  secrets.Add(Category::kLocation, "7");
  EXPECT_EQ(secrets.Replaced("lp lpadmin help lp-7"), "queue-1 lpadmin help queue-1-7");
}

TEST(Secrets, SpellingsOfAnAddressHaveOneReplacement) {
  Secrets secrets("");
  secrets.AddAddresses("10.0.0.1 10.0.0.12 fd00::1 FD00:0:0:0:0:0:0:1 00:a0:de:11:22:33");
  EXPECT_EQ(secrets.Replaced("10.0.0.12 10.0.0.1"), "192.0.2.2 192.0.2.1");
  EXPECT_EQ(secrets.Replaced("fd00::1 fd00:0:0:0:0:0:0:1"), "2001:db8::1 2001:db8::1");
  EXPECT_EQ(secrets.Replaced("00:A0:DE:11:22:33 00-a0-de-11-22-33 00a0de112233"),
            "00:00:5e:00:53:01 00-00-5e-00-53-01 00005e005301");
}

TEST(Secrets, ReplacementIsNewToTheTexts) {
  Secrets secrets("from QUEUE-1 to 192.0.2.1");
  secrets.Add(Category::kQueue, "office");
  secrets.AddAddresses("192.0.2.1 192.0.2.2");
  EXPECT_EQ(secrets.Replaced("office 192.0.2.1 192.0.2.2"), "queue-2 192.0.2.2 192.0.2.3");
}

TEST(Secrets, OfAHostAreItsPartsToo) {
  Secrets secrets("");
  secrets.AddHost("prn1.hq.example");
  EXPECT_EQ(secrets.Replaced("PRN1 prn1.hq.example scan.hq.example"),
            "host-2.invalid host-1.invalid scan.host-3.invalid");
  secrets.AddHost("10.0.0.1");
  EXPECT_EQ(secrets.Replaced("10.0.0.1"), "192.0.2.1");
  secrets.AddHost("localhost");
  EXPECT_EQ(secrets.Replaced("localhost"), "localhost");
}

TEST(Secrets, ManyAddressesHaveDifferentReplacements) {
  Secrets secrets("");
  for (std::size_t i = 0; i < 600; ++i) {
    secrets.AddAddresses("10.9." + std::to_string(i >> 8) + "." + std::to_string(i & 255));
  }
  EXPECT_EQ(secrets.Replaced("10.9.0.253"), "192.0.2.254");
  EXPECT_EQ(secrets.Replaced("10.9.0.254"), "198.18.0.255");
  EXPECT_EQ(secrets.Replaced("10.9.2.87"), "198.18.2.88");
}

TEST(Secrets, ThatRemainAreFound) {
  Secrets secrets("");
  secrets.Add(Category::kQueue, "Duplex");
  EXPECT_THAT(secrets.RemainingIn("*OpenUI *duplex"), ElementsAre(Category::kQueue));
  EXPECT_THAT(secrets.RemainingIn("queue-1"), IsEmpty());
}

}  // namespace
