// The rules by which a configuration text is read, through the functions that take it.
#include "queue/conf_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/info_common/named_row.h"
#include "tests/queue/conf_answers.h"

namespace ia_test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using Names = std::vector<std::string>;

constexpr char kUri[] = "net:192.0.2.10/PDLType=kappa2";

struct NamesRow : NamedRow {
  std::string text;
  Names names;
};

class QueueNames : public testing::TestWithParam<NamesRow> {};

TEST_P(QueueNames, AreCounted) {
  EXPECT_EQ(CountOf(GetParam().text), static_cast<int32_t>(GetParam().names.size()));
}

TEST_P(QueueNames, AreListedInTheOrderOfTheFile) {
  ConfOf conf(GetParam().text);
  EXPECT_THAT(NamesOf(conf), Optional(GetParam().names));
}

TEST_P(QueueNames, AreTakenOneAfterTheOther) {
  const ConfOf conf(GetParam().text);
  Names names;
  char* next = conf.start();
  for (char* name = nullptr; zGetFirstQueueName(next, conf.end(), &next, &name) == 1;) {
    names.push_back(*TakeText(name));
  }
  EXPECT_EQ(names, GetParam().names);
  EXPECT_EQ(next, conf.end());
}

TEST_P(QueueNames, AreEachFound) {
  for (const std::string& name : GetParam().names) EXPECT_TRUE(DeviceOf(GetParam().text, name));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, QueueNames,
    Rows<NamesRow>({{"One", "<Printer office>\n", {"office"}},
                    {"WithoutLineFeed", "<Printer office>", {"office"}},
                    {"Two", "<Printer a>\nDevicePath net:x\n</Printer>\n<Printer b>\n", {"a", "b"}},
                    {"Three", "<Printer b>\n\n<Printer a>\nx\n<Printer c>", {"b", "a", "c"}},
                    {"LinesThatFollowEachOther", "<Printer a>\n<Printer b>\n", {"a", "b"}},
                    {"SameNameTwice", "<Printer a>\n<Printer a>\n", {"a", "a"}},
                    {"TextBeforeTheMark", "x <Printer a>\n", {"a"}},
                    {"TextAfterTheName", "<Printer a> x\n", {"a"}},
                    {"BlanksBeforeTheMark", "  <Printer a>\n", {"a"}},
                    {"BlanksAndHashAreNoComment", "  # <Printer a>\n", {"a"}},
                    {"TabAndHashAreNoComment", "\t#<Printer a>\n", {"a"}},
                    {"HashInsideTheLine", "<Printer a#b> # c\n", {"a#b"}},
                    {"NameWithBlanks", "<Printer a b >\n", {"a b "}},
                    {"NameThatBeginsWithABlank", "<Printer  a>\n", {" a"}},
                    {"NameWithBytesAbove127", "<Printer B\xC3\xBCro\xFF>\n", {"B\xC3\xBCro\xFF"}},
                    {"NameWithPercents", "<Printer %s%n>\n", {"%s%n"}},
                    {"NameWithTheMark", "<Printer a <Printer b>\n", {"a <Printer b"}},
                    {"EmptyName", "<Printer >\n", {""}},
                    {"NameUpToTheFirstEnd", "<Printer a> b>\n", {"a"}},
                    {"OneNameForALine", "<Printer a><Printer b>\n", {"a"}},
                    {"EndBeforeTheMark", "> <Printer a>\n", {"a"}},
                    {"LineOfCarriageReturn", "<Printer a>\r\n<Printer b>\r\n", {"a", "b"}},
                    {"NulBeforeTheMark", "x\0y\n\0<Printer a>\n"s, {"a"}},
                    {"NulAfterTheName", "<Printer a>\0\n<Printer b>"s, {"a", "b"}},
                    {"LineFeedsFirst", "\n\n\n<Printer a>\n\n", {"a"}}}),
    RowName<NamesRow>);

INSTANTIATE_TEST_SUITE_P(
    NearMisses, QueueNames,
    Rows<NamesRow>({{"Nothing", "", {}},
                    {"LineFeed", "\n", {}},
                    {"Comment", "#<Printer a>\n", {}},
                    {"CommentBeforeAQueue", "# <Printer a>\n<Printer b>\n", {"b"}},
                    {"CommentAfterAQueue", "<Printer a>\n# <Printer b>\n", {"a"}},
                    {"CommentAtTheEnd", "\n#<Printer a>", {}},
                    {"NoEnd", "<Printer a\n", {}},
                    {"NoEndAtTheEndOfTheText", "<Printer a", {}},
                    {"EndOnTheNextLine", "<Printer a\n>\n", {}},
                    {"EndBeforeTheMarkOnly", "> <Printer a\n", {}},
                    {"NoEndBeforeAQueue", "<Printer a\n<Printer b>\n", {"b"}},
                    {"NoBlank", "<Printer>\n", {}},
                    {"TabForTheBlank", "<Printer\ta>\n", {}},
                    {"LineFeedForTheBlank", "<Printer\na>\n", {}},
                    {"NoBracket", "Printer a>\n", {}},
                    {"ClosingTag", "</Printer a>\n", {}},
                    {"OtherCase", "<printer a>\n<PRINTER b>\n", {}},
                    {"MarkCutByTheEnd", "<Printer", {}},
                    {"MarkAlone", "<Printer ", {}},
                    {"NulInTheMark", "<Printer\0 a>\n"s, {}}}),
    RowName<NamesRow>);

// Each prefix of a text, in a block that ends with it.
TEST(QueueNamesOfAnyPrefix, AreThoseWhoseLinesGoToTheirEnd) {
  const std::string text = "# x\n<Printer a>\nDevicePath net:h/PDLType=fax\n<Printer b>\n";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    SCOPED_TRACE(length);
    const std::string prefix = text.substr(0, length);
    const std::size_t b = text.find("b>");
    const int32_t names = (length > text.find('>') ? 1 : 0) + (length > b + 1 ? 1 : 0);
    EXPECT_EQ(CountOf(prefix), names);
    ConfOf conf(prefix);
    EXPECT_EQ(NamesOf(conf)->size(), static_cast<std::size_t>(names));
    EXPECT_EQ(NameForUri(prefix, "h/PDL"),
              length >= text.find("Type") ? std::optional("a"s) : std::nullopt);
  }
}

TEST(FirstQueueName, IsCutOffInTheText) {
  const ConfOf conf("# x\n<Printer a>\n<Printer b>\n");
  char* next = nullptr;
  char* name = nullptr;
  EXPECT_EQ(zGetFirstQueueName(conf.start(), conf.end(), &next, &name), 1);
  EXPECT_EQ(TakeText(name), "a");
  EXPECT_EQ(conf.text(), "# x\n<Printer a\0\n<Printer b>\n"s);
  EXPECT_EQ(next - conf.start(), 16);
}

TEST(FirstQueueName, IsFollowedByTheEndInALastLineWithoutLineFeed) {
  const ConfOf conf("<Printer a>");
  char* next = nullptr;
  char* name = nullptr;
  EXPECT_EQ(zGetFirstQueueName(conf.start(), conf.end(), &next, &name), 1);
  EXPECT_EQ(TakeText(name), "a");
  EXPECT_EQ(next, conf.end());
}

TEST(FirstQueueName, IsNullAndFollowedByTheEndWhereThereIsNone) {
  const ConfOf conf("# <Printer a>\n");
  char* next = nullptr;
  char other[] = "other";
  char* name = other;
  EXPECT_EQ(zGetFirstQueueName(conf.start(), conf.end(), &next, &name), 0);
  EXPECT_EQ(name, nullptr);
  EXPECT_EQ(next, conf.end());
}

// A handle returns each of its names once.
TEST(SecondListOfAHandle, IsEmpty) {
  ConfOf conf("<Printer a>\nDevicePath net:h/PDLType=fax\n<Printer b> x\n");
  EXPECT_THAT(NamesOf(conf), Optional(ElementsAre("a", "b")));
  EXPECT_EQ(conf.text(), "<Printer a\0\nDevicePath net:h/PDLType=fax\n<Printer b\0 x\n"s);
  EXPECT_THAT(NamesOf(conf), Optional(IsEmpty()));
  char* address = nullptr;
  char* protocol = nullptr;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(conf.get(), "a", &address, &protocol), 0);
}

TEST(SecondListOfAHandle, IsEmptyAlsoWhereALineHasASecondEnd) {
  ConfOf conf("<Printer a> b>\n<Printer c>\n");
  EXPECT_THAT(NamesOf(conf), Optional(ElementsAre("a", "c")));
  EXPECT_THAT(NamesOf(conf), Optional(IsEmpty()));
}

TEST(QueueCount, LineWithANulInItsNameIsNoQueue) {
  const ConfOf conf("<Printer a\0b>\n<Printer c> \0 x\n"s);
  EXPECT_EQ(zGetQueueCount(conf.start(), conf.end()), 1);
}

TEST(DeviceOfAQueue, PdlTypeAheadOfTheDevicePathDoesNotEndTheAddress) {
  EXPECT_EQ(DeviceOf("<Printer a>\n/PDLType=fax DevicePath net:h\n", "a"),
            (ModelDevice{std::nullopt, "net:"}));
}

TEST(DeviceOfAQueue, IsFoundWithoutChangingTheText) {
  ConfOf conf("<Printer a>\nDevicePath net:h/PDLType=fax\n");
  const std::string before = conf.text();
  char* address = nullptr;
  char* protocol = nullptr;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(conf.get(), "a", &address, &protocol), 1);
  EXPECT_EQ(TakeText(address), "h");
  EXPECT_EQ(TakeText(protocol), "net:");
  EXPECT_EQ(conf.text(), before);
}

struct UriRow : NamedRow {
  std::string text;
  std::string uri;
  std::optional<std::string> queue;
};

class QueueWithUri : public testing::TestWithParam<UriRow> {};

TEST_P(QueueWithUri, IsFoundByItsDevicePath) {
  EXPECT_EQ(NameForUri(GetParam().text, GetParam().uri), GetParam().queue);
}

TEST_P(QueueWithUri, LeavesTheTextAsItIs) {
  const ConfOf conf(GetParam().text);
  char* name = nullptr;
  zGetQueueNameFromPrinterAddress(conf.start(), conf.end(), GetParam().uri.c_str(), &name);
  TakeText(name);
  EXPECT_EQ(conf.text(), GetParam().text);
}

const std::string kPath = "DevicePath "s + kUri;

INSTANTIATE_TEST_SUITE_P(
    Found, QueueWithUri,
    Rows<UriRow>(
        {{"Only", "<Printer a>\n" + kPath + "\n</Printer>\n", kUri, "a"},
         {"WithoutLineFeed", "<Printer a>\n" + kPath, kUri, "a"},
         {"Second", "<Printer a>\nDevicePath net:h\n<Printer b>\n" + kPath, kUri, "b"},
         {"FirstOfTwo", "<Printer b>\n" + kPath + "\n<Printer a>\n" + kPath, kUri, "b"},
         {"FirstWhoseUriIsLonger", "<Printer b>\n" + kPath + "x\n<Printer a>\n" + kPath, kUri, "b"},
         {"InsideThePath", "<Printer a>\nDevicePath x" + std::string(kUri) + "y\n", kUri, "a"},
         {"PartOfAUri", "<Printer a>\n" + kPath, "192.0.2.1", "a"},
         {"BlanksBeforeDevicePath", "<Printer a>\n  " + kPath + "\n", kUri, "a"},
         {"BlanksAndHashAreNoComment", "<Printer a>\n #" + kPath + "\n", kUri, "a"},
         {"QueueLineThatLooksLikeAComment", "  # <Printer a>\n" + kPath + "\n", kUri, "a"},
         {"PathOnAQueueLine", "<Printer a>\n<Printer b>" + kPath + "\n", kUri, "a"},
         {"QueueLineBetween", "<Printer a>\n<Printer b>\n" + kPath + "\n", kUri, "b"},
         {"UriAlsoBeforeDevicePath", "<Printer a>\n" + (kUri + (" " + kPath)), kUri, "a"},
         {"SecondDevicePath", "<Printer a>\nDevicePath " + kPath, kUri, "a"},
         {"CarriageReturn", "<Printer a>\r\n" + kPath + "\r\n", kUri, "a"},
         {"NulBeforeTheUri", "<Printer a>\nDevicePath \0"s + kUri, kUri, "a"},
         {"NulInTheLineBefore", "\0<Printer a>\0\n"s + kPath, kUri, "a"},
         {"EmptyName", "<Printer >\n" + kPath, kUri, ""},
         {"EmptyUri", "x\n<Printer a>\nx\n<Printer b>\nDevicePath \n", "", "b"}}),
    RowName<UriRow>);

INSTANTIATE_TEST_SUITE_P(
    NotFound, QueueWithUri,
    Rows<UriRow>(
        {{"Nothing", "", kUri, {}},
         {"NothingForNothing", "", "", {}},
         {"TwoLinesBelow", "<Printer a>\nState Idle\n" + kPath + "\n", kUri, {}},
         {"EmptyLineBetween", "<Printer a>\n\n" + kPath + "\n", kUri, {}},
         {"CommentBetween", "<Printer a>\n# x\n" + kPath + "\n", kUri, {}},
         {"PathInAComment", "<Printer a>\n#" + kPath + "\n", kUri, {}},
         {"QueueInAComment", "#<Printer a>\n" + kPath + "\n", kUri, {}},
         {"QueueWithoutEnd", "<Printer a\n" + kPath + "\n", kUri, {}},
         {"QueueAfterwards", kPath + "\n<Printer a>\n", kUri, {}},
         {"OnTheQueueLine", "<Printer a> " + kPath + "\n", kUri, {}},
         {"OnlyAQueue", "<Printer a>\n", kUri, {}},
         {"OtherDevice", "<Printer a>\nDevicePath net:192.0.2.11/PDLType=kappa2\n", kUri, {}},
         {"OneByteShort", "<Printer a>\nDevicePath net:192.0.2.10/PDLType=kappa\n", kUri, {}},
         {"OtherCase", "<Printer a>\nDevicePath NET:192.0.2.10/PDLType=kappa2\n", kUri, {}},
         {"NoBlankAfterDevicePath", "<Printer a>\nDevicePath" + std::string(kUri) + "\n", kUri, {}},
         {"DevicePathInOtherCase", "<Printer a>\ndevicepath " + std::string(kUri) + "\n", kUri, {}},
         {"BeforeDevicePathOnly",
          "<Printer a>\n" + std::string(kUri) + " DevicePath x\n",
          kUri,
          {}},
         {"AcrossTwoLines", "<Printer a>\nDevicePath net:h\nx\n", "net:h\nx", {}},
         {"WithALineFeed", "<Printer a>\nDevicePath net:h\n", "net:h\n", {}},
         {"EmptyUriWithoutDevicePath", "<Printer a>\nx\n", "", {}}}),
    RowName<UriRow>);

struct DeviceRow : NamedRow {
  std::string text;
  std::string queue;
  std::optional<ModelDevice> device;
};

class DeviceOfQueue : public testing::TestWithParam<DeviceRow> {};

TEST_P(DeviceOfQueue, IsReadFromTheNextLine) {
  EXPECT_EQ(DeviceOf(GetParam().text, GetParam().queue), GetParam().device);
}

constexpr std::nullopt_t kNone = std::nullopt;

INSTANTIATE_TEST_SUITE_P(
    Endpoints, DeviceOfQueue,
    Rows<DeviceRow>({{"Net", "<Printer a>\nDevicePath net:192.0.2.10/PDLType=ps\n", "a",
                      ModelDevice{"192.0.2.10", "net:"}},
                     {"Net6", "<Printer a>\nDevicePath net6:2001:db8::1/PDLType=ps\n", "a",
                      ModelDevice{"2001:db8::1", "net6:"}},
                     {"Mdns", "<Printer a>\nDevicePath mdns:P._ipp/PDLType=ps\n", "a",
                      ModelDevice{"P._ipp", "mdns:"}},
                     {"Usb", "<Printer a>\nDevicePath usb://Vorel/X1/PDLType=ps\n", "a",
                      ModelDevice{"Vorel/X1", "usb://"}},
                     {"UsbCdc", "<Printer a>\nDevicePath ncap_usb_cdc://Vorel/PDLType=ps\n", "a",
                      ModelDevice{"Vorel", "ncap_usb_cdc://"}},
                     {"NotUse", "<Printer a>\nDevicePath notuse:/PDLType=ps\n", "a",
                      ModelDevice{"", "notuse:"}}}),
    RowName<DeviceRow>);

INSTANTIATE_TEST_SUITE_P(
    Shapes, DeviceOfQueue,
    Rows<DeviceRow>(
        {{"WithoutLineFeed", "<Printer a>\nDevicePath net:h/PDLType=", "a",
          ModelDevice{"h", "net:"}},
         {"UnknownFamily", "<Printer a>\nDevicePath net:h/PDLType=x\n", "a",
          ModelDevice{"h", "net:"}},
         {"FirstPdlTypeCounts", "<Printer a>\nDevicePath net:h/PDLType=x/PDLType=y\n", "a",
          ModelDevice{"h", "net:"}},
         {"TextBeforeDevicePath", "<Printer a>\n  x DevicePath net:h/PDLType=x\n", "a",
          ModelDevice{"h", "net:"}},
         {"FirstOfSameName",
          "<Printer a>\nDevicePath net:1/PDLType=\n<Printer a>\nDevicePath net:2/PDLType=\n", "a",
          ModelDevice{"1", "net:"}},
         {"FirstOfSameNameWithoutPath", "<Printer a>\nx\n<Printer a>\nDevicePath net:2/PDLType=\n",
          "a", ModelDevice{}},
         {"LongerNameBefore",
          "<Printer ab>\nDevicePath net:1/PDLType=\n<Printer a>\nDevicePath net:2/PDLType=\n", "a",
          ModelDevice{"2", "net:"}},
         {"NameInAnotherLine", "a\n<Printer b>\na\n<Printer a>\nDevicePath net:2/PDLType=\n", "a",
          ModelDevice{"2", "net:"}},
         {"EmptyName", "x\n<Printer >\nDevicePath net:2/PDLType=\n", "", ModelDevice{"2", "net:"}},
         {"NextQueueLineHoldsThePath", "<Printer a>\n<Printer b> DevicePath net:2/PDLType=\n", "a",
          ModelDevice{"2", "net:"}},
         {"NoPdlType", "<Printer a>\nDevicePath net:h\n", "a", ModelDevice{kNone, "net:"}},
         {"PdlTypeOnTheNextLine", "<Printer a>\nDevicePath net:h\n/PDLType=x\n", "a",
          ModelDevice{kNone, "net:"}},
         {"PdlTypeOneByteShort", "<Printer a>\nDevicePath net:h/PDLType\n", "a",
          ModelDevice{kNone, "net:"}},
         {"SlashOfThePrefix", "<Printer a>\nDevicePath usb://PDLType=x\n", "a",
          ModelDevice{kNone, "usb://"}},
         {"PrefixAlone", "<Printer a>\nDevicePath net:", "a", ModelDevice{kNone, "net:"}},
         {"NulInTheAddress", "<Printer a>\nDevicePath net:h\0i/PDLType=x\n"s, "a",
          ModelDevice{"h", "net:"}}}),
    RowName<DeviceRow>);

INSTANTIATE_TEST_SUITE_P(
    WithoutDevice, DeviceOfQueue,
    Rows<DeviceRow>(
        {{"NoDevicePath", "<Printer a>\nState Idle\n", "a", ModelDevice{}},
         {"TwoLinesBelow", "<Printer a>\nx\nDevicePath net:h/PDLType=\n", "a", ModelDevice{}},
         {"CommentBetween", "<Printer a>\n#x\nDevicePath net:h/PDLType=\n", "a", ModelDevice{}},
         {"PathInAComment", "<Printer a>\n#DevicePath net:h/PDLType=\n", "a", ModelDevice{}},
         {"OnTheQueueLine", "<Printer a> DevicePath net:h/PDLType=\n", "a", ModelDevice{}},
         {"LastLine", "<Printer a>", "a", ModelDevice{}},
         {"LastLineWithLineFeed", "<Printer a>\n", "a", ModelDevice{}},
         {"NoBlankAfterDevicePath", "<Printer a>\nDevicePath\n", "a", ModelDevice{}}}),
    RowName<DeviceRow>);

INSTANTIATE_TEST_SUITE_P(
    NotFound, DeviceOfQueue,
    Rows<DeviceRow>({{"Nothing", "", "a", kNone},
                     {"NothingForNothing", "", "", kNone},
                     {"OtherQueue", "<Printer b>\nDevicePath net:h/PDLType=\n", "a", kNone},
                     {"LongerName", "<Printer ab>\nDevicePath net:h/PDLType=\n", "a", kNone},
                     {"ShorterName", "<Printer a>\nDevicePath net:h/PDLType=\n", "ab", kNone},
                     {"OtherCase", "<Printer A>\nDevicePath net:h/PDLType=\n", "a", kNone},
                     {"NameWithANul", "<Printer a\0b>\nDevicePath net:h/PDLType=\n"s, "a", kNone},
                     {"NameWithAnEnd", "<Printer a>b>\nDevicePath net:h/PDLType=\n", "a>b", kNone},
                     {"Comment", "#<Printer a>\nDevicePath net:h/PDLType=\n", "a", kNone},
                     {"NoEnd", "<Printer a\nDevicePath net:h/PDLType=\n", "a", kNone},
                     {"UnknownPrefix", "<Printer a>\nDevicePath ipp://h/PDLType=\n", "a", kNone},
                     {"PrefixInOtherCase", "<Printer a>\nDevicePath NET:h/PDLType=\n", "a", kNone},
                     {"BlankBeforePrefix", "<Printer a>\nDevicePath  net:h/PDLType=\n", "a", kNone},
                     {"EmptyPath", "<Printer a>\nDevicePath \nnet:h", "a", kNone}}),
    RowName<DeviceRow>);

// Null rules of the functions that take a text; outputs are set anyway.
char g_other[] = "other";

TEST(NullText, HasNoQueues) {
  EXPECT_EQ(zGetQueueCount(nullptr, nullptr), 0);
  EXPECT_EQ(zGetQueueCount(g_other, nullptr), 0);
  EXPECT_EQ(zGetQueueCount(nullptr, g_other), 0);
}

TEST(NullText, HasNoFirstQueue) {
  for (char* end : {static_cast<char*>(nullptr), g_other}) {
    char* next = g_other + 1;
    char* name = g_other;
    EXPECT_EQ(zGetFirstQueueName(nullptr, end, &next, &name), 0);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(next, end);
  }
  char* next = g_other;
  char* name = g_other;
  EXPECT_EQ(zGetFirstQueueName(g_other, nullptr, &next, &name), 0);
  EXPECT_EQ(name, nullptr);
  EXPECT_EQ(next, nullptr);
}

TEST(NullText, AnswersNoLookup) {
  char* name = g_other;
  EXPECT_EQ(zGetQueueNameFromPrinterAddress(nullptr, nullptr, "", &name), 0);
  EXPECT_EQ(name, nullptr);
  char* address = g_other;
  char* protocol = g_other;
  EXPECT_EQ(zGetPrinterAddressAndIOLibType(nullptr, nullptr, "", &address, &protocol), 0);
  EXPECT_EQ(address, nullptr);
  EXPECT_EQ(protocol, nullptr);
}

TEST(TextWhoseEndIsBeforeItsStart, IsEmpty) {
  const ConfOf conf("<Printer a>\n" + kPath);
  EXPECT_EQ(zGetQueueCount(conf.end(), conf.start()), 0);
  char* next = nullptr;
  char* name = g_other;
  EXPECT_EQ(zGetFirstQueueName(conf.end(), conf.start(), &next, &name), 0);
  EXPECT_EQ(next, conf.start());
  EXPECT_EQ(name, nullptr);
  name = g_other;
  EXPECT_EQ(zGetQueueNameFromPrinterAddress(conf.end(), conf.start(), kUri, &name), 0);
  EXPECT_EQ(name, nullptr);
}

TEST(NullArguments, AreRefusedByTheWalk) {
  const ConfOf conf("<Printer a>\n");
  char* next = g_other;
  char* name = g_other;
  EXPECT_EQ(zGetFirstQueueName(conf.start(), conf.end(), nullptr, &name), 0);
  EXPECT_EQ(name, nullptr);
  EXPECT_EQ(zGetFirstQueueName(conf.start(), conf.end(), &next, nullptr), 0);
  EXPECT_EQ(next, nullptr);
  EXPECT_EQ(conf.text(), "<Printer a>\n");
}

TEST(NullArguments, AreRefusedByTheLookupOfAUri) {
  const ConfOf conf("<Printer a>\n" + kPath);
  char* name = g_other;
  EXPECT_EQ(zGetQueueNameFromPrinterAddress(conf.start(), conf.end(), nullptr, &name), 0);
  EXPECT_EQ(name, nullptr);
  EXPECT_EQ(zGetQueueNameFromPrinterAddress(conf.start(), conf.end(), kUri, nullptr), 0);
}

TEST(NullArguments, AreRefusedByTheLookupOfAQueue) {
  const ConfOf conf("<Printer a>\n" + kPath);
  char* address = g_other;
  char* protocol = g_other;
  EXPECT_EQ(zGetPrinterAddressAndIOLibType(conf.start(), conf.end(), nullptr, &address, &protocol),
            0);
  EXPECT_EQ(address, nullptr);
  EXPECT_EQ(protocol, nullptr);
  protocol = g_other;
  EXPECT_EQ(zGetPrinterAddressAndIOLibType(conf.start(), conf.end(), "a", nullptr, &protocol), 0);
  EXPECT_EQ(protocol, nullptr);
  address = g_other;
  EXPECT_EQ(zGetPrinterAddressAndIOLibType(conf.start(), conf.end(), "a", &address, nullptr), 0);
  EXPECT_EQ(address, nullptr);
}

}  // namespace
}  // namespace ia_test
