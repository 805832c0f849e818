#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

struct PathRow : NamedRow {
  const char* source;
  const char* path;
};

struct SourceRow : NamedRow {
  const char* source;
};

class CacheOfUri : public testing::TestWithParam<PathRow> {};

TEST_P(CacheOfUri, IsTheCacheFolderOfTheFamily) {
  const auto uri = ExactText(GetParam().source);
  char* cache = nullptr;
  EXPECT_EQ(MqpdUriToFullPathOfDriverCache(uri.get(), &cache), 0);
  EXPECT_THAT(OwnedText(cache).get(), StrEq(GetParam().path));
}

INSTANTIATE_TEST_SUITE_P(
    Table, CacheOfUri,
    Rows<PathRow>({{"Zeta6", "net:h/PDLType=zeta6", "/var/cache/Vorel/CUPSZETA6"},
                   {"Tau2", "net:h/PDLType=tau2", "/var/cache/Vorel/CUPSTAU2"},
                   {"Kappa2", "net:192.0.2.10/PDLType=kappa2", "/var/cache/Vorel/CUPSKAPPA2"},
                   {"Ps", "net:h/PDLType=ps", "/var/cache/Vorel/CUPSPS"},
                   {"Ps2", "net:h/PDLType=ps2", "/var/cache/Vorel/CUPSPS2"},
                   {"Psmf", "net:h/PDLType=psmf", "/var/cache/Vorel/CUPSPSMF"},
                   {"Fax", "net:h/PDLType=fax", "/var/cache/Vorel/CUPSFAX"},
                   {"Delta", "net:h/PDLType=delta", "/var/cache/Vorel/CUPSDELTA"},
                   {"Omega", "net:h/PDLType=omega", "/var/cache/Vorel/CUPSOMEGA"},
                   {"MfPrinter", "net:h/PDLType=mf_printer", "/var/cache/Vorel/CUPS_MF_Printer"},
                   {"Printer", "net:h/PDLType=printer", "/var/cache/Vorel/CUPS_Printer"}}),
    RowName<PathRow>);

INSTANTIATE_TEST_SUITE_P(
    LongerKeys, CacheOfUri,
    Rows<PathRow>({{"Zeta6", "net:h/PDLType=zeta6x", "/var/cache/Vorel/CUPSZETA6"},
                   {"Tau2", "net:h/PDLType=tau2x", "/var/cache/Vorel/CUPSTAU2"},
                   {"Kappa2", "net:h/PDLType=kappa2abc", "/var/cache/Vorel/CUPSKAPPA2"},
                   {"Fax", "net:h/PDLType=fax2", "/var/cache/Vorel/CUPSFAX"},
                   {"Delta", "net:h/PDLType=delta/x", "/var/cache/Vorel/CUPSDELTA"},
                   {"Omega", "net:h/PDLType=omegas", "/var/cache/Vorel/CUPSOMEGA"},
                   {"MfPrinter", "net:h/PDLType=mf_printers", "/var/cache/Vorel/CUPS_MF_Printer"},
                   {"Printer", "net:h/PDLType=printers", "/var/cache/Vorel/CUPS_Printer"},
                   {"AnyPrefix", "ipp://h/PDLType=fax", "/var/cache/Vorel/CUPSFAX"}}),
    RowName<PathRow>);

class NoCacheOfUri : public testing::TestWithParam<SourceRow> {};

TEST_P(NoCacheOfUri, IsFound) {
  const auto uri = ExactText(GetParam().source);
  char* cache = kOtherText;
  EXPECT_EQ(MqpdUriToFullPathOfDriverCache(uri.get(), &cache), -1);
  EXPECT_THAT(cache, IsNull());
}

INSTANTIATE_TEST_SUITE_P(Uris, NoCacheOfUri,
                         Rows<SourceRow>({{"Sfp", "net:h/PDLType=sfp"},
                                          {"Nsu", "net:h/PDLType=nsu/opt"},
                                          {"Drv", "net:h/PDLType=drv/opt"},
                                          {"DrvOfAKnownFolder",
                                           "net:h/PDLType=drv" PRINTERS "CUPSFAX"},
                                          {"Sigma", "net:h/PDLType=sigma"},
                                          {"PsLong", "net:h/PDLType=psx"},
                                          {"Ps2Long", "net:h/PDLType=ps2x"},
                                          {"PsmfLong", "net:h/PDLType=psmfx"},
                                          {"PsmfShort", "net:h/PDLType=psm"},
                                          {"FaxCase", "net:h/PDLType=FAX"},
                                          {"Zeta6Short", "net:h/PDLType=zeta"},
                                          {"EmptyKey", "net:h/PDLType="},
                                          {"NoPdlType", "net:h"},
                                          {"PdlTypeOneByteShort", "net:h/PDLType"},
                                          {"EmptyUri", ""}}),
                         RowName<SourceRow>);

TEST(CacheOfUriNull, IsRefused) {
  char* cache = kOtherText;
  EXPECT_EQ(MqpdUriToFullPathOfDriverCache(nullptr, &cache), -1);
  EXPECT_EQ(cache, kOtherText);
  EXPECT_EQ(MqpdUriToFullPathOfDriverCache("net:h/PDLType=ps", nullptr), -1);
}

class CacheOfFolder : public testing::TestWithParam<PathRow> {};

TEST_P(CacheOfFolder, IsTheCacheFolderOfTheFamily) {
  const auto folder = ExactText(GetParam().source);
  char* cache = nullptr;
  EXPECT_EQ(FolderPathToDriverCache(folder.get(), &cache), 0);
  EXPECT_THAT(OwnedText(cache).get(), StrEq(GetParam().path));
}

INSTANTIATE_TEST_SUITE_P(
    Table, CacheOfFolder,
    Rows<PathRow>({{"Zeta6", PRINTERS "CUPSZETA6", "/var/cache/Vorel/CUPSZETA6"},
                   {"Tau2", PRINTERS "CUPSTAU2", "/var/cache/Vorel/CUPSTAU2"},
                   {"Kappa2", PRINTERS "CUPSKAPPA2", "/var/cache/Vorel/CUPSKAPPA2"},
                   {"Ps", PRINTERS "CUPSPS", "/var/cache/Vorel/CUPSPS"},
                   {"Ps2", PRINTERS "CUPSPS2", "/var/cache/Vorel/CUPSPS2"},
                   {"Psmf", PRINTERS "CUPSPSMF", "/var/cache/Vorel/CUPSPSMF"},
                   {"Fax", PRINTERS "CUPSFAX", "/var/cache/Vorel/CUPSFAX"},
                   {"Delta", PRINTERS "CUPSDELTA", "/var/cache/Vorel/CUPSDELTA"},
                   {"Sigma", PRINTERS "CUPSSIGMA", "/var/cache/Vorel/CUPSSIGMA"},
                   {"Omega", PRINTERS "CUPSOMEGA", "/var/cache/Vorel/CUPSOMEGA"},
                   {"MfPrinter", PRINTERS "CUPS_MF_Printer", "/var/cache/Vorel/CUPS_MF_Printer"},
                   {"Printer", PRINTERS "CUPS_Printer", "/var/cache/Vorel/CUPS_Printer"}}),
    RowName<PathRow>);

INSTANTIATE_TEST_SUITE_P(
    LongerFolders, CacheOfFolder,
    Rows<PathRow>({{"Zeta6", PRINTERS "CUPSZETA6/", "/var/cache/Vorel/CUPSZETA6"},
                   {"Tau2", PRINTERS "CUPSTAU2/x", "/var/cache/Vorel/CUPSTAU2"},
                   {"Kappa2", PRINTERS "CUPSKAPPA2x", "/var/cache/Vorel/CUPSKAPPA2"},
                   {"Fax", PRINTERS "CUPSFAX2", "/var/cache/Vorel/CUPSFAX"},
                   {"Delta", PRINTERS "CUPSDELTA/x", "/var/cache/Vorel/CUPSDELTA"},
                   {"Sigma", PRINTERS "CUPSSIGMA/x", "/var/cache/Vorel/CUPSSIGMA"},
                   {"Omega", PRINTERS "CUPSOMEGA/x", "/var/cache/Vorel/CUPSOMEGA"},
                   {"MfPrinter", PRINTERS "CUPS_MF_Printers", "/var/cache/Vorel/CUPS_MF_Printer"},
                   {"Printer", PRINTERS "CUPS_Printer/x", "/var/cache/Vorel/CUPS_Printer"}}),
    RowName<PathRow>);

class NoCacheOfFolder : public testing::TestWithParam<SourceRow> {};

TEST_P(NoCacheOfFolder, IsFound) {
  const auto folder = ExactText(GetParam().source);
  char* cache = kOtherText;
  EXPECT_EQ(FolderPathToDriverCache(folder.get(), &cache), -1);
  EXPECT_THAT(cache, IsNull());
}

INSTANTIATE_TEST_SUITE_P(Folders, NoCacheOfFolder,
                         Rows<SourceRow>({{"Sfp", "/usr/lib/Vorel/CUPS_SFP"},
                                          {"Empty", ""},
                                          {"PsLong", PRINTERS "CUPSPS/"},
                                          {"PsShort", PRINTERS "CUPSP"},
                                          {"Ps2Long", PRINTERS "CUPSPS22"},
                                          {"Ps2Other", PRINTERS "CUPSPS3"},
                                          {"PsmfShort", PRINTERS "CUPSPSM"},
                                          {"PsmfLong", PRINTERS "CUPSPSMFX"},
                                          {"PsCase", PRINTERS "CUPSps"},
                                          {"Zeta6Short", PRINTERS "CUPSZETA"},
                                          {"Zeta6Case", PRINTERS "CUPSZeta6"},
                                          {"Tau2Short", PRINTERS "CUPSTAU"},
                                          {"Kappa2Short", PRINTERS "CUPSKAPPA"},
                                          {"FaxShort", PRINTERS "CUPSFA"},
                                          {"FaxCase", PRINTERS "CupsFAX"},
                                          {"DeltaShort", PRINTERS "CUPSDELT"},
                                          {"SigmaShort", PRINTERS "CUPSSIGM"},
                                          {"SigmaCase", PRINTERS "CUPSSigma"},
                                          {"OmegaShort", PRINTERS "CUPSOMEG"},
                                          {"MfPrinterCase", PRINTERS "CUPS_mf_printer"},
                                          {"MfPrinterShort", PRINTERS "CUPS_MF_Printe"},
                                          {"PrinterShort", PRINTERS "CUPS_Printe"},
                                          {"OtherRoot", "/usr/lib/Vorel/CUPSFAX"},
                                          {"NotAtTheStart", "x" PRINTERS "CUPSFAX"},
                                          {"Key", "fax"}}),
                         RowName<SourceRow>);

TEST(CacheOfFolderNull, IsRefused) {
  char* cache = kOtherText;
  EXPECT_EQ(FolderPathToDriverCache(nullptr, &cache), -1);
  EXPECT_EQ(cache, kOtherText);
  EXPECT_EQ(FolderPathToDriverCache(PRINTERS "CUPSFAX", nullptr), -1);
}

class IoLibrary : public testing::TestWithParam<PathRow> {};

TEST_P(IoLibrary, IsInTheDriverFolder) {
  const auto uri = ExactText(GetParam().source);
  char* path = nullptr;
  EXPECT_EQ(MqpdUriToFullPathOfIOLib(uri.get(), &path), 0);
  EXPECT_THAT(OwnedText(path).get(), StrEq(GetParam().path));
}

INSTANTIATE_TEST_SUITE_P(
    Endpoints, IoLibrary,
    Rows<PathRow>(
        {{"Net", "net:192.0.2.10/PDLType=kappa2", PRINTERS "CUPSKAPPA2/Bidi/vxio_tcpip.dylib"},
         {"Net6", "net6:2001:db8::1/PDLType=kappa2", PRINTERS "CUPSKAPPA2/Bidi/vxio_tcpip.dylib"},
         {"Mdns", "mdns:Printer/PDLType=kappa2", PRINTERS "CUPSKAPPA2/Bidi/vxio_tcpip.dylib"},
         {"Usb", "usb://Vorel/PDLType=kappa2", PRINTERS "CUPSKAPPA2/Bidi/libvxio_usb.so"},
         {"UsbCdc", "ncap_usb_cdc://Vorel/PDLType=kappa2",
          PRINTERS "CUPSKAPPA2/Bidi/libvxio_usb_cdc.so"}}),
    RowName<PathRow>);

INSTANTIATE_TEST_SUITE_P(
    Families, IoLibrary,
    Rows<PathRow>(
        {{"Zeta6", "usb://h/PDLType=zeta6", PRINTERS "CUPSZETA6/Bidi/libvxio_usb.so"},
         {"Tau2", "usb://h/PDLType=tau2", PRINTERS "CUPSTAU2/Bidi/libvxio_usb.so"},
         {"Ps", "usb://h/PDLType=ps", PRINTERS "CUPSPS/Bidi/libvxio_usb.so"},
         {"Ps2", "usb://h/PDLType=ps2", PRINTERS "CUPSPS2/Bidi/libvxio_usb.so"},
         {"Psmf", "usb://h/PDLType=psmf", PRINTERS "CUPSPSMF/Bidi/libvxio_usb.so"},
         {"Fax", "usb://h/PDLType=fax", PRINTERS "CUPSFAX/Bidi/libvxio_usb.so"},
         {"Delta", "usb://h/PDLType=delta", PRINTERS "CUPSDELTA/Bidi/libvxio_usb.so"},
         {"Omega", "usb://h/PDLType=omega", PRINTERS "CUPSOMEGA/Bidi/libvxio_usb.so"},
         {"MfPrinter", "usb://h/PDLType=mf_printer",
          PRINTERS "CUPS_MF_Printer/Bidi/libvxio_usb.so"},
         {"Printer", "usb://h/PDLType=printer", PRINTERS "CUPS_Printer/Bidi/libvxio_usb.so"},
         {"Sfp", "usb://h/PDLType=sfp", "/usr/lib/Vorel/CUPS_SFP/Bidi/libvxio_usb.so"},
         {"Nsu", "usb://h/PDLType=nsu/opt", "/opt/Bidi/libvxio_usb.so"},
         {"NsuInTheAddress", "usb://nsu/PDLType=nsu/opt", "/PDLType=nsu/opt/Bidi/libvxio_usb.so"},
         {"Drv", "usb://h/PDLType=drv/opt", "/opt/Bidi/libvxio_usb.so"},
         {"EmptyFolder", "usb://h/PDLType=drv", "/Bidi/libvxio_usb.so"},
         {"SlashAtTheEndStays", "usb://h/PDLType=drv/opt/", "/opt//Bidi/libvxio_usb.so"},
         {"PercentIsNoFormat", "usb://h/PDLType=drv/%s%n", "/%s%n/Bidi/libvxio_usb.so"}}),
    RowName<PathRow>);

class NoIoLibrary : public testing::TestWithParam<SourceRow> {};

TEST_P(NoIoLibrary, IsFound) {
  const auto uri = ExactText(GetParam().source);
  char* path = kOtherText;
  EXPECT_EQ(MqpdUriToFullPathOfIOLib(uri.get(), &path), -1);
  EXPECT_THAT(path, IsNull());
}

INSTANTIATE_TEST_SUITE_P(Uris, NoIoLibrary,
                         Rows<SourceRow>({{"NotUse", "notuse:/PDLType=kappa2"},
                                          {"UnknownPrefix", "ipp://h/PDLType=kappa2"},
                                          {"PrefixInOtherCase", "USB://h/PDLType=kappa2"},
                                          {"PrefixOneByteShort", "usb:/h/PDLType=kappa2"},
                                          {"UnknownFamily", "usb://h/PDLType=other"},
                                          {"SigmaHasNoKey", "usb://h/PDLType=sigma"},
                                          {"BothUnknown", "ipp://h/PDLType=other"},
                                          {"NoPdlType", "usb://h"},
                                          {"EmptyUri", ""}}),
                         RowName<SourceRow>);

TEST(IoLibraryNull, IsRefused) {
  char* path = kOtherText;
  EXPECT_EQ(MqpdUriToFullPathOfIOLib(nullptr, &path), -1);
  EXPECT_EQ(path, kOtherText);
  EXPECT_EQ(MqpdUriToFullPathOfIOLib("usb://h/PDLType=ps", nullptr), -1);
}

class MqpdUtil : public testing::TestWithParam<PathRow> {};

TEST_P(MqpdUtil, IsInTheGivenFolder) {
  const auto folder = ExactText(GetParam().source);
  char* path = nullptr;
  EXPECT_EQ(FolderPathToFullPathOfMqpdUtil(folder.get(), &path), 0);
  EXPECT_THAT(OwnedText(path).get(), StrEq(GetParam().path));
}

INSTANTIATE_TEST_SUITE_P(
    Folders, MqpdUtil,
    Rows<PathRow>({{"Known", PRINTERS "CUPSFAX", PRINTERS "CUPSFAX/Bidi/libmqpd_util.so"},
                   {"Unknown", "/opt/x", "/opt/x/Bidi/libmqpd_util.so"},
                   {"Relative", "x", "x/Bidi/libmqpd_util.so"},
                   {"Empty", "", "/Bidi/libmqpd_util.so"},
                   {"SlashAtTheEndStays", "/opt/", "/opt//Bidi/libmqpd_util.so"},
                   {"PercentIsNoFormat", "%s%n", "%s%n/Bidi/libmqpd_util.so"},
                   {"BytesAbove127", "\xC3\xA4", "\xC3\xA4/Bidi/libmqpd_util.so"}}),
    RowName<PathRow>);

TEST(MqpdUtilNull, IsRefused) {
  char* path = kOtherText;
  EXPECT_EQ(FolderPathToFullPathOfMqpdUtil(nullptr, &path), -1);
  EXPECT_EQ(path, kOtherText);
  EXPECT_EQ(FolderPathToFullPathOfMqpdUtil("/opt", nullptr), -1);
}

TEST(FolderOfAnyLength, IsTakenFromTheUri) {
  const std::string folder(100'000, 'd');
  char* found = nullptr;
  EXPECT_EQ(MqpdUriToFullPathOfDriverFolder(("net:h/PDLType=drv" + folder).c_str(), &found), 0);
  EXPECT_EQ(OwnedText(found).get(), folder);
}

TEST(Directories, AreFixed) {
  EXPECT_THAT(OwnedText(drivsrctools_PathUtil_NSCachesDirectory()).get(), StrEq("/var/cache"));
  EXPECT_THAT(OwnedText(drivsrctools_PathUtil_NSTemporaryDirectory()).get(),
              StrEq("/var/cache/Vorel/CUPS_SFP/"));
}

TEST(Directories, AreFreshCopies) {
  const OwnedText cache(drivsrctools_PathUtil_NSCachesDirectory());
  *cache = 'x';
  EXPECT_THAT(OwnedText(drivsrctools_PathUtil_NSCachesDirectory()).get(), StrEq("/var/cache"));
}

}  // namespace
}  // namespace ia_test
