#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

std::string DocumentOf(const std::string& values) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document version=\"1\">" + values +
         "</document>\n";
}

class ToolExplain : public SamplePrinter {
 protected:
  Finished Explain(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = QueryArguments();
    arguments[1] = "explain";
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
  // The explanation of one option.
  Json Why(const std::string& keyword) const {
    const Finished run = Explain({keyword, "--format", "json"});
    EXPECT_EQ(run.status, 0) << run.err;
    Json explanations = Json::parse(run.out)["explanations"];
    EXPECT_THAT(explanations, SizeIs(1));
    return explanations[0];
  }
};

TEST_F(ToolExplain, PrintsTheRequestedOptionsInTheOrderOfTheQuery) {
  const Finished run = Explain({"QVPuncher", "qvharddisk"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, testing::StartsWith("QVHardDisk=True\n"));
  EXPECT_THAT(Lines(run.out), Contains("QVPuncher=PUNU24"));
  EXPECT_THAT(run.out, Not(HasSubstr("QVDupUnit")));
}

TEST_F(ToolExplain, FirstLineSaysWhatDecided) {
  EXPECT_EQ(Explain({"QVSidePaperDeck"}).out,
            "QVSidePaperDeck=Large\n"
            "  because   Tray_list.xml list[5] type = 6; Tray_list.xml list[5] alias = [161] "
            "(analyze_GetQVSidePaperDeckCommon, row (other models))\n"
            "  instead   Small if Tray_list.xml list[5] type is missing; None if Tray_list.xml "
            "list[5] alias is missing\n"
            "  also read Tray_list.xml list[] type (5 values); Tray_list.xml list[] alias "
            "(5 values)\n");
}

TEST_F(ToolExplain, ValueThatNoRuleMatchesIsNamed) {
  WriteDocument("Finisher_list.xml",
                DocumentOf("<dict key=\"list\"><string key=\"name\">Vorel Bookled Finisher-W1"
                           "</string></dict>"));
  EXPECT_THAT(
      Explain({"QVFinisher"}).out,
      HasSubstr("because   Finisher_list.xml list[0] name = \"Vorel Bookled Finisher-W1\""));
  EXPECT_THAT(Explain({"QVFinisher"}).out,
              HasSubstr(": no rule matches (analyze_GetQVFinisherSUMAC, row RA-H5*); default\n"));
  EXPECT_THAT(Explain({}).out,
              HasSubstr("unknown values\n  Finisher_list.xml list[0] name = "
                        "\"Vorel Bookled Finisher-W1\": not in QVAnlz_FinisherName; the nearest "
                        "known value is \"Vorel Booklet Finisher-W1\"\n"));
  const Finished json = Explain({"--format", "json"});
  const Json unknown = Json::parse(json.out)["unknown_values"];
  ASSERT_THAT(unknown, SizeIs(1));
  EXPECT_EQ(unknown[0]["nearest"], "Vorel Booklet Finisher-W1");
}

TEST_F(ToolExplain, FinisherWithAMisspeltNameIsUnknownWhateverItDoes) {
  std::string units = ia_test::ReadFile(Document("Finisher_list.xml"));
  const std::string name = "Booklet Finisher-W1";
  WriteDocument("Finisher_list.xml",
                units.replace(units.find(name), name.size(), "Booklett Finisher-W1"));
  EXPECT_THAT(Explain({}).out, HasSubstr("list[1] name = \"Vorel Booklett Finisher-W1\": not in "
                                         "QVAnlz_FinisherName; the nearest known value is "
                                         "\"Vorel Booklet Finisher-W1\"\n"));
}

// No document can have such a text, so no value of the device leads to what the PPD names.
TEST_F(ToolExplain, TextsOfThePpdThatAreNotUtf8AreNoReplacements) {
  ReplaceInPpd("Vorel Staple Finisher-W1:", "Vorel B\xfcro Finisher-W1:");
  const std::string finisher = Explain({"QVFinisher"}).out;
  EXPECT_THAT(finisher, HasSubstr("QVFinisher=BKFINW1\n"));
  EXPECT_THAT(finisher, Not(HasSubstr("not set")));
  WriteDocument("Finisher_list.xml",
                DocumentOf("<dict key=\"list\"><string key=\"name\">Vorel Biro Finisher-W1"
                           "</string></dict>"));
  EXPECT_THAT(Explain({}).out,
              HasSubstr("list[0] name = \"Vorel Biro Finisher-W1\": not in QVAnlz_FinisherName; "
                        "the nearest known value is \"Vorel B\xef\xbf\xbdro Finisher-W1\"\n"));
}

TEST_F(ToolExplain, MisspeltKeywordHasASuggestion) {
  ExpectFailure(Explain({"QVFinsher"}), 6,
                HasSubstr("the printer has no option QVFinsher (did you mean QVFinisher?)"));
}

TEST_F(ToolExplain, SummaryHasAtMostFiveLinesForEachOption) {
  const std::string text = Explain({}).out;
  int lines = 0;
  for (const std::string& line : Lines(text)) {
    lines = line.empty() ? 0 : lines + 1;
    EXPECT_LE(lines, 5) << line;
  }
}

TEST_F(ToolExplain, DocumentThatIsMissingIsTheReason) {
  RemoveDocument("Finisher_list.xml");
  EXPECT_THAT(Explain({"QVFinisher"}).out,
              HasSubstr("because   Finisher_list.xml name cannot be read: the document is not "
                        "loaded (analyze_GetQVFinisherSUMAC, row RA-H5*); default\n"));
}

TEST_F(ToolExplain, OptionThatThePrinterLacksIsNotFound) {
  ExpectFailure(Explain({"QVNothing"}), 6,
                AllOf(HasSubstr("the printer has no option QVNothing"), Not(HasSubstr("sets it"))));
  ExpectFailure(Explain({"QVEnvelopeFeeder"}), 6,
                HasSubstr("z_Update_Prn_tray_list sets it for other printers"));
}

TEST_F(ToolExplain, NumberThatIsReportedAsTheDefaultComesFromTheDevice) {
  WriteDocument("Accessories.xml", DocumentOf("<long key=\"hd\">0</long>"));
  EXPECT_EQ(Why("QVHardDisk")["origin"], "device");
  EXPECT_EQ(Why("QVTotalMemSize")["origin"], "default");
  EXPECT_EQ(Why("QVTotalMemSize")["inputs"][0]["state"], "missing");
}

TEST_F(ToolExplain, KeyWithTheWrongTypeIsReported) {
  WriteDocument("Accessories.xml", DocumentOf("<string key=\"hd\">1</string>"
                                              "<array key=\"memory\"><long>1</long></array>"));
  const Json why = Why("QVHardDisk");
  EXPECT_EQ(why["value"], "False");
  EXPECT_EQ(why["origin"], "default");
  EXPECT_EQ(why["inputs"][0]["state"], "wrong type");
  EXPECT_EQ(Why("QVTotalMemSize")["inputs"][0]["state"], "wrong type");
}

TEST_F(ToolExplain, SpecificationIdThatNobodyReportsComesFromThePpd) {
  WriteDocument("Specid.xml", DocumentOf("<string key=\"platform_name\">other</string>"));
  const Json why = Why("QVSpecID");
  EXPECT_EQ(why["value"], "0100");
  EXPECT_EQ(why["origin"], "ppd");
}

TEST_F(ToolExplain, UserManagementThatFollowsFromOtherKeysComesFromTheDevice) {
  WriteDocument("Functions.xml", DocumentOf("<long key=\"management\">1</long>"
                                            "<string key=\"authentication_user\">mode4</string>"));
  EXPECT_EQ(Why("QVUseUsrManagement")["value"], "True");
  EXPECT_EQ(Why("QVUseUsrManagement")["origin"], "device");
  EXPECT_EQ(Why("QVUseCSModeSecured")["origin"], "default");
}

// "None" that a handler decides is no default.
TEST_F(ToolExplain, HandlerThatDecidesForTheDefaultValueIsNamed) {
  ReplaceInPpd("RA-H5-MLT-JP", "RA-Z2");
  const Json why = Why("QVSrcOption");
  EXPECT_EQ(why["value"], "None");
  EXPECT_EQ(why["origin"], "device");
  EXPECT_EQ(why["model"], Json::parse(R"({"code": "RA-Z2", "match": "prefix",
                            "handler": "analyze_GetQVSrcOptionOAK"})"));
}

TEST_F(ToolExplain, MediumThatThePpdDoesNotNameIsTheDefault) {
  ReplaceInPpd("PlainPaper:0,", "");
  EXPECT_EQ(Why("QVCas1MediaType")["value"], "PlainPaper");
  EXPECT_EQ(Why("QVCas1MediaType")["origin"], "default");
  EXPECT_EQ(Why("QVCas2MediaType")["origin"], "device");
}

TEST_F(ToolExplain, LastUpdateThatSetsAnOptionIsNamed) {
  EXPECT_EQ(Why("QVInsertUnit")["update"], "z_Update_Prn_finisher_list");
  ReplaceInPpd("RA-H5-MLT-JP", "RA-Z5");
  const Json why = Why("QVInsertUnit");
  EXPECT_EQ(why["update"], "z_Update_Prn_extra");
  EXPECT_EQ(why["model"]["match"], "whole");
  EXPECT_EQ(why["origin"], "default");
}

TEST_F(ToolExplain, PrinterWithoutModelCodeFallsBack) {
  ReplaceInPpd("*QVAnlz_DriverName: \"RA-H5-MLT-JP\"\n", "");
  EXPECT_EQ(Why("QVFinisher")["model"]["match"], "other models");
  EXPECT_THAT(Explain({"QVFinisher", "--all"}).out,
              HasSubstr("(no model code), no row of its own, common fallback: "
                        "analyze_GetQVFinisherCommon"));
}

TEST_F(ToolExplain, ValueThatThePpdDoesNotOfferIsReported) {
  ReplaceInPpd("Finisher-W1:BKFINW1", "Finisher-W1:NEWFIN");
  EXPECT_EQ(Why("QVFinisher")["ppd"]["has_value"], false);
  EXPECT_EQ(Why("QVFinisher")["ppd"]["default"], "None");
  EXPECT_THAT(Explain({"QVFinisher"}).out, HasSubstr("; NEWFIN is none of them"));
}

TEST_F(ToolExplain, OptionThatThePpdLacksIsReported) {
  EXPECT_TRUE(Why("QVTotalMemSize")["ppd"].is_null());
  EXPECT_THAT(Explain({"QVTotalMemSize", "--all"}).out,
              HasSubstr("choices   the PPD has no such option"));
}

TEST_F(ToolExplain, MissingDocumentIsReported) {
  RemoveDocument("Devicename.xml");  // the last one decides about the query
  ExpectFailure(Explain({"QVFAXDialLineA"}), 5, HasSubstr("Devicename.xml"));
  WriteDocument("Devicename.xml", DocumentOf(""));
  RemoveDocument("Accessories.xml");
  const Finished run = Explain({"QVDupUnit"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("warning: document"));
}

TEST_F(ToolExplain, HostileTextsOfADeviceNeitherReachTheTerminalNorBreakJson) {
  WriteDocument("Functions.xml", DocumentOf("<string key=\"authentication_user\">[31m\"'\xc2\x9b"
                                            "&#10;rm</string>"));
  const Finished text = Explain({"QVUseCSModeJobAccount"});
  EXPECT_EQ(text.status, 0) << text.err;
  EXPECT_THAT(text.out, AllOf(Not(HasSubstr("\xc2\x9b")), Not(HasSubstr("\nrm"))));
  EXPECT_EQ(Why("QVUseCSModeJobAccount")["inputs"][0]["value"], "[31m\"'\xc2\x9b\nrm");
}

TEST_F(ToolExplain, ListsOfThousandsOfUnknownItemsEndSoon) {
  std::string items;
  for (int i = 0; i < 20'000; ++i) {
    items +=
        "<dict key=\"list\"><string key=\"name\">unit " + std::to_string(i) + "</string></dict>";
  }
  WriteDocument("Finisher_list.xml", DocumentOf(items));
  const Finished run = Explain({});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, HasSubstr(" values; which of them decide is not known (analyze_"));
  EXPECT_THAT(run.out, HasSubstr("list[99] name = \"unit 99\": not in QVAnlz_FinisherName"));
  EXPECT_THAT(run.out, Not(HasSubstr("list[100] name")));
}

TEST_F(ToolExplain, VeryLongTextIsPrintedInFull) {
  WriteDocument("Devicename.xml", DocumentOf("<string key=\"devicename\">" +
                                             std::string(100'000, 'n') + "</string>"));
  EXPECT_EQ(Why("QVFAXDialLineA")["inputs"].back()["value"], std::string(100'000, 'n'));
}

}  // namespace
