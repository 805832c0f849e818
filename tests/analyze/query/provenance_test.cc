#include "info_analyze/provenance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "info_analyze/list_getters.h"
#include "tests/analyze/query/list_updates.h"

namespace ia_test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<UpdateSource> Updates() {
  std::vector<UpdateSource> updates;
  UpdateSource update = {};
  while (Analyze_Provenance_GetUpdate(static_cast<std::int32_t>(updates.size()), &update,
                                      sizeof update) != 0) {
    updates.push_back(update);
  }
  return updates;
}

std::vector<InputKey> Inputs() {
  std::vector<InputKey> inputs;
  InputKey input = {};
  while (Analyze_Provenance_GetInput(static_cast<std::int32_t>(inputs.size()), &input,
                                     sizeof input) != 0) {
    inputs.push_back(input);
  }
  return inputs;
}

// An option, with the numbers by which it is known.
struct Option : OptionSource {
  std::int32_t update;
  std::int32_t number;
};

std::vector<Option> OptionsOf(std::int32_t update) {
  std::vector<Option> options;
  Option option = {};
  option.update = update;
  while (Analyze_Provenance_GetOption(update, option.number, &option, sizeof(OptionSource)) != 0) {
    options.push_back(option);
    ++option.number;
  }
  return options;
}

std::vector<Option> AllOptions() {
  std::vector<Option> all;
  for (std::int32_t i = 0; i < static_cast<std::int32_t>(Updates().size()); ++i) {
    for (const Option& option : OptionsOf(i)) all.push_back(option);
  }
  return all;
}

std::vector<std::int32_t> InputNumbersOf(const Option& option) {
  std::vector<std::int32_t> numbers;
  for (std::int32_t i = 0; i < option.input_count; ++i) {
    numbers.push_back(Analyze_Provenance_GetOptionInput(option.update, option.number, i));
  }
  return numbers;
}

// "Document/key" of each input of an option; keys of the PPD without a document.
std::set<std::string> NamesOfInputs(const Option& option) {
  static const std::vector<std::string> documents = {
      "Accessories", "Functions",   "Specid",        "Finisher_list", "Bin_list",
      "Tray_list",   "Resolutions", "Fax_line_list", "Devicename"};
  std::set<std::string> names;
  for (const std::int32_t number : InputNumbersOf(option)) {
    const InputKey input = Inputs().at(static_cast<std::size_t>(number));
    names.insert(input.document == IA_INPUT_OF_PPD
                     ? input.key
                     : documents[static_cast<std::size_t>(input.document)] + "/" + input.key);
  }
  return names;
}

// Updates ----------------------------------------------------------------------------------------

struct UpdateCase {
  const char* name;
  std::int32_t guard;
  std::vector<std::string> keywords;
};

// The guard of an update is not always a document that it reads.
const std::vector<UpdateCase> kUpdates = {
    {"z_Update_Prn_accessories", IA_DOCUMENT_ACCESSORIES, {"QVHardDisk", "QVTotalMemSize"}},
    {"z_Update_Prn_functions",
     IA_DOCUMENT_FUNCTIONS,
     {"QVDupUnit", "QVUseJobAccount", "QVEnableTrustPrint", "QVUseSecuredPrint",
      "QVUseCSModeJobAccount", "QVUseCSModeSecured", "QVUseCSModeFCode", "QVUseUsrManagement"}},
    {"z_Update_Prn_specid", IA_DOCUMENT_SPECID, {"QVSpecID"}},
    {"z_Update_Prn_platformVer", IA_DOCUMENT_FINISHER_LIST, {"QVPlatformVersion"}},
    {"z_Update_Prn_finisher_list",
     IA_DOCUMENT_BIN_LIST,
     {"QVOptionStaple", "QVPuncher", "QVFolder", "QVTrimmer", "QVInnerTrimmer", "QVInsertUnit",
      "QVEnableMultiInserter", "QVStacker", "QVBinderOption", "QVProPuncher",
      "QVTopBottomTrimmer"}},
    {"z_Update_Prn_bin_list", IA_DOCUMENT_TRAY_LIST, {"QVTrayCSetting"}},
    {"z_Update_Prn_tray_list",
     IA_DOCUMENT_RESOLUTIONS,
     {"QVSidePaperDeck", "QVSrcOption", "(media types)", "QVEnvelopeFeeder"}},
    {"z_Update_Prn_resolutions",
     IA_DOCUMENT_FAX_LINE_LIST,
     {"QVEnableQuick", "QVEnableFine", "QVEnableSuperFine"}},
    {"z_Update_Prn_fax_line_list",
     IA_DOCUMENT_DEVICENAME,
     {"QVFAXNumOfLine", "QVFAXLineType", "QVFAXDialLineA", "QVFAXDialLineB", "QVFAXDialLineC",
      "QVFAXDialLineD", "QVFAXIPFAXINTRA", "QVFAXIPFAXVoIP", "QVFAXIPFAXNGN",
      "QVFAXIPFAXMyNumberNGN"}},
    {"z_Update_Prn_extra", IA_GUARD_FLAGS, {"QVInsertUnit"}},
    {"z_Update_Prn_Complex_FinisherInformations",
     IA_GUARD_NONE,
     {"QVFinisher", "QVCopyTray", "QVFinTray"}},
};

std::vector<std::string> KeywordsOf(std::int32_t update) {
  std::vector<std::string> keywords;
  for (const Option& option : OptionsOf(update)) {
    keywords.emplace_back(option.keyword != nullptr ? option.keyword : "(media types)");
  }
  return keywords;
}

TEST(ProvenanceOfUpdates, NamesThemInTheirOrderWithGuardsAndOptions) {
  const auto updates = Updates();
  ASSERT_EQ(updates.size(), kUpdates.size());
  for (std::size_t i = 0; i < updates.size(); ++i) {
    EXPECT_STREQ(updates[i].name, kUpdates[i].name);
    EXPECT_EQ(updates[i].guard, kUpdates[i].guard) << kUpdates[i].name;
    EXPECT_EQ(KeywordsOf(static_cast<std::int32_t>(i)), kUpdates[i].keywords) << kUpdates[i].name;
    EXPECT_EQ(updates[i].option_count, static_cast<std::int32_t>(kUpdates[i].keywords.size()));
  }
}

constexpr std::int32_t kNoNumbers[] = {-1, INT32_MAX, INT32_MIN};

TEST(ProvenanceOfUpdates, EndOutOfRange) {
  const auto end = static_cast<std::int32_t>(Updates().size());
  UpdateSource update = {.name = "kept", .guard = 7, .option_count = 9};
  for (const std::int32_t number : {-1, end, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Analyze_Provenance_GetUpdate(number, &update, sizeof update), 0) << number;
  }
  EXPECT_STREQ(update.name, "kept");
  EXPECT_EQ(update.option_count, 9);
  EXPECT_EQ(Analyze_Provenance_GetUpdate(0, nullptr, sizeof update), 0);
}

TEST(ProvenanceOfOptions, EndOutOfRange) {
  const auto end = static_cast<std::int32_t>(Updates().size());
  OptionSource option = {};
  option.keyword = "kept";
  const auto expect_none = [&](std::int32_t update, std::int32_t number) {
    EXPECT_EQ(Analyze_Provenance_GetOption(update, number, &option, sizeof option), 0)
        << update << " " << number;
    EXPECT_EQ(Analyze_Provenance_GetOptionInput(update, number, 0), IA_NO_INPUT)
        << update << " " << number;
  };
  for (const std::int32_t update : {-1, end, INT32_MAX, INT32_MIN}) expect_none(update, 0);
  for (std::int32_t update = 0; update < end; ++update) {
    expect_none(update, static_cast<std::int32_t>(OptionsOf(update).size()));
    for (const std::int32_t number : kNoNumbers) expect_none(update, number);
  }
  EXPECT_STREQ(option.keyword, "kept");
  EXPECT_EQ(Analyze_Provenance_GetOption(0, 0, nullptr, sizeof option), 0);
}

TEST(ProvenanceOfOptions, InputsRiseAndEndWithTheirCount) {
  for (const Option& option : AllOptions()) {
    const std::vector<std::int32_t> inputs = InputNumbersOf(option);
    EXPECT_TRUE(std::ranges::is_sorted(inputs, std::ranges::less_equal())) << option.keyword;
    for (const std::int32_t index : {-1, option.input_count, INT32_MAX, INT32_MIN}) {
      EXPECT_EQ(Analyze_Provenance_GetOptionInput(option.update, option.number, index),
                IA_NO_INPUT);
    }
  }
}

Option FindOption(const std::string& keyword) {
  for (const Option& option : AllOptions()) {
    if (option.keyword != nullptr && option.keyword == keyword) return option;
  }
  throw std::invalid_argument(keyword);
}

struct OptionCase {
  const char* keyword;
  const char* default_value;
  std::set<std::string> inputs;
};

void PrintTo(const OptionCase& option, std::ostream* out) { *out << option.keyword; }

class ProvenanceOfOption : public testing::TestWithParam<OptionCase> {};

TEST_P(ProvenanceOfOption, HasDefaultAndInputs) {
  const Option option = FindOption(GetParam().keyword);
  EXPECT_STREQ(option.default_value, GetParam().default_value);
  EXPECT_EQ(NamesOfInputs(option), GetParam().inputs);
  EXPECT_EQ(option.family, IA_FAMILY_NONE);
}

const OptionCase kOptions[] = {
    {"QVHardDisk", "False", {"Accessories/hd"}},
    {"QVTotalMemSize", "0", {"Accessories/memory"}},
    {"QVDupUnit", "False", {"Functions/duplex"}},
    {"QVUseJobAccount", "False", {"Functions/management"}},
    {"QVEnableTrustPrint", "False", {"Functions/trustprint"}},
    {"QVUseSecuredPrint", "False", {"Functions/securedprint"}},
    {"QVUseCSModeJobAccount", "mode1", {"Functions/authentication_user"}},
    {"QVUseCSModeSecured", "mode1", {"Functions/authentication_job_password"}},
    {"QVUseCSModeFCode", "mode1", {"Functions/authentication_f_code"}},
    {"QVUseUsrManagement",
     "False",
     {"Functions/must_authentication", "Functions/management", "Functions/authentication_user"}},
    {"QVSpecID", "0000", {"Specid/version", "QVValueListSpecID"}},
    {"QVPlatformVersion",
     "0000",
     {"Specid/platform_name", "Specid/platform_version", "QVValueListPlatformVersion"}},
    {"QVFolder", "None", {"Finisher_list/func"}},
    {"QVTrimmer", "None", {"Finisher_list/func", "Finisher_list/name"}},
    {"QVInnerTrimmer", "None", {"Finisher_list/func", "Finisher_list/name"}},
    {"QVInsertUnit", "None", {"Finisher_list/func", "Finisher_list/type"}},
    {"QVEnableMultiInserter",
     "False",
     {"Finisher_list/func", "Finisher_list/type", "Finisher_list/detail_func"}},
    {"QVStacker", "None", {"Finisher_list/type"}},
    {"QVBinderOption", "None", {"Finisher_list/type"}},
    {"QVProPuncher", "None", {"Finisher_list/name", "Finisher_list/detail_func"}},
    {"QVTopBottomTrimmer", "None", {"Finisher_list/type", "Finisher_list/detail_func"}},
    {"QVTrayCSetting", "FinTopTray", {"Bin_list/number", "Bin_list/alias"}},
    {"QVEnableQuick", "False", {"Resolutions/resolution_300"}},
    {"QVEnableFine", "False", {"Resolutions/resolution_600"}},
    {"QVEnableSuperFine", "False", {"Resolutions/resolution_1200"}},
    {"QVFAXNumOfLine", "0", {"Fax_line_list/list", "Fax_line_list/type"}},
    {"QVFAXLineType", "None", {"Fax_line_list/type"}},
    {"QVFAXDialLineA", "False", {"Fax_line_list/id_support", "Devicename/devicename"}},
    {"QVFAXDialLineB", "False", {"Fax_line_list/id_support", "Devicename/devicename"}},
    {"QVFAXDialLineC", "False", {"Fax_line_list/id_support", "Devicename/devicename"}},
    {"QVFAXDialLineD", "False", {"Fax_line_list/id_support"}},
    {"QVFAXIPFAXINTRA", "False", {"Fax_line_list/communication_mode"}},
    {"QVFAXIPFAXVoIP", "False", {"Fax_line_list/communication_mode"}},
    {"QVFAXIPFAXNGN", "False", {"Fax_line_list/communication_mode"}},
    {"QVFAXIPFAXMyNumberNGN", "False", {"Fax_line_list/communication_mode"}},
};
INSTANTIATE_TEST_SUITE_P(All, ProvenanceOfOption, testing::ValuesIn(kOptions),
                         testing::PrintToStringParamName());

TEST(ProvenanceOfOptions, ThoseOfAFamilyDependOnTheModelCodeAndTheirHandler) {
  const std::map<std::string, std::int32_t> families = {
      {"QVFinisher", IA_FAMILY_FINISHER},       {"QVCopyTray", IA_FAMILY_COPY_TRAY},
      {"QVFinTray", IA_FAMILY_FIN_TRAY},        {"QVSidePaperDeck", IA_FAMILY_SIDE_PAPER_DECK},
      {"QVSrcOption", IA_FAMILY_SOURCE_OPTION}, {"QVEnvelopeFeeder", IA_FAMILY_ENVELOPE_FEEDER},
      {"QVPuncher", IA_FAMILY_PUNCHER},         {"QVOptionStaple", IA_FAMILY_FINISHING_FUNCTION},
  };
  for (const auto& [keyword, family] : families) {
    EXPECT_EQ(FindOption(keyword).family, family) << keyword;
    EXPECT_THAT(NamesOfInputs(FindOption(keyword)), ElementsAre("QVAnlz_DriverName")) << keyword;
  }
}

// A raw value is read under a key that the option depends on.
TEST(ProvenanceOfOptions, ValueInputIsOneOfTheInputs) {
  for (const Option& option : AllOptions()) {
    if (option.value_input == IA_NO_INPUT) continue;
    EXPECT_THAT(InputNumbersOf(option), Contains(option.value_input)) << option.keyword;
  }
}

// Inputs -----------------------------------------------------------------------------------------

TEST(ProvenanceOfInputs, EndOutOfRange) {
  const auto end = static_cast<std::int32_t>(Inputs().size());
  InputKey input = {.document = 7, .in_list = 7, .type = 7, .key = "kept"};
  for (const std::int32_t number : {-1, end, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Analyze_Provenance_GetInput(number, &input, sizeof input), 0) << number;
  }
  EXPECT_STREQ(input.key, "kept");
  EXPECT_EQ(Analyze_Provenance_GetInput(0, nullptr, sizeof input), 0);
}

// Numbers of inputs are public, so they stay.
TEST(ProvenanceOfInputs, KeepTheirNumbers) {
  const std::vector<InputKey> inputs = Inputs();
  ASSERT_GE(inputs.size(), 42U);
  EXPECT_STREQ(inputs[0].key, "hd");
  EXPECT_STREQ(inputs[34].key, "QVAnlz_DriverName");
  EXPECT_STREQ(inputs[41].key, "QVValueListPlatformVersion");
}

TEST(ProvenanceOfInputs, AreKeysOfItemsInTheFourListsAlone) {
  const std::set<std::int32_t> lists = {IA_DOCUMENT_FINISHER_LIST, IA_DOCUMENT_BIN_LIST,
                                        IA_DOCUMENT_TRAY_LIST, IA_DOCUMENT_FAX_LINE_LIST};
  for (const InputKey& input : Inputs()) {
    const bool is_count = input.type == IA_KEY_DICTIONARY;
    EXPECT_EQ(input.in_list != 0, lists.count(input.document) != 0 && !is_count) << input.key;
  }
}

// Running updates --------------------------------------------------------------------------------

class ProvenanceRun : public ListUpdates {
 protected:
  std::vector<Entry> Run(std::int32_t update, bool with_defaults) {
    CallersList list;
    EXPECT_EQ(Analyze_Provenance_RunUpdate(&context_, update, with_defaults ? 1 : 0, list.get()),
              0);
    return list.entries();
  }
};

constexpr std::int32_t kBins = 5;
constexpr std::int32_t kExtra = 9;
constexpr std::int32_t kFinishers = 10;

TEST_F(ProvenanceRun, LeavesOutDefaultsWhenAsked) {
  Load(IA_DOCUMENT_BIN_LIST, {Number("number", 1)});
  Load(IA_DOCUMENT_TRAY_LIST, {""});
  EXPECT_THAT(Run(kBins, true), ElementsAre(Entry("QVTrayCSetting", "FinTopTray")));
  EXPECT_THAT(Run(kBins, false), IsEmpty());
}

TEST_F(ProvenanceRun, KeepsWhatTheDeviceGives) {
  Load(IA_DOCUMENT_BIN_LIST, {Number("number", 3) + NumberArray("alias", {101})});
  Load(IA_DOCUMENT_TRAY_LIST, {""});
  EXPECT_THAT(Run(kBins, false), ElementsAre(Entry("QVTrayCSetting", "FinCenterTray")));
}

TEST_F(ProvenanceRun, DoesNothingWithoutItsGuard) {
  Load(IA_DOCUMENT_BIN_LIST, {Number("number", 3) + NumberArray("alias", {101})});
  EXPECT_THAT(Run(kBins, true), IsEmpty());
}

TEST_F(ProvenanceRun, LeavesOutTheExtraOptionThatNoTrayGives) {
  Load(IA_DOCUMENT_TRAY_LIST, {NumberArray("alias", {7})});
  char model[] = "RA-Z5";
  FlagInfo* const flags = zflaginfo_init("flags", 1);
  context_.driver_name = model;
  context_.media_type_flags = flags;
  EXPECT_THAT(Run(kExtra, true), ElementsAre(Entry("QVInsertUnit", "None")));
  EXPECT_THAT(Run(kExtra, false), IsEmpty());
  context_.driver_name = nullptr;
  context_.media_type_flags = nullptr;
  zflaginfo_term(flags);
}

TEST_F(ProvenanceRun, PassesOnTheResultOfTheHandler) {
  Load(IA_DOCUMENT_FINISHER_LIST, {});
  CallersList list;
  context_.documents[IA_DOCUMENT_BIN_LIST].count = 1;  // a missing item
  EXPECT_EQ(Analyze_Provenance_RunUpdate(&context_, kFinishers, 1, list.get()), -1);
  context_.documents[IA_DOCUMENT_BIN_LIST].count = 0;
}

TEST_F(ProvenanceRun, RefusesNullAndNumbersOutOfRange) {
  CallersList list;
  EXPECT_EQ(Analyze_Provenance_RunUpdate(nullptr, kBins, 1, list.get()), -1);
  EXPECT_EQ(Analyze_Provenance_RunUpdate(&context_, kBins, 1, nullptr), -1);
  for (const std::int32_t update : {-1, 11, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Analyze_Provenance_RunUpdate(&context_, update, 1, list.get()), -1) << update;
  }
  EXPECT_THAT(list.entries(), IsEmpty());
}

}  // namespace
}  // namespace ia_test
