#include "cli/acquire/device_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "cli/acquire/printer_attributes.h"
#include "info_analyze/provenance.h"

namespace {

using ia::cli::AttributeValues;
using ia::cli::DeviceFacts;
using ia::cli::FindFacts;
using ia::cli::kDocumentKeys;
using ia::cli::kRequestedAttributes;
using ia::cli::Part;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// The value of a key, or null.
Json ValueOf(const Part& part, std::string_view key) {
  const auto known = part.known.find(key);
  return known != part.known.end() ? known->second.value : Json();
}

std::string SourceOf(const Part& part, std::string_view key) {
  const auto known = part.known.find(key);
  return known != part.known.end() ? known->second.source : "";
}

std::vector<Part> ListOf(const AttributeValues& attributes, std::int32_t document) {
  return FindFacts(attributes).lists.at(document);
}

std::vector<Part> UnitsOf(const AttributeValues& attributes) {
  return ListOf(attributes, IA_DOCUMENT_FINISHER_LIST);
}

TEST(DocumentKeys, AreThoseThatTheLibraryReadsAndTheIdOfFaxLines) {
  using Key = std::tuple<std::int32_t, std::string, std::int32_t>;
  std::set<Key> expected = {{IA_DOCUMENT_FAX_LINE_LIST, "id", IA_KEY_LONG}};
  InputKey input;
  for (std::int32_t i = 0; Analyze_Provenance_GetInput(i, &input, sizeof input) != 0; ++i) {
    const bool is_value = input.document != IA_INPUT_OF_PPD && input.type != IA_KEY_DICTIONARY;
    if (is_value) expected.emplace(input.document, input.key, input.type);
  }
  std::set<Key> keys;
  for (const auto& key : kDocumentKeys) keys.emplace(key.document, key.name, key.type);
  EXPECT_EQ(keys, expected);
}

// Values of the device itself --------------------------------------------------------------------

struct ScalarCase {
  const char* key;
  const char* attribute;
  std::vector<std::string> values;
  Json expected;
};

class ScalarMapping : public testing::TestWithParam<ScalarCase> {};

TEST_P(ScalarMapping, FollowsTheTable) {
  const ScalarCase& row = GetParam();
  const DeviceFacts facts = FindFacts({{row.attribute, row.values}});
  EXPECT_EQ(ValueOf(facts.device, row.key), row.expected);
  EXPECT_EQ(SourceOf(facts.device, row.key), row.attribute);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScalarMapping,
    testing::Values(
        ScalarCase{"duplex", "sides-supported", {"one-sided", "two-sided-long-edge"}, 1},
        ScalarCase{"duplex", "sides-supported", {"two-sided-short-edge"}, 1},
        ScalarCase{"duplex", "sides-supported", {"one-sided"}, 0},
        ScalarCase{"management", "job-account-id-supported", {"true"}, 1},
        ScalarCase{"management", "job-account-id-supported", {"false"}, 0},
        ScalarCase{"securedprint", "job-password-supported", {"4"}, 1},
        ScalarCase{"securedprint", "job-password-supported", {"0"}, 0},
        ScalarCase{"resolution_300", "printer-resolution-supported", {"600dpi", "300dpi"}, 1},
        ScalarCase{"resolution_300", "printer-resolution-supported", {"600dpi"}, 0},
        ScalarCase{"resolution_600", "printer-resolution-supported", {"600dpi"}, 1},
        ScalarCase{"resolution_600", "printer-resolution-supported", {"600x1200dpi"}, 0},
        ScalarCase{"resolution_1200", "printer-resolution-supported", {"1200dpi"}, 1},
        ScalarCase{"devicename", "printer-make-and-model", {"Vorel Office"}, "Vorel Office"}));

TEST(ScalarMapping, KnowsNothingOfWhatIsNotReported) {
  const DeviceFacts facts = FindFacts({});
  EXPECT_THAT(facts.device.known, IsEmpty());
  EXPECT_THAT(facts.lists, IsEmpty());
}

// Trays and bins ---------------------------------------------------------------------------------

TEST(TrayMapping, HasTheNameTypeAndCapacityOfEachTray) {
  const auto trays = ListOf({{"printer-input-tray",
                              {"type=sheetFeedManual;maxcapacity=100;name=By-pass;",
                               "type=sheetFeedAutoRemovableTray;maxcapacity=-2;name=Tray 1"}}},
                            IA_DOCUMENT_TRAY_LIST);
  ASSERT_THAT(trays, SizeIs(2));
  EXPECT_EQ(trays[0].name, "tray \"By-pass\"");
  EXPECT_THAT(trays[0].fields,
              ElementsAre(testing::Pair("capacity", "100"), testing::Pair("name", "By-pass"),
                          testing::Pair("type", "sheetFeedManual")));
  EXPECT_EQ(ValueOf(trays[0], "capacity"), 100);
  EXPECT_EQ(SourceOf(trays[0], "capacity"), "printer-input-tray");
  EXPECT_EQ(ValueOf(trays[1], "capacity"), Json()) << "-2 is unknown";
}

TEST(TrayMapping, AutomaticSelectionIsNoTray) {
  const auto trays =
      ListOf({{"printer-input-tray", {"name=Auto;", "name=tray-1;"}}}, IA_DOCUMENT_TRAY_LIST);
  ASSERT_THAT(trays, SizeIs(1));
  EXPECT_EQ(trays[0].name, "tray \"tray-1\"");
}

TEST(TrayMapping, KeywordsReplaceAMissingListOfTrays) {
  const auto trays =
      ListOf({{"media-source-supported", {"auto", "tray-1", "manual"}}}, IA_DOCUMENT_TRAY_LIST);
  ASSERT_THAT(trays, SizeIs(2));
  EXPECT_EQ(trays[0].name, "tray \"tray-1\"");
  EXPECT_EQ(trays[1].name, "tray \"manual\"");
  EXPECT_THAT(trays[0].known, IsEmpty());
}

TEST(TrayMapping, TheReadyMediumBelongsToTheTrayOfItsSource) {
  const auto trays =
      ListOf({{"printer-input-tray", {"name=Tray 1;", "name=Tray 2;"}},
              {"media-col-ready",
               {"media-source=tray-2;media-type=labels;", "media-source=tray-9;media-type=x;"}}},
             IA_DOCUMENT_TRAY_LIST);
  EXPECT_FALSE(trays[0].fields.contains("media-type"));
  EXPECT_EQ(trays[1].fields.at("media-type"), "labels");
}

TEST(TrayMapping, SourcesInTheSameOrderNameTraysWithOtherNames) {
  const AttributeValues attributes = {
      {"printer-input-tray", {"name=Kassette A;", "name=Kassette B;"}},
      {"media-source-supported", {"auto", "tray-1", "tray-2"}},
      {"media-col-ready", {"media-source=tray-2;media-type=labels;"}}};
  EXPECT_EQ(ListOf(attributes, IA_DOCUMENT_TRAY_LIST)[1].fields.at("media-type"), "labels");
  AttributeValues more = attributes;
  more["media-source-supported"].emplace_back("tray-3");
  EXPECT_FALSE(ListOf(more, IA_DOCUMENT_TRAY_LIST)[1].fields.contains("media-type"));
}

TEST(BinMapping, HasTheNameAndTypeOfEachBin) {
  const auto bins = ListOf({{"printer-output-tray", {"type=mailBox;maxcapacity=50;name=Box 1;"}}},
                           IA_DOCUMENT_BIN_LIST);
  ASSERT_THAT(bins, SizeIs(1));
  EXPECT_EQ(bins[0].name, "bin \"Box 1\"");
  EXPECT_EQ(bins[0].fields.at("type"), "mailBox");
  EXPECT_THAT(bins[0].known, IsEmpty());
}

TEST(BinMapping, KeywordsReplaceAMissingListOfBins) {
  EXPECT_THAT(ListOf({{"output-bin-supported", {"face-up", "face-down"}}}, IA_DOCUMENT_BIN_LIST),
              SizeIs(2));
}

// Finishing --------------------------------------------------------------------------------------

struct FinishingCase {
  const char* process;
  std::vector<std::string> functions;
  Json details;  // null: not known
};

class FinishingMapping : public testing::TestWithParam<FinishingCase> {};

TEST_P(FinishingMapping, FollowsTheTable) {
  const FinishingCase& row = GetParam();
  const auto units = UnitsOf({{"finishings-supported", {"none", row.process}}});
  ASSERT_THAT(units, SizeIs(1));
  EXPECT_EQ(ValueOf(units[0], "func"), Json(row.functions));
  EXPECT_EQ(ValueOf(units[0], "detail_func"), row.details);
}

const Json kNoDetails = Json::array();
const Json kUnknown;

INSTANTIATE_TEST_SUITE_P(
    Rows, FinishingMapping,
    testing::Values(FinishingCase{"none", {}, kNoDetails}, FinishingCase{"cover", {}, kNoDetails},
                    FinishingCase{"staple", {"staple"}, kNoDetails},
                    FinishingCase{"staple-dual-left", {"staple"}, kNoDetails},
                    FinishingCase{"39", {"staple"}, kNoDetails},
                    FinishingCase{"saddle-stitch", {"staple"}, kNoDetails},
                    FinishingCase{"edge-stitch-left", {"staple"}, kNoDetails},
                    FinishingCase{"booklet-maker", {"staple", "folding"}, kNoDetails},
                    FinishingCase{"punch", {"punch"}, kUnknown},
                    FinishingCase{"punch-single-left", {"punch"}, kUnknown},
                    FinishingCase{"punch-dual-left", {"punch"}, {"punching_2_holes"}},
                    FinishingCase{"punch-triple-top", {"punch"}, {"punching_3_holes"}},
                    FinishingCase{"punch-quad-right", {"punch"}, kUnknown},
                    FinishingCase{"punch-multiple-left", {"punch"}, {"punching_multiple_holes"}},
                    FinishingCase{"punch-dozen-left", {"punch"}, kUnknown},
                    FinishingCase{"89", {"punch"}, kUnknown},
                    FinishingCase{"1073741913", {"punch"}, kUnknown},
                    FinishingCase{"cups-punch-pair", {"punch"}, kUnknown},
                    FinishingCase{"fold", {"folding"}, kNoDetails},
                    FinishingCase{"fold-z", {"folding"}, kNoDetails},
                    FinishingCase{"105", {"folding"}, kNoDetails},
                    FinishingCase{"trim", {"trimming"}, kUnknown},
                    FinishingCase{"trim-after-copies", {"trimming"}, kUnknown},
                    FinishingCase{"69", {"trimming"}, kUnknown}));

struct DeviceTypeCase {
  const char* type;
  std::vector<std::string> functions;
};

class FinishingDevice : public testing::TestWithParam<DeviceTypeCase> {};

TEST_P(FinishingDevice, HasTheFunctionOfItsType) {
  const auto units =
      UnitsOf({{"printer-finisher", {std::string("type=") + GetParam().type + ";index=1;"}}});
  ASSERT_THAT(units, SizeIs(1));
  EXPECT_EQ(ValueOf(units[0], "func"), Json(GetParam().functions));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FinishingDevice,
    testing::Values(DeviceTypeCase{"stitcher", {"staple"}}, DeviceTypeCase{"puncher", {"punch"}},
                    DeviceTypeCase{"folder", {"folding"}}, DeviceTypeCase{"trimmer", {"trimming"}},
                    DeviceTypeCase{"inserter", {"inserter"}}, DeviceTypeCase{"stacker", {}},
                    DeviceTypeCase{"binder", {}}, DeviceTypeCase{"Stitcher", {"staple"}}));

struct EvidenceCase {
  const char* attribute;
  const char* function;
};

class FinishingEvidence : public testing::TestWithParam<EvidenceCase> {};

TEST_P(FinishingEvidence, AddsItsFunction) {
  const auto units =
      UnitsOf({{"finishings-supported", {"none"}}, {GetParam().attribute, {"left"}}});
  EXPECT_EQ(ValueOf(units[0], "func"), Json({GetParam().function}));
}

INSTANTIATE_TEST_SUITE_P(Rows, FinishingEvidence,
                         testing::Values(EvidenceCase{"punching-reference-edge-supported", "punch"},
                                         EvidenceCase{"folding-direction-supported", "folding"},
                                         EvidenceCase{"trimming-type-supported", "trimming"}));

TEST(FinishingUnits, TemplatesCountLikeFinishings) {
  const auto units = UnitsOf({{"finishing-template-supported", {"punch-triple-left"}}});
  EXPECT_EQ(ValueOf(units[0], "func"), Json({"punch"}));
  EXPECT_EQ(SourceOf(units[0], "func"), "finishing-template-supported");
}

TEST(FinishingUnits, AreNotKnownWithoutAList) {
  const auto units = UnitsOf({{"finishings-supported", {"none"}}});
  ASSERT_THAT(units, SizeIs(1));
  EXPECT_THAT(units[0].known, Not(Contains(testing::Key("name")))) << "seen to be missing";
}

TEST(FinishingUnits, DevicesOfOneDescriptionAreOneUnit) {
  const auto units =
      UnitsOf({{"printer-finisher", {"type=stitcher", "type=puncher", "type=stacker"}},
               {"printer-finisher-description", {"A", "A", "B"}}});
  ASSERT_THAT(units, SizeIs(2));
  EXPECT_EQ(ValueOf(units[0], "name"), "A");
  EXPECT_EQ(SourceOf(units[0], "name"), "printer-finisher-description");
  EXPECT_EQ(ValueOf(units[0], "func"), Json({"staple", "punch"}));
  EXPECT_EQ(ValueOf(units[1], "name"), "B");
}

TEST(FinishingUnits, ARepeatedTypeStartsANewUnit) {
  EXPECT_THAT(UnitsOf({{"printer-finisher", {"type=stacker", "type=stacker"}},
                       {"printer-finisher-description", {"A", "A"}}}),
              SizeIs(2));
}

TEST(FinishingUnits, WithoutDescriptionEachDeviceIsAUnit) {
  const auto units = UnitsOf({{"printer-finisher", {"type=stitcher", "type=puncher"}}});
  ASSERT_THAT(units, SizeIs(2));
  EXPECT_EQ(ValueOf(units[0], "name"), Json());
}

TEST(FinishingUnits, ADeviceThatIsNotPresentIsNone) {
  EXPECT_THAT(UnitsOf({{"printer-finisher", {"type=stitcher;presentonoff=notPresent;"}}}),
              IsEmpty());
  EXPECT_THAT(UnitsOf({{"printer-finisher", {"type=stitcher;presentonoff=off;"}}}), SizeIs(1));
}

TEST(FinishingUnits, TheOnlyUnitThatCanHasTheFunctionsThatAreLeft) {
  const auto units = UnitsOf({{"finishings-supported", {"staple", "punch-dual-left", "fold"}},
                              {"printer-finisher", {"type=stitcher", "type=other"}},
                              {"printer-finisher-description", {"A", "B"}}});
  EXPECT_EQ(ValueOf(units[0], "func"), Json({"staple"}));
  EXPECT_EQ(ValueOf(units[1], "func"), Json({"punch", "folding"}));
  EXPECT_EQ(ValueOf(units[1], "detail_func"), Json({"punching_2_holes"}));
}

TEST(FinishingUnits, ASingleUnitHasAllFunctions) {
  const auto units = UnitsOf(
      {{"finishings-supported", {"staple", "fold"}}, {"printer-finisher", {"type=stitcher"}}});
  EXPECT_EQ(ValueOf(units[0], "func"), Json({"staple", "folding"}));
}

TEST(FinishingUnits, FunctionsThatSeveralUnitsCanHaveAreNotKnown) {
  const auto units = UnitsOf({{"finishings-supported", {"staple", "fold"}},
                              {"printer-finisher", {"type=other", "type=unknown", "type=stitcher"}},
                              {"printer-finisher-description", {"A", "B", "C"}}});
  EXPECT_EQ(ValueOf(units[0], "func"), Json());
  EXPECT_EQ(ValueOf(units[1], "func"), Json());
  EXPECT_EQ(ValueOf(units[2], "func"), Json({"staple"}));
}

TEST(FinishingUnits, AUnitOfUnknownTypeIsNotKnownWithoutFinishings) {
  const auto units = UnitsOf({{"printer-finisher", {"type=other;"}}});
  EXPECT_EQ(ValueOf(units[0], "func"), Json());
  EXPECT_EQ(ValueOf(units[0], "detail_func"), Json());
}

TEST(FinishingUnits, HolesAreNotKnownOfSeveralUnitsThatPunch) {
  const auto units = UnitsOf({{"finishings-supported", {"punch-dual-left"}},
                              {"printer-finisher", {"type=puncher", "type=puncher"}}});
  EXPECT_EQ(ValueOf(units[0], "detail_func"), Json());
  EXPECT_EQ(ValueOf(units[1], "detail_func"), Json());
}

TEST(FinishingUnits, HolesOfOneUnitAreAllOrUnknown) {
  const auto details = [](const std::vector<std::string>& processes) {
    return ValueOf(UnitsOf({{"finishings-supported", processes}})[0], "detail_func");
  };
  EXPECT_EQ(details({"punch", "punch-dual-left", "punch-triple-left"}),
            Json({"punching_2_holes", "punching_3_holes"}));
  EXPECT_EQ(details({"punch-dual-left", "punch-quad-left"}), Json());
}

TEST(FinishingUnits, TrimmingAndInsertingHaveDetailsThatNoStandardHas) {
  for (const char* const type : {"type=trimmer;", "type=inserter;"}) {
    const auto units = UnitsOf({{"finishings-supported", {"none"}}, {"printer-finisher", {type}}});
    EXPECT_EQ(ValueOf(units[0], "detail_func"), Json()) << type;
  }
}

TEST(RequestedAttributes, AreInOrder) {
  EXPECT_TRUE(std::is_sorted(
      kRequestedAttributes.begin(), kRequestedAttributes.end(),
      [](const char* left, const char* right) { return std::string_view(left) < right; }));
}

}  // namespace
