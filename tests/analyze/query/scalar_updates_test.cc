#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/analyzer.h"
#include "info_analyze/printer_updates.h"
#include "tests/support/option_lists.h"
#include "tests/support/recording_library.h"

namespace ia_test {
namespace {

using testing::IsEmpty;
using testing::Values;

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

using Handler = decltype(&z_Update_Prn_accessories);

class ScalarUpdates : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    context_.bidi = bidi_.get();
  }
  void TearDown() override {
    OptionList_Terminate(&context_.ppd_options);
    EXPECT_THAT(recording_.faults, IsEmpty());
  }

  QvXmlReader* Load(std::int32_t index, ScriptedDocument document) {
    return context_.documents[index].xml = recording_.Open(std::move(document));
  }

  // What a handler appends to an empty list; every handler here succeeds.
  Entries Appended(Handler handler) {
    CallersList list;
    EXPECT_EQ(handler(&context_, list.get()), 0);
    return list.entries();
  }

  // The keys that were read, each with its type.
  Entries KeysRead() const {
    Entries keys;
    for (const Call& call : recording_.calls) {
      keys.emplace_back(call.name, std::get<std::string>(call.arguments[1]));
    }
    return keys;
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
};

// All handlers -----------------------------------------------------------------------------------

struct HandlerRow {
  const char* name;
  Handler handler;
  std::int32_t document;
};

void PrintTo(const HandlerRow& row, std::ostream* out) { *out << row.name; }

class EachScalarUpdate : public ScalarUpdates, public testing::WithParamInterface<HandlerRow> {};

TEST_P(EachScalarUpdate, RefusesNullArguments) {
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) Load(index, {});
  CallersList list;
  EXPECT_EQ(GetParam().handler(nullptr, list.get()), -1);
  EXPECT_EQ(GetParam().handler(&context_, nullptr), -1);
  EXPECT_EQ(GetParam().handler(nullptr, nullptr), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_P(EachScalarUpdate, FailsAndAppendsNothingWithoutItsDocument) {
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) {
    if (index != GetParam().document) Load(index, {.strings = {{"platform_name", "NCPP"}}});
  }
  CallersList list;
  EXPECT_EQ(GetParam().handler(&context_, list.get()), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_P(EachScalarUpdate, NeedsNoOtherDocument) {
  QvXmlReader* reader = Load(GetParam().document, {.strings = {{"platform_name", "NCPP"}}});
  EXPECT_FALSE(Appended(GetParam().handler).empty());
  EXPECT_FALSE(recording_.calls.empty());
  for (const Call& call : recording_.calls) EXPECT_EQ(call.arguments[0], ArgumentOf(reader));
}

TEST_P(EachScalarUpdate, ReadsTextsAsUtf8AndNumbersPlainly) {
  Load(GetParam().document, {});
  Appended(GetParam().handler);
  for (const Call& call : recording_.calls) {
    EXPECT_EQ(call.arguments.back(), ArgumentOf(0));
    if (call.name == "qvxmlwrapGet_String") {
      EXPECT_EQ(call.arguments[4], ArgumentOf("UTF-8"));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Handlers, EachScalarUpdate,
    Values(HandlerRow{"Accessories", z_Update_Prn_accessories, IA_DOCUMENT_ACCESSORIES},
           HandlerRow{"Functions", z_Update_Prn_functions, IA_DOCUMENT_FUNCTIONS},
           HandlerRow{"Specid", z_Update_Prn_specid, IA_DOCUMENT_SPECID},
           HandlerRow{"PlatformVersion", z_Update_Prn_platformVer, IA_DOCUMENT_SPECID},
           HandlerRow{"Resolutions", z_Update_Prn_resolutions, IA_DOCUMENT_RESOLUTIONS}),
    [](const auto& info) { return std::string(info.param.name); });

struct BooleanRow {
  std::int32_t number;
  const char* text;
};
constexpr auto kBooleans = std::to_array<BooleanRow>({{0, "False"},
                                                      {1, "True"},
                                                      {-1, "True"},
                                                      {2, "True"},
                                                      {256, "True"},
                                                      {kHighest, "True"},
                                                      {kLowest, "True"}});

// `entries` with the value of `keyword` replaced.
Entries With(Entries entries, const std::string& keyword, const std::string& value) {
  for (Entry& entry : entries) {
    if (entry.first == keyword) entry.second = value;
  }
  return entries;
}

// Accessories ------------------------------------------------------------------------------------

class Accessories : public ScalarUpdates {};

TEST_F(Accessories, AreReadInOrder) {
  Load(0, {});
  Appended(z_Update_Prn_accessories);
  EXPECT_EQ(KeysRead(), (Entries{{"qvxmlwrapGet_Long", "hd"}, {"qvxmlwrapGet_Long", "memory"}}));
}

TEST_F(Accessories, HaveDefaults) {
  Load(0, {});
  EXPECT_EQ(Appended(z_Update_Prn_accessories),
            (Entries{{"QVHardDisk", "False"}, {"QVTotalMemSize", "0"}}));
}

TEST_F(Accessories, ReportAHardDisk) {
  for (const BooleanRow& row : kBooleans) {
    Load(0, {.longs = {{"hd", row.number}}});
    EXPECT_EQ(Appended(z_Update_Prn_accessories),
              (Entries{{"QVHardDisk", row.text}, {"QVTotalMemSize", "0"}}))
        << row.number;
  }
}

TEST_F(Accessories, ReportTheMemoryInDecimal) {
  for (const std::int32_t size : {0, 1, 512, 1024, 65536, -1, kHighest, kLowest}) {
    Load(0, {.longs = {{"memory", size}}});
    EXPECT_EQ(Appended(z_Update_Prn_accessories),
              (Entries{{"QVHardDisk", "False"}, {"QVTotalMemSize", std::to_string(size)}}));
  }
}

// Resolutions ------------------------------------------------------------------------------------

class Resolutions : public ScalarUpdates {};

TEST_F(Resolutions, AreReadInOrder) {
  Load(6, {});
  Appended(z_Update_Prn_resolutions);
  EXPECT_EQ(KeysRead(), (Entries{{"qvxmlwrapGet_Long", "resolution_300"},
                                 {"qvxmlwrapGet_Long", "resolution_600"},
                                 {"qvxmlwrapGet_Long", "resolution_1200"}}));
}

TEST_F(Resolutions, HaveDefaultsAndEachItsOwnKey) {
  const Entries none = {
      {"QVEnableQuick", "False"}, {"QVEnableFine", "False"}, {"QVEnableSuperFine", "False"}};
  Load(6, {});
  EXPECT_EQ(Appended(z_Update_Prn_resolutions), none);
  for (const Entry& row : Entries{{"resolution_300", "QVEnableQuick"},
                                  {"resolution_600", "QVEnableFine"},
                                  {"resolution_1200", "QVEnableSuperFine"}}) {
    for (const BooleanRow& boolean : kBooleans) {
      Load(6, {.longs = {{row.first, boolean.number}}});
      EXPECT_EQ(Appended(z_Update_Prn_resolutions), With(none, row.second, boolean.text))
          << row.first << " " << boolean.number;
    }
  }
}

// Specification ID -------------------------------------------------------------------------------

class SpecId : public ScalarUpdates {};

TEST_F(SpecId, IsTheVersionInHexadecimal) {
  Load(2, {.longs = {{"version", 0x123}}});
  EXPECT_EQ(Appended(z_Update_Prn_specid), (Entries{{"QVSpecID", "0123"}}));
  EXPECT_EQ(KeysRead(), (Entries{{"qvxmlwrapGet_Long", "version"}}));
}

TEST_F(SpecId, IsZeroWithoutVersion) {
  Load(2, {});
  EXPECT_EQ(Appended(z_Update_Prn_specid), (Entries{{"QVSpecID", "0000"}}));
}

TEST_F(SpecId, IsTheFirstOfThePpdWithoutVersion) {
  Load(2, {});
  context_.ppd_options = NewTable({{"QVValueListSpecID", "0200,0100"}});
  EXPECT_EQ(Appended(z_Update_Prn_specid), (Entries{{"QVSpecID", "0100"}}));
}

// Platform version -------------------------------------------------------------------------------

class PlatformVersion : public ScalarUpdates {};

TEST_F(PlatformVersion, IsReadWithItsName) {
  Load(2, {.longs = {{"platform_version", 0x105}, {"version", 0x999}},
           .strings = {{"platform_name", "NCPP"}}});
  EXPECT_EQ(Appended(z_Update_Prn_platformVer), (Entries{{"QVPlatformVersion", "0105"}}));
  EXPECT_EQ(KeysRead(), (Entries{{"qvxmlwrapGet_String", "platform_name"},
                                 {"qvxmlwrapGet_Long", "platform_version"}}));
}

TEST_F(PlatformVersion, NameIsComparedInAnyCase) {
  for (const char* name : {"NCPP", "ncpp", "Ncpp", "nCpP", "NCPp"}) {
    Load(2, {.longs = {{"platform_version", 1}}, .strings = {{"platform_name", name}}});
    EXPECT_EQ(Appended(z_Update_Prn_platformVer), (Entries{{"QVPlatformVersion", "0001"}})) << name;
  }
}

TEST_F(PlatformVersion, IsLeftOutForAnyOtherName) {
  for (const std::string& name : {std::string(""), std::string("NCP"), std::string("NCPP "),
                                  std::string(" NCPP"), std::string("NCPP2"), std::string("XNCPP"),
                                  std::string("CUPS"), std::string(100 * 1024, 'N')}) {
    Load(2, {.longs = {{"platform_version", 1}}, .strings = {{"platform_name", name}}});
    EXPECT_THAT(Appended(z_Update_Prn_platformVer), IsEmpty()) << name.substr(0, 10);
  }
}

TEST_F(PlatformVersion, IsLeftOutWithoutName) {
  Load(2, {.longs = {{"platform_version", 1}}});
  EXPECT_THAT(Appended(z_Update_Prn_platformVer), IsEmpty());
  Load(2, {.longs = {{"platform_version", 1}}, .strings = {{"platform_name", std::nullopt}}});
  EXPECT_THAT(Appended(z_Update_Prn_platformVer), IsEmpty());
}

TEST_F(PlatformVersion, IsZeroWithoutNumber) {
  Load(2, {.strings = {{"platform_name", "NCPP"}}});
  EXPECT_EQ(Appended(z_Update_Prn_platformVer), (Entries{{"QVPlatformVersion", "0000"}}));
}

TEST_F(PlatformVersion, IsTheFirstOfThePpdWithoutNumber) {
  Load(2, {.strings = {{"platform_name", "NCPP"}}});
  context_.ppd_options = NewTable({{"QVValueListPlatformVersion", "0300,0200"}});
  EXPECT_EQ(Appended(z_Update_Prn_platformVer), (Entries{{"QVPlatformVersion", "0200"}}));
}

// Functions --------------------------------------------------------------------------------------

const Entries kFunctionDefaults = {{"QVDupUnit", "False"},
                                   {"QVUseJobAccount", "False"},
                                   {"QVEnableTrustPrint", "False"},
                                   {"QVUseSecuredPrint", "False"},
                                   {"QVUseCSModeJobAccount", "mode1"},
                                   {"QVUseCSModeSecured", "mode1"},
                                   {"QVUseCSModeFCode", "mode1"},
                                   {"QVUseUsrManagement", "False"}};

class Functions : public ScalarUpdates {
 protected:
  Entries AppendedFor(ScriptedDocument document) {
    recording_.readers.clear();
    recording_.calls.clear();
    Load(1, std::move(document));
    return Appended(z_Update_Prn_functions);
  }
};

TEST_F(Functions, AreReadInOrder) {
  AppendedFor({});
  EXPECT_EQ(KeysRead(), (Entries{{"qvxmlwrapGet_Long", "duplex"},
                                 {"qvxmlwrapGet_Long", "management"},
                                 {"qvxmlwrapGet_Long", "trustprint"},
                                 {"qvxmlwrapGet_Long", "securedprint"},
                                 {"qvxmlwrapGet_String", "authentication_user"},
                                 {"qvxmlwrapGet_String", "authentication_job_password"},
                                 {"qvxmlwrapGet_String", "authentication_f_code"},
                                 {"qvxmlwrapGet_Long", "must_authentication"}}));
}

TEST_F(Functions, HaveDefaults) { EXPECT_EQ(AppendedFor({}), kFunctionDefaults); }

TEST_F(Functions, ReportEachNumberUnderItsKeyword) {
  for (const Entry& row : Entries{{"duplex", "QVDupUnit"},
                                  {"management", "QVUseJobAccount"},
                                  {"trustprint", "QVEnableTrustPrint"},
                                  {"securedprint", "QVUseSecuredPrint"},
                                  {"must_authentication", "QVUseUsrManagement"}}) {
    for (const BooleanRow& boolean : kBooleans) {
      EXPECT_EQ(AppendedFor({.longs = {{row.first, boolean.number}}}),
                With(kFunctionDefaults, row.second, boolean.text))
          << row.first << " " << boolean.number;
    }
  }
}

struct ModeRow {
  std::optional<std::string> reported;
  const char* as_user;   // QVUseCSModeJobAccount
  const char* as_other;  // QVUseCSModeSecured and QVUseCSModeFCode
  bool is_mode4;
};

const std::vector<ModeRow>& Modes() {
  static const std::vector<ModeRow> modes = {
      {std::nullopt, "mode1", "mode1", false},
      {"", "mode1", "mode1", false},
      {"mode", "mode1", "mode1", false},
      {"mode1", "mode1", "mode1", false},
      {"MODE1", "mode1", "mode1", false},
      {"mode2", "mode2", "mode2", false},
      {"MODE2", "mode2", "mode2", false},
      {"mOdE2", "mode2", "mode2", false},
      {"xmode2", "mode2", "mode2", false},
      {"mode2x", "mode2", "mode2", false},
      {"mode1,MODE2,mode3", "mode2", "mode2", false},
      {"mode4 mode2", "mode2", "mode2", false},
      {"mod2", "mode1", "mode1", false},
      {"mode 2", "mode1", "mode1", false},
      {"mode3", "mode1", "mode1", false},
      {"MODE3", "mode1", "mode1", false},
      {"mode4", "mode2", "mode1", true},
      {"MODE4", "mode2", "mode1", true},
      {"Mode4", "mode2", "mode1", true},
      {"mode4x", "mode1", "mode1", false},
      {"xmode4", "mode1", "mode1", false},
      {"mode4 ", "mode1", "mode1", false},
      {"mode5", "mode1", "mode1", false},
      {std::string(100 * 1024, 'm'), "mode1", "mode1", false},
      {std::string(100 * 1024, 'm') + "ode2", "mode2", "mode2", false},
  };
  return modes;
}

ScriptedDocument WithText(ScriptedDocument document, const char* key, const ModeRow& mode) {
  if (mode.reported) document.strings[key] = *mode.reported;
  return document;
}

std::string NameOf(const ModeRow& mode) {
  return mode.reported ? "'" + mode.reported->substr(0, 20) + "'" : "(missing)";
}

TEST_F(Functions, ReduceTheUsersModeToTwo) {
  for (const ModeRow& mode : Modes()) {
    EXPECT_EQ(AppendedFor(WithText({}, "authentication_user", mode)),
              With(kFunctionDefaults, "QVUseCSModeJobAccount", mode.as_user))
        << NameOf(mode);
  }
}

TEST_F(Functions, ReduceTheJobPasswordsModeToTwo) {
  for (const ModeRow& mode : Modes()) {
    EXPECT_EQ(AppendedFor(WithText({}, "authentication_job_password", mode)),
              With(kFunctionDefaults, "QVUseCSModeSecured", mode.as_other))
        << NameOf(mode);
  }
}

TEST_F(Functions, ReduceTheFCodesModeToTwo) {
  for (const ModeRow& mode : Modes()) {
    EXPECT_EQ(AppendedFor(WithText({}, "authentication_f_code", mode)),
              With(kFunctionDefaults, "QVUseCSModeFCode", mode.as_other))
        << NameOf(mode);
  }
}

TEST_F(Functions, ReduceTheThreeModesIndependently) {
  for (const ModeRow& user : Modes()) {
    for (const ModeRow& password : Modes()) {
      for (const ModeRow& f_code : {Modes()[0], Modes()[6], Modes()[17]}) {
        ScriptedDocument document = WithText({}, "authentication_user", user);
        document = WithText(document, "authentication_job_password", password);
        document = WithText(document, "authentication_f_code", f_code);
        Entries expected = With(kFunctionDefaults, "QVUseCSModeJobAccount", user.as_user);
        expected = With(expected, "QVUseCSModeSecured", password.as_other);
        expected = With(expected, "QVUseCSModeFCode", f_code.as_other);
        ASSERT_EQ(AppendedFor(document), expected)
            << NameOf(user) << NameOf(password) << NameOf(f_code);
      }
    }
  }
}

TEST_F(Functions, TextThatTheLibraryFindsAsNullIsNotReported) {
  EXPECT_EQ(AppendedFor({.strings = {{"authentication_user", std::nullopt},
                                     {"authentication_job_password", std::nullopt},
                                     {"authentication_f_code", std::nullopt}}}),
            kFunctionDefaults);
}

struct ManagementRow {
  std::optional<std::int32_t> number;
  const char* as_boolean;
  bool is_zero;
  bool is_one;
};
constexpr auto kManagements = std::to_array<ManagementRow>({
    {std::nullopt, "False", true, false},
    {0, "False", true, false},
    {1, "True", false, true},
    {2, "True", false, false},
    {-1, "True", false, false},
    {257, "True", false, false},
    {kHighest, "True", false, false},
    {kLowest, "True", false, false},
});

TEST_F(Functions, ManageUsersWhenAskedOrWhenAccountsAreManagedInMode4) {
  for (const ModeRow& user : Modes()) {
    for (const ManagementRow& must : kManagements) {
      for (const ManagementRow& management : kManagements) {
        ScriptedDocument document = WithText({}, "authentication_user", user);
        if (must.number) document.longs["must_authentication"] = *must.number;
        if (management.number) document.longs["management"] = *management.number;
        const bool is_added = must.is_zero && management.is_one && user.is_mode4;
        Entries expected = With(kFunctionDefaults, "QVUseCSModeJobAccount", user.as_user);
        expected = With(expected, "QVUseJobAccount", management.as_boolean);
        expected = With(expected, "QVUseUsrManagement", is_added ? "True" : must.as_boolean);
        ASSERT_EQ(AppendedFor(document), expected)
            << NameOf(user) << " must " << must.number.value_or(-99) << " management "
            << management.number.value_or(-99);
      }
    }
  }
}

TEST_F(Functions, ReplaceKeywordsThatTheListHasAlready) {
  Load(1, {.longs = {{"duplex", 1}}, .strings = {{"authentication_user", "mode2"}}});
  CallersList list;
  OptionList_Add(list.get(), "QVUseCSModeJobAccount", "old");
  OptionList_Add(list.get(), "QVOther", "kept");
  EXPECT_EQ(z_Update_Prn_functions(&context_, list.get()), 0);
  const Entries entries = list.entries();
  ASSERT_EQ(entries.size(), 9U);
  EXPECT_EQ(entries[0], Entry("QVUseCSModeJobAccount", "mode2"));
  EXPECT_EQ(entries[1], Entry("QVOther", "kept"));
  EXPECT_EQ(entries[2], Entry("QVDupUnit", "True"));
}

}  // namespace
}  // namespace ia_test
