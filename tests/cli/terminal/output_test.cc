#include "cli/terminal/output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "cli/printer/handles.h"

namespace {

using ia::cli::Answer;
using ia::cli::FormatJson;
using ia::cli::FormatText;
using ia::cli::OptionListPtr;

OptionListPtr MakeList(std::initializer_list<std::pair<const char*, const char*>> options) {
  OptionList* list = nullptr;
  for (const auto& [key, value] : options) {
    if (list == nullptr) {
      info_common_optlist_additem_front(&list, key, value);
    } else {
      OptionList_Add(list, key, value);
    }
  }
  return OptionListPtr(list);
}

TEST(TextFormat, GivesOneLineForEachOptionInOrder) {
  const OptionListPtr list = MakeList({{"QVZeta", "1"}, {"QVAlpha", ""}, {"QVMid", "a b"}});
  EXPECT_EQ(FormatText({"RA-H2", list.get()}), "QVZeta=1\nQVAlpha=\nQVMid=a b\n");
}

TEST(TextFormat, IsEmptyWithoutOptions) { EXPECT_EQ(FormatText({"RA-H2", nullptr}), ""); }

TEST(TextFormat, LeavesNoControlCharacterInKeywordsAndValues) {
  const OptionListPtr list = MakeList({{"QV\x1b]0;", "a\nQVFake=True\x7f\xff"}});
  EXPECT_EQ(FormatText({nullptr, list.get()}), "QV\\x1b]0;=a\\x0aQVFake=True\\x7f\\xff\n");
}

TEST(JsonFormat, GivesItsKeysInAFixedOrder) {
  const OptionListPtr list = MakeList({{"QVZeta", "1"}, {"QVAlpha", "True"}});
  EXPECT_EQ(FormatJson({"RA-H2", list.get()}), R"({
  "schema_version": 1,
  "verb": null,
  "driver_name": "RA-H2",
  "options": [
    {
      "keyword": "QVZeta",
      "value": "1"
    },
    {
      "keyword": "QVAlpha",
      "value": "True"
    }
  ]
}
)");
}

TEST(JsonFormat, HasANullForAMissingModelCode) {
  EXPECT_EQ(FormatJson({nullptr, nullptr}), R"({
  "schema_version": 1,
  "verb": null,
  "driver_name": null,
  "options": []
}
)");
}

TEST(JsonFormat, ReplacesBytesThatAreNotUtf8) {
  const OptionListPtr list = MakeList({{"QV\xff", "a\xe9\x62"}});
  const auto json = nlohmann::json::parse(FormatJson({"RA\xc3", list.get()}));
  EXPECT_EQ(json["driver_name"], "RA\ufffd");
  EXPECT_EQ(json["options"][0]["keyword"], "QV\ufffd");
  EXPECT_EQ(json["options"][0]["value"], "a\ufffd\x62");
}

TEST(JsonFormat, KeepsControlCharactersAndOtherAlphabetsAsEscapes) {
  const OptionListPtr list = MakeList({{"QVName", "\x1b[31m\x7f Büro \xc2\x9b\"\\\n"}});
  const std::string text = FormatJson({"RA-H2", list.get()});
  EXPECT_THAT(text, testing::Each(
                        testing::AnyOf('\n', testing::AllOf(testing::Ge(' '), testing::Le('~')))));
  EXPECT_EQ(nlohmann::json::parse(text)["options"][0]["value"], "\x1b[31m\x7f Büro \xc2\x9b\"\\\n");
}

TEST(FormatNames, EachHasAFormatter) {
  EXPECT_THAT(ia::cli::FormatNames(), testing::ElementsAre("text", "json"));
  EXPECT_EQ(ia::cli::FindFormatter("text"), &FormatText);
  EXPECT_EQ(ia::cli::FindFormatter("json"), &FormatJson);
  EXPECT_EQ(ia::cli::FindFormatter("tex"), nullptr);
}

}  // namespace
