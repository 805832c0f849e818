#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "info_analyze/device_uri.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::IsNull;
using testing::StrEq;

#define PRINTERS "/Library/Printers/Vorel/"

char kOtherText[] = "untouched";

std::string UriOf(const char* key) { return std::string("net:192.0.2.10/PDLType=") + key; }

constexpr auto kFolders = std::to_array<const char*>({
    PRINTERS "CUPSZETA6",
    PRINTERS "CUPSTAU2",
    PRINTERS "CUPSKAPPA2",
    PRINTERS "CUPSPS",
    PRINTERS "CUPSPS2",
    PRINTERS "CUPSPSMF",
    PRINTERS "CUPSFAX",
    PRINTERS "CUPSDELTA",
    PRINTERS "CUPSSIGMA",
    PRINTERS "CUPSOMEGA",
    PRINTERS "CUPS_MF_Printer",
    PRINTERS "CUPS_Printer",
    "/usr/lib/Vorel/CUPS_SFP",
});

TEST(DriverFamilies, HaveTheirFoldersInTableOrder) {
  for (std::size_t i = 0; i < kFolders.size(); ++i) {
    EXPECT_THAT(DriverFamily_GetFolderPath(static_cast<std::int32_t>(i)), StrEq(kFolders[i])) << i;
  }
}

TEST(DriverFamilies, EndOutOfRange) {
  for (const std::int32_t family : {-1, 13, INT32_MAX, INT32_MIN}) {
    EXPECT_THAT(DriverFamily_GetFolderPath(family), IsNull()) << family;
  }
}

struct FolderRow : NamedRow {
  const char* key;
  const char* folder;
};

class DriverFolder : public testing::TestWithParam<FolderRow> {};

TEST_P(DriverFolder, FollowsFromThePdlTypeOfTheUri) {
  const auto uri = ExactText(UriOf(GetParam().key));
  char* folder = nullptr;
  EXPECT_EQ(MqpdUriToFullPathOfDriverFolder(uri.get(), &folder), 0);
  EXPECT_THAT(OwnedText(folder).get(), StrEq(GetParam().folder));
}

INSTANTIATE_TEST_SUITE_P(Table, DriverFolder,
                         Rows<FolderRow>({{"Zeta6", "zeta6", PRINTERS "CUPSZETA6"},
                                          {"Tau2", "tau2", PRINTERS "CUPSTAU2"},
                                          {"Kappa2", "kappa2", PRINTERS "CUPSKAPPA2"},
                                          {"Ps", "ps", PRINTERS "CUPSPS"},
                                          {"Ps2", "ps2", PRINTERS "CUPSPS2"},
                                          {"Psmf", "psmf", PRINTERS "CUPSPSMF"},
                                          {"Fax", "fax", PRINTERS "CUPSFAX"},
                                          {"Delta", "delta", PRINTERS "CUPSDELTA"},
                                          {"Omega", "omega", PRINTERS "CUPSOMEGA"},
                                          {"MfPrinter", "mf_printer", PRINTERS "CUPS_MF_Printer"},
                                          {"Printer", "printer", PRINTERS "CUPS_Printer"},
                                          {"Sfp", "sfp", "/usr/lib/Vorel/CUPS_SFP"}}),
                         RowName<FolderRow>);

INSTANTIATE_TEST_SUITE_P(
    LongerKeys, DriverFolder,
    Rows<FolderRow>({{"Zeta6", "zeta6abc", PRINTERS "CUPSZETA6"},
                     {"Tau2", "tau2abc", PRINTERS "CUPSTAU2"},
                     {"Kappa2", "kappa2abc", PRINTERS "CUPSKAPPA2"},
                     {"Fax", "faxabc", PRINTERS "CUPSFAX"},
                     {"Delta", "deltaabc", PRINTERS "CUPSDELTA"},
                     {"Omega", "omegaabc", PRINTERS "CUPSOMEGA"},
                     {"MfPrinter", "mf_printerabc", PRINTERS "CUPS_MF_Printer"},
                     {"Printer", "printer/abc", PRINTERS "CUPS_Printer"},
                     {"Sfp", "sfpabc", "/usr/lib/Vorel/CUPS_SFP"},
                     {"SecondPdlType", "fax/PDLType=delta", PRINTERS "CUPSFAX"}}),
    RowName<FolderRow>);

INSTANTIATE_TEST_SUITE_P(FoldersInTheUri, DriverFolder,
                         Rows<FolderRow>({{"Nsu", "nsu/opt/driver", "/opt/driver"},
                                          {"NsuEmpty", "nsu", ""},
                                          {"NsuTwice", "nsunsu/opt", "nsu/opt"},
                                          {"Drv", "drv/opt/driver", "/opt/driver"},
                                          {"DrvEmpty", "drv", ""},
                                          {"DrvTwice", "drvdrv/opt", "drv/opt"},
                                          {"DrvWithNsu", "drv/nsu", "/nsu"},
                                          {"PercentIsNoFormat", "drv/%s%n", "/%s%n"},
                                          {"SecondPdlTypeStays", "drv/a/PDLType=ps",
                                           "/a/PDLType=ps"}}),
                         RowName<FolderRow>);

struct WholeUriRow : NamedRow {
  const char* uri;
  const char* folder;
};

class DriverFolderOfUri : public testing::TestWithParam<WholeUriRow> {};

TEST_P(DriverFolderOfUri, IsFound) {
  const auto uri = ExactText(GetParam().uri);
  char* folder = nullptr;
  EXPECT_EQ(MqpdUriToFullPathOfDriverFolder(uri.get(), &folder), 0);
  EXPECT_THAT(OwnedText(folder).get(), StrEq(GetParam().folder));
}

INSTANTIATE_TEST_SUITE_P(
    Uris, DriverFolderOfUri,
    Rows<WholeUriRow>(
        {{"NsuInTheAddressComesFirst", "net:nsuhost/PDLType=nsu/opt", "host/PDLType=nsu/opt"},
         {"NsuInThePrefixComesFirst", "nsu:host/PDLType=nsu/opt", ":host/PDLType=nsu/opt"},
         {"NsuInTheAddressOfAnotherFamily", "net:nsuhost/PDLType=fax", PRINTERS "CUPSFAX"},
         {"DrvInTheAddressIsIgnored", "net:drvhost/PDLType=drv/opt", "/opt"},
         {"PrefixIsIgnored", "ipp://host/PDLType=ps", PRINTERS "CUPSPS"},
         {"NoPrefixAndNoAddress", "/PDLType=ps", PRINTERS "CUPSPS"},
         {"SlashOfThePrefix", "usb://PDLType=ps", PRINTERS "CUPSPS"},
         {"NotUse", "notuse:/PDLType=ps", PRINTERS "CUPSPS"}}),
    RowName<WholeUriRow>);

struct UriRow : NamedRow {
  std::string uri;
};

class NoDriverFolder : public testing::TestWithParam<UriRow> {};

TEST_P(NoDriverFolder, IsFound) {
  const auto uri = ExactText(GetParam().uri);
  char* folder = kOtherText;
  EXPECT_EQ(MqpdUriToFullPathOfDriverFolder(uri.get(), &folder), -1);
  EXPECT_THAT(folder, IsNull());
}

INSTANTIATE_TEST_SUITE_P(Keys, NoDriverFolder,
                         Rows<UriRow>({{"Empty", UriOf("")},
                                       {"Unknown", UriOf("other")},
                                       {"SigmaHasNoKey", UriOf("sigma")},
                                       {"Zeta6Short", UriOf("zeta")},
                                       {"Zeta6Case", UriOf("Zeta6")},
                                       {"Tau2Short", UriOf("tau")},
                                       {"Tau2Case", UriOf("TAU2")},
                                       {"Kappa2Short", UriOf("kappa")},
                                       {"Kappa2Case", UriOf("kAPPA2")},
                                       {"PsShort", UriOf("p")},
                                       {"PsLong", UriOf("psx")},
                                       {"PsSlash", UriOf("ps/")},
                                       {"PsCase", UriOf("PS")},
                                       {"Ps2Long", UriOf("ps2x")},
                                       {"Ps2Other", UriOf("ps3")},
                                       {"Ps2Case", UriOf("Ps2")},
                                       {"PsmfShort", UriOf("psm")},
                                       {"PsmfLong", UriOf("psmfx")},
                                       {"PsmfCase", UriOf("psMF")},
                                       {"PsWithSecondPdlType", UriOf("ps/PDLType=ps")},
                                       {"FaxShort", UriOf("fa")},
                                       {"FaxCase", UriOf("Fax")},
                                       {"DeltaShort", UriOf("delt")},
                                       {"DeltaCase", UriOf("Delta")},
                                       {"OmegaShort", UriOf("omeg")},
                                       {"OmegaCase", UriOf("Omega")},
                                       {"MfPrinterShort", UriOf("mf_printe")},
                                       {"MfPrinterCase", UriOf("MF_Printer")},
                                       {"PrinterShort", UriOf("printe")},
                                       {"PrinterCase", UriOf("Printer")},
                                       {"SfpShort", UriOf("sf")},
                                       {"SfpCase", UriOf("SFP")},
                                       {"NsuShort", UriOf("ns")},
                                       {"NsuCase", UriOf("NSU/opt")},
                                       {"NsuNotAtTheStart", UriOf("xnsu/opt")},
                                       {"DrvShort", UriOf("dr")},
                                       {"DrvCase", UriOf("Drv/opt")},
                                       {"DrvNotAtTheStart", UriOf("xdrv/opt")},
                                       {"BlankBefore", UriOf(" fax")}}),
                         RowName<UriRow>);

INSTANTIATE_TEST_SUITE_P(Uris, NoDriverFolder,
                         Rows<UriRow>({{"EmptyUri", ""},
                                       {"NoPdlType", "net:192.0.2.10"},
                                       {"PdlTypeOneByteShort", "net:192.0.2.10/PDLType"},
                                       {"PdlTypeOtherCase", "net:192.0.2.10/PdlType=fax"},
                                       {"PdlTypeWithoutSlash", "net:192.0.2.10PDLType=fax"},
                                       {"OnlyTheFirstPdlTypeCounts",
                                        "net:host/PDLType=other/PDLType=fax"},
                                       {"NsuOnlyInTheAddress", "net:nsu/opt/PDLType=other"}}),
                         RowName<UriRow>);

TEST(DriverFolderNull, IsRefused) {
  char* folder = kOtherText;
  EXPECT_EQ(MqpdUriToFullPathOfDriverFolder(nullptr, &folder), -1);
  EXPECT_EQ(folder, kOtherText);
  EXPECT_EQ(MqpdUriToFullPathOfDriverFolder("net:host/PDLType=ps", nullptr), -1);
}

struct PortRow : NamedRow {
  const char* folder;
  std::int32_t port;
  std::int32_t data_port;
};

class FolderPorts : public testing::TestWithParam<PortRow> {};

TEST_P(FolderPorts, AreThoseOfTheFamily) {
  const auto folder = ExactText(GetParam().folder);
  EXPECT_EQ(FolderPathToPortNumber(folder.get()), GetParam().port);
  EXPECT_EQ(FolderPathToDataPortNumber(folder.get()), GetParam().data_port);
}

INSTANTIATE_TEST_SUITE_P(Table, FolderPorts,
                         Rows<PortRow>({{"Zeta6", PRINTERS "CUPSZETA6", 59788, 59688},
                                        {"Tau2", PRINTERS "CUPSTAU2", 59789, 59689},
                                        {"Kappa2", PRINTERS "CUPSKAPPA2", 59790, 59690},
                                        {"Ps", PRINTERS "CUPSPS", 59791, 59691},
                                        {"Ps2", PRINTERS "CUPSPS2", 59794, 59694},
                                        {"Psmf", PRINTERS "CUPSPSMF", 0, 0},
                                        {"Fax", PRINTERS "CUPSFAX", 59792, 59692},
                                        {"Delta", PRINTERS "CUPSDELTA", 59793, 59693},
                                        {"Sigma", PRINTERS "CUPSSIGMA", 59787, 59687},
                                        {"Omega", PRINTERS "CUPSOMEGA", 0, 0},
                                        {"MfPrinter", PRINTERS "CUPS_MF_Printer", 0, 0},
                                        {"Printer", PRINTERS "CUPS_Printer", 0, 0},
                                        {"Sfp", "/usr/lib/Vorel/CUPS_SFP", 0, 0}}),
                         RowName<PortRow>);

INSTANTIATE_TEST_SUITE_P(LongerFolders, FolderPorts,
                         Rows<PortRow>({{"Zeta6", PRINTERS "CUPSZETA6/x", 59788, 59688},
                                        {"Tau2", PRINTERS "CUPSTAU22", 59789, 59689},
                                        {"Kappa2", PRINTERS "CUPSKAPPA2/", 59790, 59690},
                                        {"Ps", PRINTERS "CUPSPS/", 0, 0},
                                        {"Ps2", PRINTERS "CUPSPS2/", 0, 0},
                                        {"Psmf", PRINTERS "CUPSPSMF/", 0, 0},
                                        {"Fax", PRINTERS "CUPSFAXX", 59792, 59692},
                                        {"Delta", PRINTERS "CUPSDELTA/x", 59793, 59693},
                                        {"Sigma", PRINTERS "CUPSSIGMA/x", 59787, 59687}}),
                         RowName<PortRow>);

INSTANTIATE_TEST_SUITE_P(NearMisses, FolderPorts,
                         Rows<PortRow>({{"Empty", "", 0, 0},
                                        {"Zeta6Short", PRINTERS "CUPSZETA", 0, 0},
                                        {"Zeta6Case", PRINTERS "CUPSzeta6", 0, 0},
                                        {"Tau2Short", PRINTERS "CUPSTAU", 0, 0},
                                        {"Tau2Case", PRINTERS "CUPSTau2", 0, 0},
                                        {"Kappa2Short", PRINTERS "CUPSKAPPA", 0, 0},
                                        {"Kappa2Case", PRINTERS "CUPSKAPPa2", 0, 0},
                                        {"PsShort", PRINTERS "CUPSP", 0, 0},
                                        {"PsCase", PRINTERS "CUPSPs", 0, 0},
                                        {"Ps2Other", PRINTERS "CUPSPS3", 0, 0},
                                        {"Ps2Case", PRINTERS "CUPSps2", 0, 0},
                                        {"PsmfShort", PRINTERS "CUPSPSM", 0, 0},
                                        {"FaxShort", PRINTERS "CUPSFA", 0, 0},
                                        {"FaxCase", PRINTERS "CUPSFax", 0, 0},
                                        {"DeltaShort", PRINTERS "CUPSDELT", 0, 0},
                                        {"DeltaCase", PRINTERS "CUPSdELTA", 0, 0},
                                        {"SigmaShort", PRINTERS "CUPSSIGM", 0, 0},
                                        {"SigmaCase", PRINTERS "CUPSSIGMa", 0, 0},
                                        {"OtherRoot", "/library/Printers/Vorel/CUPSFAX", 0, 0},
                                        {"NotAtTheStart", " " PRINTERS "CUPSFAX", 0, 0},
                                        {"WithoutTheRoot", "CUPSFAX", 0, 0}}),
                         RowName<PortRow>);

TEST(FolderPortsNull, AreZero) {
  EXPECT_EQ(FolderPathToPortNumber(nullptr), 0);
  EXPECT_EQ(FolderPathToDataPortNumber(nullptr), 0);
}

}  // namespace
}  // namespace ia_test
