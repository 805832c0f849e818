#include <errno.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/option_table.h"
#include "tests/info_common/any_ppd.h"
#include "tests/info_common/named_row.h"
#include "tests/info_common/ppd_model.h"
#include "tests/info_common/ppd_test.h"
#include "tests/support/print_queues.h"

namespace ia_test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::Pair;

constexpr char kSpecList[] = "QVValueListSpecID";
constexpr char kPlatformList[] = "QVValueListPlatformVersion";

const std::string kSpecOpen = "*OpenUI *QVSpecID/Specification: PickOne\n";
const std::string kSpecClose = "*CloseUI: *QVSpecID\n";
const std::string kPlatformOpen = "*OpenUI *QVPlatformVersion/Platform: PickOne\n";
const std::string kPlatformClose = "*CloseUI: *QVPlatformVersion\n";
const std::string kOtherOpen = "*OpenUI *PageSize/Page Size: PickOne\n";
const std::string kOtherClose = "*CloseUI: *PageSize\n";

struct PpdRow : NamedRow {
  std::string ppd;
  Entries entries;
};

class PpdReader : public PpdTest, public testing::WithParamInterface<PpdRow> {};

TEST_P(PpdReader, GivesTheTable) { EXPECT_EQ(ReadPpd(GetParam().ppd), GetParam().entries); }

TEST_P(PpdReader, GivesWhatTheModelGives) {
  EXPECT_EQ(EntriesOfPpd(GetParam().ppd), GetParam().entries);
}

INSTANTIATE_TEST_SUITE_P(
    OptionLines, PpdReader,
    Rows<PpdRow>(
        {{"Usual", "*QVAnlz_DriverName: \"RA-H2\"\n", {{"QVAnlz_DriverName", "RA-H2"}}},
         {"OnlyAKey", "*QVFoo\n", {{"QVFoo", ""}}},
         {"EmptyQuotes", "*QVFoo:   \"\"\n", {{"QVFoo", ""}}},
         {"BlanksInsideStay", "*QVFoo: \"a b\"c\n", {{"QVFoo", "a b"}}},
         {"OnlyTheLettersQv", "*QV: 1\n", {{"QV", "1"}}},
         {"FirstByteMayBeAny",
          "xQVA: 1\n%QVB: 2\n QVC: 3\nQQVD: 4\n\xFFQVE: 5\n\tQVF: 6\n",
          {{"QVF", "6"}, {"QVE", "5"}, {"QVD", "4"}, {"QVC", "3"}, {"QVB", "2"}, {"QVA", "1"}}},
         {"WithoutAFirstByte", "QVA: 1\n", {}},
         {"TwoFirstBytes", "**QVA: 1\n", {}},
         {"SmallLetters", "*qvA: 1\n*Qva: 1\n*qVa: 1\n", {}},
         {"BrokenOff", "*Q\n*\n\n", {}},
         {"OpenUiAfterQvIsAnOption", "*QVOpenUI: 1\n*QVB: 2\n", {{"QVB", "2"}, {"QVOpenUI", "1"}}},
         {"KeysWithSlashesAndStars", "*QVA*/b: 1\n", {{"QVA*/b", "1"}}}}),
    RowName<PpdRow>);

INSTANTIATE_TEST_SUITE_P(
    UiValueLines, PpdReader,
    Rows<PpdRow>(
        {{"Usual", "*%QVUIValue: *QVColorMode(mono)\n", {{"QVColorMode", "mono"}}},
         {"WithoutBlank", "*%QVUIValue:QVA(1)\n", {{"QVA", "1"}}},
         {"EmptyValue", "*%QVUIValue: *QVA()\n", {{"QVA", ""}}},
         {"NoParenthesis", "*%QVUIValue: *QVA\n", {{"QVA", ""}}},
         {"AnyKey", "*%QVUIValue: *PageSize(A4)\n", {{"PageSize", "A4"}}},
         {"NothingGivesAnEmptyKeyToAnEmptyTable", "*%QVUIValue:\n", {{"", ""}}},
         {"NothingGivesNothingToAFilledTable", "*QVA: 1\n*%QVUIValue:(x)\n", {{"QVA", "1"}}},
         {"EmptyKeyIsChanged",
          "*%QVUIValue:(x)\n*QVA: 1\n*%QVUIValue:(y)\n",
          {{"QVA", "1"}, {"", "y"}}},
         {"OtherCase", "*%qvuivalue: *QVA(1)\n*%QVUIVALUE: *QVA(1)\n", {}},
         {"OtherFirstByte", "x%QVUIValue: *QVA(1)\n", {}},
         {"BlankBefore", " *%QVUIValue: *QVA(1)\n", {}},
         {"WithoutColon", "*%QVUIValue *QVA(1)\n", {}},
         {"OtherComment", "*% QVUIValue: *QVA(1)\n", {}}}),
    RowName<PpdRow>);

INSTANTIATE_TEST_SUITE_P(
    Blocks, PpdReader,
    Rows<PpdRow>(
        {{"SpecId",
          "*OpenUI *QVSpecID/Spec: PickOne\n*QVSpecID 1A/One: \"\"\n*QVSpecID 2B/Two: "
          "\"\"\n*CloseUI: *QVSpecID\n",
          {{kSpecList, "1A,2B"}}},
         {"PlatformVersion",
          kPlatformOpen +
              "*QVPlatformVersion 10/Ten: \"\"\n*QVPlatformVersion 20/Twenty: "
              "\"\"\n" +
              kPlatformClose,
          {{kPlatformList, "10,20"}}},
         {"OneChoice", kSpecOpen + "*QVSpecID 1A/One\n" + kSpecClose, {{kSpecList, "1A"}}},
         {"ChoicesAreKeptTwice",
          kSpecOpen + "*QVSpecID 1A/\n*QVSpecID 1A/\n" + kSpecClose,
          {{kSpecList, "1A,1A"}}},
         {"ListStandsWhereTheBlockEnds",
          "*QVA: 1\n" + kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose + "*QVB: 2\n",
          {{"QVB", "2"}, {kSpecList, "1A"}, {"QVA", "1"}}},
         {"BothBlocks",
          kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose + kPlatformOpen + "*QVPlatformVersion 10/\n" +
              kPlatformClose,
          {{kPlatformList, "10"}, {kSpecList, "1A"}}},
         {"EmptyBlock", kSpecOpen + kSpecClose, {}},
         {"SecondBlockChangesTheListInPlace",
          kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose + "*QVB: 2\n" + kSpecOpen + "*QVSpecID 2B/\n" +
              kSpecClose,
          {{"QVB", "2"}, {kSpecList, "2B"}}},
         {"BlockChangesAnEqualOptionLine",
          "*QVValueListSpecID: \"x\"\n" + kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose,
          {{kSpecList, "1A"}}},
         {"OptionLineChangesTheListOfABlock",
          kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose + "*QVValueListSpecID: \"x\"\n",
          {{kSpecList, "x"}}},
         {"LongerKeySwallowsTheList",
          "*QVValueListSpecIDs: 1\n" + kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose,
          {{"QVValueListSpecIDs", "1"}}},
         {"OptionLinesInsideAreNone",
          kOtherOpen + "*QVA: 1\n*QVSpecID 1A/One\n" + kOtherClose + "*QVB: 2\n",
          {{"QVB", "2"}}},
         {"UiValueLinesInsideAreNone",
          kOtherOpen + "*%QVUIValue: *QVA(1)\n" + kOtherClose + "*%QVUIValue: *QVB(2)\n",
          {{"QVB", "2"}}},
         {"OptionLinesOnlyInsideANamedBlock",
          kSpecOpen + "*QVA: 1\n*QVB: 2\n*QVSpecID 1A/\n" + kSpecClose,
          {{kSpecList, "1A"}}},
         {"OptionLinesOnlyInsideOtherBlocks", kOtherOpen + "*QVA: 1\n" + kOtherClose, {}}}),
    RowName<PpdRow>);

INSTANTIATE_TEST_SUITE_P(
    BlockStarts, PpdReader,
    Rows<PpdRow>(
        {{"FirstByteMayBeAny",
          "#OpenUI *QVSpecID\n*QVSpecID 1A/\n" + kSpecClose,
          {{kSpecList, "1A"}}},
         {"WithoutAFirstByte",
          "OpenUI *QVSpecID\n*QVSpecID 1A/\n" + kSpecClose,
          {{"QVSpecID", "1A/"}}},
         {"OtherCase", "*openUI *QVSpecID\n*QVSpecID 1A/\n" + kSpecClose, {{"QVSpecID", "1A/"}}},
         {"AfterOtherLetters",
          "*JCLOpenUI *QVSpecID\n*QVSpecID 1A/\n" + kSpecClose,
          {{"QVSpecID", "1A/"}}},
         {"MoreLettersFollow",
          "*OpenUIx QVSpecID\n*QVSpecID 1A/\n" + kSpecClose,
          {{kSpecList, "1A"}}},
         {"NothingFollows", "*OpenUI\n*QVA: 1\n*CloseUI\n*QVB: 2\n", {{"QVB", "2"}}},
         {"NameAnywhereInTheLine",
          "*OpenUI *PageSize/instead of QVSpecID: PickOne\n*PageSize A4/A4\n" + kOtherClose,
          {{kSpecList, "A4"}}},
         {"NameInsideALongerWord",
          "*OpenUI *MyQVSpecIDs\n*QVSpecID 1A/\n" + kSpecClose,
          {{kSpecList, "1A"}}},
         {"NameInOtherCase", "*OpenUI *QVSpecId\n*QVSpecID 1A/\n" + kSpecClose, {}},
         {"BothNamesMeanThePlatform",
          "*OpenUI *QVSpecID/QVPlatformVersion: PickOne\n*QVSpecID 1A/One\n"
          "*QVPlatformVersion 10/Ten\n*CloseUI\n",
          {{kPlatformList, "10"}}},
         {"BothNamesTheOtherWayRound",
          "*OpenUI *QVPlatformVersion/QVSpecID: PickOne\n*QVPlatformVersion 10/Ten\n*CloseUI\n",
          {{kPlatformList, "10"}}},
         {"InsideANamedBlockKeepsTheName",
          kSpecOpen + "*QVSpecID 1A/\n" + kOtherOpen + "*QVSpecID 2B/\n" + kOtherClose +
              "*QVSpecID: 3C\n" + kSpecClose,
          {{"QVSpecID", "3C"}, {kSpecList, "1A,2B"}}},
         {"InsideANamedBlockMayChangeTheName",
          kSpecOpen + "*QVSpecID 1A/\n" + kPlatformOpen + "*QVPlatformVersion 10/\n" +
              kPlatformClose,
          {{kPlatformList, "1A,10"}}},
         {"InsideAnotherBlockGivesAName",
          kOtherOpen + "*QVSpecID 0/\n" + kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose,
          {{kSpecList, "1A"}}},
         {"NameSurvivesAnUnclosedBlock",
          kSpecOpen + kOtherOpen + "*QVSpecID 1A/\n" + kOtherClose,
          {{kSpecList, "1A"}}},
         {"NameIsForgottenAfterAList",
          kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose + kOtherOpen + "*QVSpecID 2B/\n" + kOtherClose,
          {{kSpecList, "1A"}}},
         {"NameIsForgottenAfterAnEmptyBlock",
          kSpecOpen + kSpecClose + kOtherOpen + "*QVSpecID 2B/\n" + kOtherClose,
          {}}}),
    RowName<PpdRow>);

INSTANTIATE_TEST_SUITE_P(
    BlockEnds, PpdReader,
    Rows<PpdRow>({{"FirstByteMayBeAny",
                   kSpecOpen + "*QVSpecID 1A/\n#CloseUI\n*QVB: 2\n",
                   {{"QVB", "2"}, {kSpecList, "1A"}}},
                  {"WithoutAFirstByteIsNone", kSpecOpen + "*QVSpecID 1A/\nCloseUI\n*QVB: 2\n", {}},
                  {"OtherCaseIsNone", kSpecOpen + "*QVSpecID 1A/\n*closeUI\n*QVB: 2\n", {}},
                  {"AfterOtherLettersIsNone", kSpecOpen + "*QVSpecID 1A/\n*JCLCloseUI\n", {}},
                  {"NameIsNotCompared",
                   kSpecOpen + "*QVSpecID 1A/\n*CloseUIs QVPlatformVersion\n",
                   {{kSpecList, "1A"}}},
                  {"SecondOneDoesNothing",
                   kSpecOpen + "*QVSpecID 1A/\n" + kSpecClose + kSpecClose + "*QVB: 2\n",
                   {{"QVB", "2"}, {kSpecList, "1A"}}},
                  {"OutsideABlockDoesNothing", kSpecClose + "*QVB: 2\n", {{"QVB", "2"}}},
                  {"WithASlashIsNoChoice", kSpecOpen + "*CloseUI: *QVSpecID 1A/One\n", {}},
                  {"MissingAtTheEndDropsTheList", kSpecOpen + "*QVSpecID 1A/\n", {}},
                  {"MissingAtTheEndKeepsTheOtherEntries",
                   "*QVA: 1\n" + kSpecOpen + "*QVSpecID 1A/\n*QVB: 2\n",
                   {{"QVA", "1"}}}}),
    RowName<PpdRow>);

PpdRow SpecChoice(const char* name, const std::string& line, Entries entries) {
  return {{name}, kSpecOpen + line + "\n" + kSpecClose, std::move(entries)};
}

INSTANTIATE_TEST_SUITE_P(
    Choices, PpdReader,
    Rows<PpdRow>(
        {SpecChoice("Default", "*DefaultQVSpecID: 1A/One", {}),
         SpecChoice("DefaultInCapitals", "*DEFAULTQVSpecID: 1A/One", {}),
         SpecChoice("DefaultInSmallLetters", "*defaultQVSpecID: 1A/One", {}),
         SpecChoice("DefaultOfAnythingElse", "*DefaultPageSize: A4/A4", {}),
         SpecChoice("DefaultBrokenOff", "*Default", {}),
         SpecChoice("AlmostDefault", "*Defaul QV1A/One", {{kSpecList, "1A"}}),
         SpecChoice("DefaultAfterABlank", " *Default 1A/One", {{kSpecList, "1A"}}),
         SpecChoice("NoSlash", "*QVSpecID 12", {}),
         SpecChoice("EmptyLine", "", {}),
         SpecChoice("OneByteTooShort", "*QVSpecID", {}),
         SpecChoice("NothingAfterTheSeparator", "*QVSpecID ", {}),
         SpecChoice("SlashAsSeparator", "*QVSpecID/One", {}),
         SpecChoice("SlashAsSeparatorAndAnother", "*QVSpecID/1A/One", {{kSpecList, "1A"}}),
         SpecChoice("SlashBeforeTheChoice", "*QV/pecID 12", {}),
         SpecChoice("AnySeparator", "*QVSpecID\t1A/One", {{kSpecList, "1A"}}),
         SpecChoice("BlanksBelongToTheChoice", "*QVSpecID  1A /One", {{kSpecList, " 1A "}}),
         SpecChoice("FirstSlashEndsTheChoice", "*QVSpecID 1A/One/Two", {{kSpecList, "1A"}}),
         SpecChoice("CommasBelongToTheChoice", "*QVSpecID 1A,2B/One", {{kSpecList, "1A,2B"}}),
         SpecChoice("PercentIsNoFormat", "*QVSpecID %s%n/\n*QVSpecID %d/",
                    {{kSpecList, "%s%n,%d"}}),
         SpecChoice("EmptyChoice", "*QVSpecID /One", {{kSpecList, ""}}),
         SpecChoice("EmptyChoiceFirst", "*QVSpecID /\n*QVSpecID 1A/", {{kSpecList, ",1A"}}),
         SpecChoice("EmptyChoiceLast", "*QVSpecID 1A/\n*QVSpecID /", {{kSpecList, "1A,"}}),
         SpecChoice("TwoEmptyChoices", "*QVSpecID /\n*QVSpecID /", {{kSpecList, ","}}),
         SpecChoice("OtherKeyword", "*QVFoo: abcd/e", {{kSpecList, "cd"}}),
         SpecChoice("Comment", "*% see a/b or c/d", {{kSpecList, " or c"}}),
         SpecChoice("UiValueLine", "*%QVUIValue: *QVA(a/b)", {{kSpecList, "e: *QVA(a"}}),
         SpecChoice("BytesAbove127", "*QVSpecID \xC3\xA4/One", {{kSpecList, "\xC3\xA4"}}),
         {"PlatformChoiceIsCountedFromItsName",
          kPlatformOpen + "*QVPlatformVersion 10/Ten\n*QVSpecID 1A/One\n*QVPlatformVersion /\n" +
              kPlatformClose,
          {{kPlatformList, "10,"}}}}),
    RowName<PpdRow>);

INSTANTIATE_TEST_SUITE_P(
    Insertion, PpdReader,
    Rows<PpdRow>(
        {{"EmptyLineIsNotTheLineBeforeIt",
          "*QVabc: 1\n*QVABC: 2\n\n",
          {{"QVABC", "2"}, {"QVabc", "1"}}},
         {"ReverseOrder",
          "*QVA: 1\n*QVB: 2\n*QVC: 3\n",
          {{"QVC", "3"}, {"QVB", "2"}, {"QVA", "1"}}},
         {"LastLineOfAKeyWinsInPlace", "*QVA: 1\n*QVB: 2\n*QVA: 3\n", {{"QVB", "2"}, {"QVA", "3"}}},
         {"EmptyValueWinsToo", "*QVA: 1\n*QVA\n", {{"QVA", ""}}},
         {"BothTypesOfLinesShareTheKeys", "*QVA: 1\n*%QVUIValue: *QVA(2)\n", {{"QVA", "2"}}},
         {"PrefixOfAKeyIsIgnored", "*QVFinisher: 1\n*QVFin: 2\n", {{"QVFinisher", "1"}}},
         {"PrefixFirstKeepsBoth",
          "*QVFin: 1\n*QVFinisher: 2\n",
          {{"QVFinisher", "2"}, {"QVFin", "1"}}},
         {"PrefixFirstIsNotLost",
          "*QVFin: 1\n*QVFinisher: 2\n*QVFin: 3\n",
          {{"QVFinisher", "2"}, {"QVFin", "3"}}},
         {"OtherCaseIsASecondEntry", "*QVfoo: 1\n*QVFoo: 2\n", {{"QVFoo", "2"}, {"QVfoo", "1"}}},
         {"KnownKeyChangesItsCaseVariantsToo",
          "*QVfoo: 1\n*QVFoo: 2\n*QVFOO: 3\n*QVfoo: 4\n",
          {{"QVFOO", "4"}, {"QVFoo", "4"}, {"QVfoo", "4"}}},
         {"PrefixOfAKeyChangesItsCaseVariant",
          "*QVfoo: 1\n*QVFooBar: 2\n*QVFoo: 3\n",
          {{"QVFooBar", "2"}, {"QVfoo", "3"}}},
         {"BytesAbove127HaveNoCaseVariants",
          "*QV\xC4: 1\n*QV\xE4: 2\n*QV\xC4: 3\n",
          {{"QV\xE4", "2"}, {"QV\xC4", "3"}}}}),
    RowName<PpdRow>);

std::string Fill(std::size_t length, char byte) { return std::string(length, byte); }

INSTANTIATE_TEST_SUITE_P(
    TextLimits, PpdReader,
    Rows<PpdRow>(
        {{"KeyOf254Bytes",
          "*QV" + Fill(252, 'k') + ": 1\n*QVB: 2\n",
          {{"QVB", "2"}, {"QV" + Fill(252, 'k'), "1"}}},
         {"KeyOf255BytesIsSkipped", "*QV" + Fill(253, 'k') + ": 1\n*QVB: 2\n", {{"QVB", "2"}}},
         {"KeyOf400BytesIsSkipped", "*QV" + Fill(398, 'k') + ": 1\n*QVB: 2\n", {{"QVB", "2"}}},
         {"ValueOf254Bytes", "*QVA:" + Fill(254, 'v') + "\n", {{"QVA", Fill(254, 'v')}}},
         {"ValueOf255BytesIsSkipped", "*QVA: 1\n*QVA:" + Fill(255, 'v') + "\n", {{"QVA", "1"}}},
         {"QuotedValueOf254Bytes", "*QVA: \"" + Fill(254, 'v') + "\"\n", {{"QVA", Fill(254, 'v')}}},
         {"QuotedValueOf255BytesIsSkipped", "*QVA: \"" + Fill(255, 'v') + "\"\n", {}},
         {"BothOf254Bytes",
          "*QV" + Fill(252, 'k') + ":" + Fill(254, 'v') + "\n",
          {{"QV" + Fill(252, 'k'), Fill(254, 'v')}}},
         {"UiKeyOf254Bytes", "*%QVUIValue:" + Fill(254, 'k') + "(1)\n", {{Fill(254, 'k'), "1"}}},
         {"UiKeyOf255BytesIsSkipped", "*%QVUIValue:" + Fill(255, 'k') + "(1)\n", {}},
         {"UiValueOf254Bytes",
          "*%QVUIValue:QVA(" + Fill(254, 'v') + ")\n",
          {{"QVA", Fill(254, 'v')}}},
         {"UiValueOf255BytesIsSkipped", "*%QVUIValue:QVA(" + Fill(255, 'v') + ")\n", {}},
         {"ListsHaveNoLimit",
          kSpecOpen + "*QVSpecID " + Fill(300, 'a') + "/\n*QVSpecID " + Fill(300, 'b') + "/\n" +
              kSpecClose,
          {{kSpecList, Fill(300, 'a') + "," + Fill(300, 'b')}}}}),
    RowName<PpdRow>);

// At most 511 bytes of a line are seen at once; the rest is the next line.
INSTANTIATE_TEST_SUITE_P(
    LongLines, PpdReader,
    Rows<PpdRow>(
        {{"LineBehind509Bytes", Fill(509, '#') + "*QVA: 1\n*QVB: 2\n", {{"QVB", "2"}}},
         {"LineBehind510Bytes", Fill(510, '#') + "*QVA: 1\n*QVB: 2\n", {{"QVB", "2"}}},
         {"LineBehind511Bytes",
          Fill(511, '#') + "*QVA: 1\n*QVB: 2\n",
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"LineBehind512Bytes", Fill(512, '#') + "*QVA: 1\n*QVB: 2\n", {{"QVB", "2"}}},
         {"LineBehind1021Bytes", Fill(1021, '#') + "*QVA: 1\n*QVB: 2\n", {{"QVB", "2"}}},
         {"LineBehind1022Bytes",
          Fill(1022, '#') + "*QVA: 1\n*QVB: 2\n",
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"LineBehind1023Bytes", Fill(1023, '#') + "*QVA: 1\n*QVB: 2\n", {{"QVB", "2"}}},
         {"LineOf510Bytes",
          "*QVA: \"1\"" + Fill(501, '#') + "\n*QVB: 2\n",
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"LineOf511Bytes",
          "*QVA: \"1\"" + Fill(502, '#') + "\n*QVB: 2\n",
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"LineOf512Bytes",
          "*QVA: \"1\"" + Fill(503, '#') + "\n*QVB: 2\n",
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"LineOf1022Bytes",
          "*QVA: \"1\"" + Fill(1013, '#') + "\n*QVB: 2\n",
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"LineOf1023Bytes",
          "*QVA: \"1\"" + Fill(1014, '#') + "\n*QVB: 2\n",
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"ValueIsCutAtByte511",
          "*QVA:\t" + Fill(300, ' ') + "\"" + Fill(210, 'v') + "\"\n",
          {{"QVA", Fill(204, 'v')}}},
         {"CarriageReturnLineFeedBehind511Bytes", Fill(511, '#') + "\r\n*QVA: 1\n", {{"QVA", "1"}}},
         {"EndOfFileBehind511Bytes", "*QVA: \"1\"" + Fill(502, '#'), {{"QVA", "1"}}},
         {"SlashAtByte511IsSeen",
          kSpecOpen + "*QVSpecID " + Fill(500, 'a') + "/\n" + kSpecClose,
          {{kSpecList, Fill(500, 'a')}}},
         {"SlashAtByte512IsNotSeen",
          kSpecOpen + "*QVSpecID " + Fill(501, 'a') + "/\n" + kSpecClose,
          {}},
         {"RestOfAChoiceIsALineOfItsOwn",
          kSpecOpen + "*QVSpecID " + Fill(511, 'a') + "/\n" + kSpecClose,
          {{kSpecList, ""}}},
         {"NameOfABlockAfterByte511IsNotSeen",
          "*OpenUI " + Fill(496, '#') + "QVSpecID\n*QVSpecID 1A/\n*CloseUI\n",
          {}},
         {"NameOfABlockAtByte511IsSeen",
          "*OpenUI " + Fill(495, '#') + "QVSpecID\n*QVSpecID 1A/\n*CloseUI\n",
          {{kSpecList, "1A"}}}}),
    RowName<PpdRow>);

INSTANTIATE_TEST_SUITE_P(
    LineEnds, PpdReader,
    Rows<PpdRow>(
        {{"CarriageReturnLineFeed", "*QVA: 1\r\n*QVB: 2\r\n", {{"QVB", "2"}, {"QVA", "1"}}},
         {"CarriageReturn", "*QVA: 1\r*QVB: 2\r", {{"QVB", "2"}, {"QVA", "1"}}},
         {"LineFeedCarriageReturn", "*QVA: 1\n\r*QVB: 2\n\r", {{"QVB", "2"}, {"QVA", "1"}}},
         {"Missing", "*QVA: 1\n*QVB: 2", {{"QVB", "2"}, {"QVA", "1"}}},
         {"EmptyLinesBetween", "\n\n*QVA: 1\n\n\r\n\r*QVB: 2\n", {{"QVB", "2"}, {"QVA", "1"}}},
         {"MixedInABlock",
          "*OpenUI *QVSpecID\r\n*QVSpecID 1A/\r*QVSpecID 2B/\n*CloseUI\r\n",
          {{kSpecList, "1A,2B"}}}}),
    RowName<PpdRow>);

// A line is a buffer cleared before each read: a NUL ends the text in it, not the line in the file.
INSTANTIATE_TEST_SUITE_P(
    EmbeddedNuls, PpdReader,
    Rows<PpdRow>(
        {{"InTheKey", "*QVA\0B: 1\n*QVC: 2\n"s, {{"QVC", "2"}, {"QVA", ""}}},
         {"InTheValue", "*QVA: 1\0 2\n"s, {{"QVA", "1"}}},
         {"AsTheFirstByteOfAnOption", "\0QVA: 1\n"s, {{"QVA", "1"}}},
         {"BeforeTheKeyOfAUiValue", "*%QVUIValue:\0*QVA(1)\n"s, {{"", ""}}},
         {"InTheWordUiValue", "*%QVUI\0Value: *QVA(1)\n"s, {}},
         {"BeforeTheNameOfABlock", "*OpenUI \0*QVSpecID\n*QVSpecID 1A/\n*CloseUI\n"s, {}},
         {"AsTheFirstByteOfABlock",
          "\0OpenUI *QVSpecID\n*QVA: 1\n\0CloseUI\n*QVB: 2\n"s,
          {{"QVB", "2"}}},
         {"BeforeTheChoice", kSpecOpen + "*QVSpecID\0 1A/\n"s + kSpecClose, {}},
         {"BeforeTheSlash", kSpecOpen + "*QVSpecID 1A\0/\n"s + kSpecClose, {}},
         {"AfterTheSlash", kSpecOpen + "*QVSpecID 1A/\0/\n"s + kSpecClose, {{kSpecList, "1A"}}},
         {"NothingIsLeftOfTheLineBefore",
          "*QVA: 1\n*\0\n*QVB: 2\n*QV\0\n"s,
          {{"QVB", "2"}, {"QVA", "1"}}},
         {"CountTowardsTheLength", Fill(511, '\0') + "*QVA: 1\n", {{"QVA", "1"}}}}),
    RowName<PpdRow>);

class PpdReaderCall : public PpdTest {};

TEST_F(PpdReaderCall, NullQueueNameGivesNull) {
  EXPECT_THAT(info_common_optlist_create(nullptr), IsNull());
}

TEST_F(PpdReaderCall, UnknownQueueGivesNullWithoutWaiting) {
  const SleepRecorder sleeps;
  EXPECT_THAT(info_common_optlist_create("no-such-queue"), IsNull());
  EXPECT_THAT(sleeps.seconds(), IsEmpty());
}

TEST_F(PpdReaderCall, EmptyQueueNameGivesNullWithoutWaiting) {
  const SleepRecorder sleeps;
  EXPECT_THAT(info_common_optlist_create(""), IsNull());
  EXPECT_THAT(sleeps.seconds(), IsEmpty());
}

TEST_F(PpdReaderCall, ErrorOfAnEarlierCallIsNoReasonToWait) {
  const SleepRecorder sleeps;
  errno = EMFILE;
  EXPECT_THAT(info_common_optlist_create("no-such-queue"), IsNull());
  EXPECT_THAT(sleeps.seconds(), IsEmpty());
}

TEST_F(PpdReaderCall, EmptyPpdGivesNull) {
  EXPECT_THAT(info_common_optlist_create(QueueOf("").c_str()), IsNull());
}

TEST_F(PpdReaderCall, PpdWithoutOptionLinesGivesNull) {
  const std::string queue = QueueOf("*PPD-Adobe: \"4.3\"\n*% comment\n*PageSize A4/A4: \"\"\n");
  EXPECT_THAT(info_common_optlist_create(queue.c_str()), IsNull());
}

TEST_F(PpdReaderCall, FolderInPlaceOfThePpdGivesNull) {
  PrintQueues::Get().Add("folder.ppd/file", "");
  EXPECT_THAT(info_common_optlist_create("folder"), IsNull());
}

TEST_F(PpdReaderCall, TablesOfTwoQueuesAreIndependent) {
  PrintQueues::Get().Add("first", "*QVA: 1\n");
  PrintQueues::Get().Add("second", "*QVB: 2\n");
  const Table first(info_common_optlist_create("first"));
  const Table second(info_common_optlist_create("second"));
  EXPECT_THAT(EntriesOf(first.get()), ElementsAre(Pair("QVA", "1")));
  EXPECT_THAT(EntriesOf(second.get()), ElementsAre(Pair("QVB", "2")));
}

TEST_F(PpdReaderCall, PpdStaysAsItIs) {
  const std::string queue = QueueOf("*QVA: 1\n");
  for (int round = 0; round < 3; ++round) {
    const Table table(info_common_optlist_create(queue.c_str()));
    EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("QVA", "1")));
  }
}

TEST_F(PpdReaderCall, NoDescriptorStaysOpen) {
  const std::string queue = QueueOf("*QVA: 1\n");
  const Table warm_up(info_common_optlist_create(queue.c_str()));
  const auto before = CountOpenDescriptors();
  const Table table(info_common_optlist_create(queue.c_str()));
  EXPECT_EQ(CountOpenDescriptors(), before);
}

TEST_F(PpdReaderCall, WaitsASecondForAFreeDescriptor) {
  const std::string queue = QueueOf("*QVA: 1\n");
  NoFreeDescriptor shortage;
  const SleepRecorder sleeps([&] { shortage.Lift(); });
  const Table table(info_common_optlist_create(queue.c_str()));
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("QVA", "1")));
  EXPECT_THAT(sleeps.seconds(), ElementsAre(1));
}

TEST_F(PpdReaderCall, GivesUpWhenTheSixtiethRetryFails) {
  const std::string queue = QueueOf("*QVA: 1\n");
  NoFreeDescriptor shortage;
  const SleepRecorder sleeps;
  const Table table(info_common_optlist_create(queue.c_str()));
  shortage.Lift();
  EXPECT_THAT(table, IsNull());
  EXPECT_EQ(sleeps.seconds(), std::vector<unsigned>(60, 1));
}

TEST_F(PpdReaderCall, SixtiethRetryCanSucceed) {
  const std::string queue = QueueOf("*QVA: 1\n");
  NoFreeDescriptor shortage;
  int retries = 0;
  const SleepRecorder sleeps([&] {
    if (++retries == 60) shortage.Lift();
  });
  const Table table(info_common_optlist_create(queue.c_str()));
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("QVA", "1")));
  EXPECT_EQ(sleeps.seconds(), std::vector<unsigned>(60, 1));
}

RC_GTEST_PROP(PpdReaderProperty, AnyPpdGivesTheTableOfThePlainRules, ()) {
  const std::string ppd = *AnyPpd();
  const Entries entries = EntriesOfPpd(ppd);
  RC_ASSERT(ReadPpd(ppd) == entries);
  RC_ASSERT(CountEntries(PrintQueues::Get().temporary_folder()) == 0);
}

}  // namespace
}  // namespace ia_test
