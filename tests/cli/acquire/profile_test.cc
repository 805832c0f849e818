#include "cli/acquire/profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "cli/acquire/device_facts.h"
#include "cli/acquire/printer_attributes.h"
#include "cli/terminal/failure.h"

namespace {

using ia::cli::ApplyProfile;
using ia::cli::AttributeValues;
using ia::cli::DeviceFacts;
using ia::cli::Failure;
using ia::cli::FindFacts;
using ia::cli::ParseProfile;
using ia::cli::Part;
using Json = nlohmann::ordered_json;
using testing::SizeIs;

Json Profile(const char* section, const Json& rules) {
  return {{"profile_version", 1}, {section, rules}};
}

DeviceFacts Apply(const Json& profile, const AttributeValues& attributes) {
  DeviceFacts facts = FindFacts(attributes);
  ApplyProfile(ParseProfile(profile.dump(), "p"), attributes, facts);
  return facts;
}

Json ValueOf(const Part& part, std::string_view key) {
  const auto known = part.known.find(key);
  return known != part.known.end() ? known->second.value : Json();
}

std::string SourceOf(const Part& part, std::string_view key) {
  return part.known.find(key)->second.source;
}

// Why a profile is refused; empty: it is not.
std::string FaultOf(const std::string& text) {
  try {
    (void)ParseProfile(text, "p");
  } catch (const Failure& failure) {
    return failure.parts().cause;
  }
  return "";
}

std::string FaultOf(const Json& profile) { return FaultOf(profile.dump()); }

const AttributeValues kTwoTrays = {
    {"printer-input-tray",
     {"type=sheetFeedManual;maxcapacity=100;name=By-pass;", "maxcapacity=550;name=Cassette 1;"}},
    {"printer-make-and-model", {"Vorel Office"}}};

TEST(Profile, TheFirstRuleThatMatchesAndHasAKeyGivesIt) {
  const DeviceFacts facts = Apply(Profile("trays", Json::parse(R"([
        {"if": {"type": "sheetFeedManual"}, "then": {"type": 1, "alias": [7]}},
        {"if": {"name": "Cassette *"}, "then": {"type": 2}},
        {"then": {"type": 9, "alias": [1, 2], "medium_type": 4}}])")),
                                  kTwoTrays);
  const auto& trays = facts.lists.at(IA_DOCUMENT_TRAY_LIST);
  EXPECT_EQ(ValueOf(trays[0], "type"), 1);
  EXPECT_EQ(ValueOf(trays[0], "alias"), Json({7}));
  EXPECT_EQ(ValueOf(trays[0], "medium_type"), 4);
  EXPECT_EQ(SourceOf(trays[0], "medium_type"), "profile trays[2]");
  EXPECT_EQ(ValueOf(trays[1], "type"), 2);
  EXPECT_EQ(ValueOf(trays[1], "alias"), Json({1, 2}));
}

TEST(Profile, ReplacesWhatAnAttributeGives) {
  const DeviceFacts facts = Apply(
      Profile("device", Json::parse(R"([{"then": {"devicename": "HZL-A", "version": 291}}])")),
      kTwoTrays);
  EXPECT_EQ(ValueOf(facts.device, "devicename"), "HZL-A");
  EXPECT_EQ(SourceOf(facts.device, "devicename"), "profile device[0]");
  EXPECT_EQ(ValueOf(facts.device, "version"), 291);
}

TEST(Profile, AddsNothingToAListThatTheDeviceDoesNotReport) {
  const DeviceFacts facts =
      Apply(Profile("bins", Json::parse(R"([{"then": {"number": 1}}])")), kTwoTrays);
  EXPECT_FALSE(facts.lists.contains(IA_DOCUMENT_BIN_LIST));
}

struct ConditionCase {
  const char* condition;
  bool matches;
};

class ProfileCondition : public testing::TestWithParam<ConditionCase> {};

TEST_P(ProfileCondition, MatchesTheFirstTray) {
  const Json rule = {{"if", Json::parse(GetParam().condition)}, {"then", {{"medium_type", 5}}}};
  const DeviceFacts facts = Apply(Profile("trays", Json::array({rule})), kTwoTrays);
  EXPECT_EQ(facts.lists.at(IA_DOCUMENT_TRAY_LIST)[0].known.contains("medium_type"),
            GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ProfileCondition,
    testing::Values(ConditionCase{R"({})", true}, ConditionCase{R"({"name": "By-pass"})", true},
                    ConditionCase{R"({"name": "by-PASS"})", true},
                    ConditionCase{R"({"name": "By"})", false},
                    ConditionCase{R"({"name": "B?-*"})", true},
                    ConditionCase{R"({"name": ["x", "By*"]})", true},
                    ConditionCase{R"({"media-type": "*"})", false},
                    ConditionCase{R"({"capacity": 100})", true},
                    ConditionCase{R"({"capacity": 101})", false},
                    ConditionCase{R"({"capacity": {"min": 100}})", true},
                    ConditionCase{R"({"capacity": {"min": 101}})", false},
                    ConditionCase{R"({"capacity": {"max": 100}})", true},
                    ConditionCase{R"({"capacity": {"max": 99}})", false},
                    ConditionCase{R"({"capacity": {"min": 1, "max": 200}})", true},
                    ConditionCase{R"({"capacity": "100"})", true},
                    ConditionCase{R"({"printer-make-and-model": "Vorel*"})", true},
                    ConditionCase{R"({"printer-make-and-model": "Vorel"})", false},
                    ConditionCase{R"({"sides-supported": "*"})", false},
                    ConditionCase{R"({"name": "By-pass", "capacity": 5})", false}));

TEST(Profile, TheFirstRuleThatMatchesGivesAllFaxLines) {
  const Json profile = Profile("fax_lines", Json::parse(R"([
      {"if": {"ipp-features-supported": "faxout"},
       "then": [{"id": 1, "type": 1, "id_support": 18, "communication_mode": [1]},
                {"id": 2, "type": 2, "id_support": 0, "communication_mode": []}]},
      {"if": {"printer-make-and-model": "Vorel*"}, "then": []}])"));
  AttributeValues attributes = kTwoTrays;
  EXPECT_THAT(Apply(profile, attributes).lists.at(IA_DOCUMENT_FAX_LINE_LIST), SizeIs(0));
  attributes["ipp-features-supported"] = {"ipp-everywhere", "faxout"};
  const DeviceFacts facts = Apply(profile, attributes);
  const auto& lines = facts.lists.at(IA_DOCUMENT_FAX_LINE_LIST);
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_EQ(ValueOf(lines[0], "id_support"), 18);
  EXPECT_EQ(ValueOf(lines[1], "communication_mode"), Json::array());
  attributes.erase("printer-make-and-model");
  attributes.erase("ipp-features-supported");
  EXPECT_FALSE(Apply(profile, attributes).lists.contains(IA_DOCUMENT_FAX_LINE_LIST));
}

TEST(Profile, IsRefusedWithTheNameOfWhatIsWrong) {
  EXPECT_EQ(FaultOf(std::string("{")), "is not JSON: an error in line 1");
  EXPECT_EQ(FaultOf(std::string("{\n  \"format\": 1,\n}\n")), "is not JSON: an error in line 3");
  EXPECT_EQ(FaultOf(std::string()), "is not JSON: an error in line 1");
  EXPECT_EQ(FaultOf(Json::array()), "is not an object");
  EXPECT_EQ(FaultOf(Json::object()), "has no profile_version");
  EXPECT_EQ(FaultOf(Json{{"profile_version", 2}}),
            "profile_version is not 1, the version that this tool reads");
  EXPECT_EQ(FaultOf(Json{{"profile_version", 1}, {"tray", Json::array()}}), "tray is unknown");
  EXPECT_EQ(FaultOf(Profile("trays", 5)), "trays is not an array");
  EXPECT_EQ(FaultOf(Profile("trays", Json::array({5}))), "trays[0] is not an object");
  EXPECT_EQ(FaultOf(Profile("trays", Json::array({Json::object()}))), "trays[0] has no \"then\"");
  const auto of_rule = [](const char* rule) {
    return FaultOf(Profile("trays", Json::array({Json::parse(rule)})));
  };
  EXPECT_EQ(of_rule(R"({"then": {"hd": 1}})"), "trays[0].then.hd is unknown");
  EXPECT_EQ(of_rule(R"({"then": {"type": "1"}})"),
            "trays[0].then.type is not a whole number of 32 bits");
  EXPECT_EQ(of_rule(R"({"then": {"type": 2147483648}})"),
            "trays[0].then.type is not a whole number of 32 bits");
  EXPECT_EQ(of_rule(R"({"then": {"type": 1.5}})"),
            "trays[0].then.type is not a whole number of 32 bits");
  EXPECT_EQ(of_rule(R"({"then": {"alias": 7}})"), "trays[0].then.alias is not an array");
  EXPECT_EQ(of_rule(R"({"then": {"alias": [7, "x"]}})"),
            "trays[0].then.alias[1] is not a whole number of 32 bits");
  EXPECT_EQ(of_rule(R"({"if": {"nam": "x"}, "then": {}})"), "trays[0].if.nam is unknown");
  EXPECT_EQ(of_rule(R"({"if": {"name": true}, "then": {}})"), "trays[0].if.name is not a text");
  EXPECT_EQ(of_rule(R"({"if": {"name": []}, "then": {}})"), "trays[0].if.name is empty");
  EXPECT_EQ(of_rule(R"({"if": {"capacity": {}}, "then": {}})"),
            "trays[0].if.capacity has neither min nor max");
  EXPECT_EQ(of_rule(R"({"else": {}, "then": {}})"), "trays[0].else is unknown");
  EXPECT_EQ(FaultOf(Profile("finishers",
                            Json::array({Json::parse(R"({"then": {"name": "a\u0000b"}})")}))),
            "finishers[0].then.name contains a NUL");
}

}  // namespace
