#include "cli/acquire/printer_attributes.h"

#include <cups/cups.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "cli/printer/connection.h"

namespace {

using ia::cli::AttributeValues;
using ia::cli::IppPtr;
using ia::cli::kMaxAttributes;
using ia::cli::kMaxMessageSize;
using ia::cli::kMaxNesting;
using ia::cli::kMaxValues;
using ia::cli::MessageFault;
using ia::cli::ReadMessage;
using ia::cli::ValuesOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

// The bytes of a message, made without libcups.
class Bytes {
 public:
  Bytes() : bytes_("\x02\x00\x00\x00\x00\x00\x00\x01\x04", 9) {}  // 2.0, success, 1; printer

  Bytes& Value(int tag, const std::string& name, const std::string& value) {
    bytes_ += static_cast<char>(tag);
    Text(name);
    Text(value);
    return *this;
  }
  Bytes& Raw(const std::string& bytes) {
    bytes_ += bytes;
    return *this;
  }
  // With the tag that ends it.
  [[nodiscard]] std::string Whole() const { return bytes_ + '\x03'; }
  [[nodiscard]] const std::string& Cut() const { return bytes_; }

 private:
  void Text(const std::string& text) {
    bytes_ += static_cast<char>(text.size() >> 8U);
    bytes_ += static_cast<char>(text.size() & 0xFFU);
    bytes_ += text;
  }

  std::string bytes_;
};

AttributeValues ValuesIn(const Bytes& bytes) { return ValuesOf(*ReadMessage(bytes.Whole())); }

std::string FaultOf(const std::string& bytes) {
  try {
    (void)ReadMessage(bytes);
  } catch (const MessageFault& fault) {
    return fault.what();
  }
  return "";
}

TEST(PrinterAttributes, AreTextsByName) {
  const AttributeValues values =
      ValuesIn(Bytes()
                   .Value(0x44, "sides-supported", "one-sided")
                   .Value(0x44, "", "two-sided-long-edge")
                   .Value(0x41, "printer-info", "An office\x07")
                   .Value(0x21, "job-password-supported", std::string("\0\0\1\0", 4))
                   .Value(0x22, "job-account-id-supported", "\x01")
                   .Value(0x23, "finishings-supported", std::string("\0\0\0\x4A", 4))
                   .Value(0x23, "", std::string("\0\0\0\x45", 4))
                   .Value(0x30, "printer-input-tray", std::string("name=a\0;", 8))
                   .Value(0x35, "printer-name", std::string("\0\2en\0\4name", 10)));
  EXPECT_THAT(values, UnorderedElementsAre(
                          Pair("sides-supported", ElementsAre("one-sided", "two-sided-long-edge")),
                          Pair("printer-info", ElementsAre("An office")),
                          Pair("job-password-supported", ElementsAre("256")),
                          Pair("job-account-id-supported", ElementsAre("true")),
                          Pair("finishings-supported", ElementsAre("punch-dual-left", "69")),
                          Pair("printer-input-tray", ElementsAre(std::string("name=a\0;", 8))),
                          Pair("printer-name", ElementsAre("name"))));
}

TEST(PrinterAttributes, ResolutionsAreInDotsPerInch) {
  const AttributeValues values = ValuesIn(
      Bytes()
          .Value(0x32, "printer-resolution-supported", std::string("\0\0\x02\x58\0\0\x02\x58\3", 9))
          .Value(0x32, "", std::string("\0\0\x02\x58\0\0\x04\xB0\3", 9))
          .Value(0x32, "", std::string("\0\0\0\xEC\0\0\0\xEC\4", 9)));
  EXPECT_THAT(values.at("printer-resolution-supported"),
              ElementsAre("600dpi", "600x1200dpi", "600dpi"));
}

TEST(PrinterAttributes, CollectionsAreFields) {
  const AttributeValues values = ValuesIn(Bytes()
                                              .Value(0x34, "media-col-ready", "")
                                              .Value(0x4A, "", "media-source")
                                              .Value(0x44, "", "tray-1")
                                              .Value(0x4A, "", "media-size")
                                              .Value(0x34, "", "")
                                              .Value(0x37, "", "")
                                              .Value(0x4A, "", "media-type")
                                              .Value(0x44, "", "stationery")
                                              .Value(0x37, "", ""));
  EXPECT_THAT(values.at("media-col-ready"),
              ElementsAre("media-source=tray-1;media-type=stationery;"));
}

TEST(PrinterAttributes, WithoutAValueAreLeftOut) {
  for (const int tag : {0x10, 0x12, 0x13}) {
    EXPECT_THAT(ValuesIn(Bytes().Value(tag, "printer-finisher", "")), IsEmpty()) << tag;
  }
}

TEST(PrinterAttributes, OfOtherGroupsAreLeftOut) {
  const Bytes bytes = Bytes()
                          .Value(0x41, "printer-info", "a")
                          .Raw("\x02")
                          .Value(0x44, "sides-supported", "one-sided");
  EXPECT_THAT(ValuesIn(bytes), ElementsAre(Pair("printer-info", ElementsAre("a"))));
}

TEST(PrinterAttributes, TheFirstOfOneNameCounts) {
  const AttributeValues values = ValuesIn(Bytes()
                                              .Value(0x41, "printer-info", "a")
                                              .Value(0x41, "printer-name", "b")
                                              .Value(0x41, "printer-info", "c"));
  EXPECT_THAT(values.at("printer-info"), ElementsAre("a"));
}

TEST(IppMessage, EndsWhereItsBytesSay) {
  const std::string whole = Bytes().Value(0x41, "printer-info", "An office").Whole();
  EXPECT_EQ(FaultOf(whole), "");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(FaultOf(whole.substr(0, size)), "ends in the middle") << size;
  }
}

TEST(IppMessage, HasLimits) {
  Bytes attributes;
  for (std::size_t i = 0; i <= kMaxAttributes; ++i) attributes.Value(0x21, "a", "\1\1\1\1");
  EXPECT_EQ(FaultOf(attributes.Whole()), "has too many attributes");
  Bytes values = Bytes().Value(0x22, "a", "\1");
  for (std::size_t i = 0; i < kMaxValues; ++i) values.Value(0x22, "", "\1");
  EXPECT_EQ(FaultOf(values.Whole()), "has too many values");
  EXPECT_EQ(FaultOf(std::string(kMaxMessageSize + 1, 'x')), "is larger than 1 MiB");
}

TEST(IppMessage, CollectionsAreNestedAndClosed) {
  const auto nested = [](std::size_t depth) {
    Bytes bytes;
    for (std::size_t i = 0; i < depth; ++i) {
      bytes.Value(0x34, i == 0 ? "a" : "", "").Value(0x4A, "", "b");
    }
    bytes.Value(0x21, "", std::string("\0\0\0\1", 4));
    for (std::size_t i = 0; i < depth; ++i) bytes.Value(0x37, "", "");
    return bytes.Whole();
  };
  EXPECT_EQ(FaultOf(nested(kMaxNesting)), "");
  EXPECT_EQ(FaultOf(nested(kMaxNesting + 1)), "has collections that are nested too deep");
  EXPECT_EQ(FaultOf(Bytes().Value(0x34, "a", "").Whole()), "has a collection without an end");
  EXPECT_EQ(FaultOf(Bytes().Value(0x37, "a", "").Whole()),
            "has the end of a collection without its start");
}

TEST(IppMessage, MustFollowTheRules) {
  EXPECT_EQ(FaultOf(Bytes().Value(0x21, "number", "x").Whole()), "breaks the rules of IPP");
}

}  // namespace
