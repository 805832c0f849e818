#include "info_analyze/device_uri.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::IsNull;
using testing::StrEq;

char kOtherText[] = "untouched";

struct PrefixRow : NamedRow {
  const char* uri;
  const char* prefix;
};

class EndpointPrefix : public testing::TestWithParam<PrefixRow> {};

TEST_P(EndpointPrefix, IsRecognised) {
  const auto uri = ExactText(GetParam().uri);
  EXPECT_THAT(zGetIOSignatureFromMqpdUri(uri.get()), StrEq(GetParam().prefix));
}

TEST_P(EndpointPrefix, IsTheEndpointFamily) {
  char* family = nullptr;
  EXPECT_EQ(MqpdUriToEndpointFamily(GetParam().uri, &family), 0);
  EXPECT_THAT(OwnedText(family).get(), StrEq(GetParam().prefix));
}

INSTANTIATE_TEST_SUITE_P(Table, EndpointPrefix,
                         Rows<PrefixRow>({{"Net", "net:192.0.2.10/PDLType=kappa2", "net:"},
                                          {"Net6", "net6:2001:db8::1/PDLType=kappa2", "net6:"},
                                          {"Mdns", "mdns:Printer._ipp/PDLType=kappa2", "mdns:"},
                                          {"Usb", "usb://Vorel/X1/PDLType=kappa2", "usb://"},
                                          {"UsbCdc", "ncap_usb_cdc://Vorel/PDLType=kappa2",
                                           "ncap_usb_cdc://"},
                                          {"NotUse", "notuse:/PDLType=kappa2", "notuse:"}}),
                         RowName<PrefixRow>);

INSTANTIATE_TEST_SUITE_P(PrefixAlone, EndpointPrefix,
                         Rows<PrefixRow>({{"Net", "net:", "net:"},
                                          {"Net6", "net6:", "net6:"},
                                          {"Mdns", "mdns:", "mdns:"},
                                          {"Usb", "usb://", "usb://"},
                                          {"UsbCdc", "ncap_usb_cdc://", "ncap_usb_cdc://"},
                                          {"NotUse", "notuse:", "notuse:"}}),
                         RowName<PrefixRow>);

struct UriRow : NamedRow {
  const char* uri;
};

class UnknownPrefix : public testing::TestWithParam<UriRow> {};

TEST_P(UnknownPrefix, IsNotRecognised) {
  const auto uri = ExactText(GetParam().uri);
  EXPECT_THAT(zGetIOSignatureFromMqpdUri(uri.get()), IsNull());
}

TEST_P(UnknownPrefix, HasNoEndpointFamily) {
  char* family = kOtherText;
  EXPECT_EQ(MqpdUriToEndpointFamily(GetParam().uri, &family), -1);
  EXPECT_THAT(family, IsNull());
}

TEST_P(UnknownPrefix, HasNoAddress) {
  char* address = kOtherText;
  EXPECT_EQ(MqpdUriToPrinterAddress(GetParam().uri, &address), -1);
  EXPECT_THAT(address, IsNull());
}

INSTANTIATE_TEST_SUITE_P(NearMisses, UnknownPrefix,
                         Rows<UriRow>({{"Empty", ""},
                                       {"Other", "ipp://host/PDLType=ps"},
                                       {"NetShort", "net"},
                                       {"NetLong", "net4:host/PDLType=ps"},
                                       {"NetCase", "Net:host/PDLType=ps"},
                                       {"Net6Short", "net6"},
                                       {"Net6Long", "net66:host/PDLType=ps"},
                                       {"Net6Case", "NET6:host/PDLType=ps"},
                                       {"MdnsShort", "mdns"},
                                       {"MdnsLong", "mdns6:host/PDLType=ps"},
                                       {"MdnsCase", "mDNS:host/PDLType=ps"},
                                       {"UsbShort", "usb:/"},
                                       {"UsbLong", "usb6://host/PDLType=ps"},
                                       {"UsbCase", "USB://host/PDLType=ps"},
                                       {"UsbCdcShort", "ncap_usb_cdc:/"},
                                       {"UsbCdcLong", "ncap_usb_cdc6://host/PDLType=ps"},
                                       {"UsbCdcCase", "ncap_USB_cdc://host/PDLType=ps"},
                                       {"NotUseShort", "notuse"},
                                       {"NotUseLong", "notused:/PDLType=ps"},
                                       {"NotUseCase", "notUse:/PDLType=ps"},
                                       {"BlankBefore", " net:host/PDLType=ps"},
                                       {"NotAtTheStart", "xnet:host/PDLType=ps"}}),
                         RowName<UriRow>);

TEST(EndpointPrefixNull, IsNotRecognised) {
  EXPECT_THAT(zGetIOSignatureFromMqpdUri(nullptr), IsNull());
}

TEST(EndpointFamilyNull, IsRefused) {
  char* family = kOtherText;
  EXPECT_EQ(MqpdUriToEndpointFamily(nullptr, &family), -1);
  EXPECT_EQ(family, kOtherText);
  EXPECT_EQ(MqpdUriToEndpointFamily("net:host/PDLType=ps", nullptr), -1);
}

struct AddressRow : NamedRow {
  const char* uri;
  const char* address;
};

class PrinterAddress : public testing::TestWithParam<AddressRow> {};

TEST_P(PrinterAddress, IsBetweenThePrefixAndThePdlType) {
  const auto uri = ExactText(GetParam().uri);
  char* address = nullptr;
  EXPECT_EQ(MqpdUriToPrinterAddress(uri.get(), &address), 0);
  EXPECT_THAT(OwnedText(address).get(), StrEq(GetParam().address));
}

INSTANTIATE_TEST_SUITE_P(
    Table, PrinterAddress,
    Rows<AddressRow>({{"Net", "net:192.0.2.10/PDLType=kappa2", "192.0.2.10"},
                      {"Net6", "net6:2001:db8::1/PDLType=kappa2", "2001:db8::1"},
                      {"Mdns", "mdns:Printer._ipp/PDLType=kappa2", "Printer._ipp"},
                      {"Usb", "usb://Vorel/X1/PDLType=kappa2", "Vorel/X1"},
                      {"UsbCdc", "ncap_usb_cdc://Vorel/PDLType=kappa2", "Vorel"},
                      {"NotUse", "notuse:/PDLType=kappa2", ""}}),
    RowName<AddressRow>);

INSTANTIATE_TEST_SUITE_P(
    Shapes, PrinterAddress,
    Rows<AddressRow>({{"Empty", "net:/PDLType=ps", ""},
                      {"EmptyAfterSlashes", "usb:///PDLType=ps", ""},
                      {"UnknownFamily", "net:host/PDLType=none", "host"},
                      {"EmptyPdlType", "net:host/PDLType=", "host"},
                      {"FirstPdlTypeCounts", "net:a/PDLType=b/PDLType=c", "a"},
                      {"AnotherPrefixInside", "net:usb://x/PDLType=ps", "usb://x"},
                      {"AlmostPdlTypeInside", "net:/PDLType/PDLType=ps", "/PDLType"},
                      {"BytesAbove127", "mdns:\xC3\xA4/PDLType=ps", "\xC3\xA4"},
                      {"PercentIsNoFormat", "mdns:%s%n/PDLType=ps", "%s%n"}}),
    RowName<AddressRow>);

class AddressWithoutPdlType : public testing::TestWithParam<AddressRow> {};

TEST_P(AddressWithoutPdlType, FailsAndLeavesTheUncutCopyToTheCaller) {
  const auto uri = ExactText(GetParam().uri);
  char* address = nullptr;
  EXPECT_EQ(MqpdUriToPrinterAddress(uri.get(), &address), -1);
  EXPECT_THAT(OwnedText(address).get(), StrEq(GetParam().address));
}

INSTANTIATE_TEST_SUITE_P(
    Uris, AddressWithoutPdlType,
    Rows<AddressRow>({{"None", "net:192.0.2.10", "192.0.2.10"},
                      {"NothingAtAll", "net:", ""},
                      {"OneByteShort", "net:host/PDLType", "host/PDLType"},
                      {"OtherCase", "net:host/pdltype=ps", "host/pdltype=ps"},
                      {"NoSlash", "net:hostPDLType=ps", "hostPDLType=ps"},
                      // The slash that "/PDLType=" begins with belongs to the prefix here.
                      {"SlashOfThePrefix", "usb://PDLType=ps", "PDLType=ps"}}),
    RowName<AddressRow>);

TEST(PrinterAddressNull, IsRefused) {
  char* address = kOtherText;
  EXPECT_EQ(MqpdUriToPrinterAddress(nullptr, &address), -1);
  EXPECT_EQ(address, kOtherText);
  EXPECT_EQ(MqpdUriToPrinterAddress("net:host/PDLType=ps", nullptr), -1);
}

TEST(PrinterAddressOfLongUri, IsCopiedWhole) {
  const std::string host(100'000, 'h');
  char* address = nullptr;
  EXPECT_EQ(MqpdUriToPrinterAddress(("net:" + host + "/PDLType=ps").c_str(), &address), 0);
  EXPECT_EQ(OwnedText(address).get(), host);
}

struct DuplexRow : NamedRow {
  const char* uri;
  std::int32_t answer;
};

class CheckDuplex : public testing::TestWithParam<DuplexRow> {};

TEST_P(CheckDuplex, AnswersWhetherTheUriBeginsWithQvbm) {
  if (GetParam().uri == nullptr) {
    EXPECT_EQ(DeviceUriToCheckDuplex(nullptr), GetParam().answer);
  } else {
    EXPECT_EQ(DeviceUriToCheckDuplex(ExactText(GetParam().uri).get()), GetParam().answer);
  }
}

INSTANTIATE_TEST_SUITE_P(Uris, CheckDuplex,
                         Rows<DuplexRow>({{"Null", nullptr, 1},
                                          {"Alone", "qvbm", 1},
                                          {"WithAnAddress", "qvbm://host", 1},
                                          {"Longer", "qvbmx", 1},
                                          {"Empty", "", 0},
                                          {"OneByteShort", "qvb", 0},
                                          {"OtherCase", "QVBM://host", 0},
                                          {"LastByteCase", "qvbM:", 0},
                                          {"BlankBefore", " qvbm", 0},
                                          {"Other", "net:qvbm", 0}}),
                         RowName<DuplexRow>);

}  // namespace
}  // namespace ia_test
