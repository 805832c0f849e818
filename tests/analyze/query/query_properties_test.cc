// Properties of every query, whatever the device reports.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/analyze/query/list_updates.h"
#include "tests/support/build_folders.h"
#include "tests/support/recording_library.h"

namespace ia_test {
namespace {

using Words = std::vector<std::string>;

constexpr char kSlots[] = "Manual:7,Cas1:101,Cas2:102,Cas3:121,Cas4:122,Cas6:161,Cas7:162";
constexpr char kSlotMedia[] =
    "Manual:QVManualMediaType,Cas1:QVCas1MediaType,Cas2:QVCas2MediaType,Cas3:QVCas3MediaType,"
    "Cas4:QVCas4MediaType,Cas6:QVCas6MediaType,Cas7:QVCas7MediaType,Cas9:QVCas9MediaType";
constexpr char kMedia[] = "PlainPaper:0,Thick:2";
constexpr char kSources[] = "Cas34:122,PaperDeck:161";
constexpr char kFinisherNames[] = "Vorel Booklet:BKFIN,Vorel:FIN";

// The values that each keyword may have.
const std::map<std::string, Words>& AllowedValues() {
  static const Words bools = {"True", "False"};
  static const Words modes = {"mode1", "mode2"};
  static const Words sources = {"None",           "OptCas1",  "OptCas2",   "OptCas3",
                                "OptCas4",        "PODDeck1", "PODDeck2",  "PODDeck3",
                                "MltDeck1",       "Cas34",    "PaperDeck", "Cas34,PaperDeck",
                                "PaperDeck,Cas34"};
  static const Words media = {"PlainPaper", "Thick"};
  static const std::map<std::string, Words> allowed = {
      {"QVHardDisk", bools},
      {"QVTotalMemSize", {"0", "1", "-1", "4096"}},
      {"QVDupUnit", bools},
      {"QVUseJobAccount", bools},
      {"QVEnableTrustPrint", bools},
      {"QVUseSecuredPrint", bools},
      {"QVUseCSModeJobAccount", modes},
      {"QVUseCSModeSecured", modes},
      {"QVUseCSModeFCode", modes},
      {"QVUseUsrManagement", bools},
      {"QVSpecID", {"0000", "0001", "0120", "0310", "FFFF"}},
      {"QVPlatformVersion", {"0000", "0001", "0120", "0310", "FFFF"}},
      {"QVOptionStaple", bools},
      {"QVPuncher",
       {"None", "PUNU2", "PUNU23", "PUNU3", "PUNF4", "PUNS4", "PUNF24", "PUNU24", "PUNM"}},
      {"QVFolder", {"None", "FLDU1"}},
      {"QVTrimmer", {"None", "TRMU1"}},
      {"QVInnerTrimmer", {"None", "ITRMU1"}},
      {"QVInsertUnit", {"None", "INSU1", "MINSU1"}},
      {"QVEnableMultiInserter", bools},
      {"QVStacker", {"None", "STKU1", "STKU2"}},
      {"QVBinderOption", {"None", "BIDU1"}},
      {"QVProPuncher", {"None", "PUNU1"}},
      {"QVTopBottomTrimmer", {"None", "TBTU1"}},
      {"QVTrayCSetting", {"FinTopTray", "FinCenterTray"}},
      {"QVSidePaperDeck", {"None", "Small", "Large"}},
      {"QVSrcOption", sources},
      {"QVEnvelopeFeeder", bools},
      {"QVManualMediaType", media},
      {"QVCas1MediaType", media},
      {"QVCas2MediaType", media},
      {"QVCas3MediaType", media},
      {"QVCas4MediaType", media},
      {"QVCas6MediaType", media},
      {"QVCas7MediaType", media},
      {"QVCas9MediaType", media},
      {"QVEnableQuick", bools},
      {"QVEnableFine", bools},
      {"QVEnableSuperFine", bools},
      {"QVFAXNumOfLine", {"0", "1", "2", "3", "4"}},
      {"QVFAXLineType", {"None", "isdn", "public"}},
      {"QVFAXDialLineA", bools},
      {"QVFAXDialLineB", bools},
      {"QVFAXDialLineC", bools},
      {"QVFAXDialLineD", bools},
      {"QVFAXIPFAXINTRA", bools},
      {"QVFAXIPFAXVoIP", bools},
      {"QVFAXIPFAXNGN", bools},
      {"QVFAXIPFAXMyNumberNGN", bools},
      {"QVFinisher", {"None", "BKFIN", "FIN", "IN2TRAY", "IN2TRAYF1", "IN2TRAYSFING1", "FINJ1"}},
      {"QVCopyTray", {"None", "CPTU1"}},
      {"QVFinTray", {"None", "FNTU1", "EXTU1"}},
  };
  return allowed;
}

std::string AnyOf(const Words& words) { return *rc::gen::elementOf(words); }

std::int32_t AnyOf(const std::vector<std::int32_t>& numbers) {
  return *rc::gen::elementOf(numbers);
}

// A value that may be missing.
std::string Perhaps(const std::string& value) {
  return *rc::gen::weightedElement<bool>({{5, true}, {1, false}}) ? value : "";
}

std::string PerhapsNumber(const std::string& key, const std::vector<std::int32_t>& numbers) {
  return Perhaps(Number(key, AnyOf(numbers)));
}

std::string PerhapsText(const std::string& key, const Words& texts) {
  return Perhaps(Text(key, AnyOf(texts)));
}

Texts AnyTexts(const Words& words) {
  Texts texts(*rc::gen::inRange<std::size_t>(0, 5));
  for (auto& text : texts) text = AnyOf(words);
  return texts;
}

Numbers AnyNumbers(const std::vector<std::int32_t>& from) {
  Numbers numbers(*rc::gen::inRange<std::size_t>(0, 4));
  for (auto& number : numbers) number = AnyOf(from);
  return numbers;
}

template <class Item>
std::string AnyList(Item item) {
  Items items(*rc::gen::inRange<std::size_t>(0, 5));
  for (std::string& values : items) values = item();
  return ListDocument(items);
}

std::string AnyFinisher() {
  return PerhapsNumber("type", {0, 1, 12, 15, 18}) +
         PerhapsText("name", {"Vorel Booklet Finisher-D1", "Vorel Inner 2way Tray-N1",
                              "Vorel 3 Way Unit-D1", "Vorel Inner 2Way Tray-B1",
                              "Vorel Finisher-U3", "Other", ""}) +
         PerhapsNumber("binnum", {0, 1, 2, 3, 4}) +
         Perhaps(TextArray("func",
                           AnyTexts({"staple", "punch", "folding", "trimming", "inserter", ""}))) +
         Perhaps(TextArray(
             "detail_func",
             AnyTexts({"punching_2_holes", "punching_French_4_holes", "punching_multiple_holes",
                       "trimming_3_direction", "inserting_multiple_sheet", "punching_3"})));
}

std::string AnyBin() {
  return PerhapsNumber("number", {0, 1, 2, 3}) +
         Perhaps(NumberArray("alias", AnyNumbers({0, 101, 105, 119, 121})));
}

std::string AnyTray() {
  return PerhapsNumber("type", {0, 1, 3, 6}) +
         Perhaps(NumberArray("alias", AnyNumbers({6, 7, 101, 102, 121, 122, 123, 124, 161, 162, 164,
                                                  167, 196, 198}))) +
         PerhapsNumber("capacity", {0, 1999, 2000}) + PerhapsNumber("medium_type", {0, 2, 9});
}

std::string AnyFaxLine() {
  return PerhapsNumber("id", {1, 2}) + PerhapsNumber("type", {1, 2, 3}) +
         PerhapsNumber("id_support", {0, 18, 19, 20, 21}) +
         Perhaps(NumberArray("communication_mode", AnyNumbers({16, 17, 18, 69, 145, 197, 0})));
}

std::string AnyFunctions() {
  std::string values;
  for (const char* key :
       {"duplex", "management", "trustprint", "securedprint", "must_authentication"}) {
    values += PerhapsNumber(key, {0, 1, 2});
  }
  for (const char* key :
       {"authentication_user", "authentication_job_password", "authentication_f_code"}) {
    values += PerhapsText(key, {"mode1", "mode2", "mode3", "MODE4", "other", ""});
  }
  return Document(values);
}

class AnyQuery : public testing::Test {
 protected:
  AnyQuery() {
    context_.bidi = bidi_.get();
    context_.media_type_flags = NewFlags(kMedia);
    context_.input_tray_flags = NewFlags(kSlots);
    context_.slot_media_info_flags = NewFlags(kSlotMedia);
    context_.src_option_flags = NewFlags(kSources);
    context_.finisher_name_flags = NewFlags(kFinisherNames);
    model_ = AnyOf({"RA-P9-1", "RA-P9", "RA-J0", "RB-T9-1", "RA-K8", "RA-H8", "RA-Z3", "RA-X6",
                    "RA-Z2", "RC-Z9", "RA-Z4", "RC-T7", "RA-Z5", "RC-W0", "RA-T0", "RA-H2-JP",
                    "RA-J3", "unknown", ""});
    context_.driver_name = model_.data();
    Load(IA_DOCUMENT_ACCESSORIES,
         Document(PerhapsNumber("hd", {0, 1, 2}) + PerhapsNumber("memory", {0, 1, -1, 4096})));
    Load(IA_DOCUMENT_FUNCTIONS, AnyFunctions());
    Load(IA_DOCUMENT_SPECID, Document(PerhapsNumber("version", {0, 1, 0x120, 0x310, 0xffff}) +
                                      PerhapsText("platform_name", {"ncpp", "NCPP", "other", ""}) +
                                      PerhapsNumber("platform_version", {0, 1, 0x120, 0x310})));
    Load(IA_DOCUMENT_FINISHER_LIST, AnyList(AnyFinisher));
    Load(IA_DOCUMENT_BIN_LIST, AnyList(AnyBin));
    Load(IA_DOCUMENT_TRAY_LIST, AnyList(AnyTray));
    Load(IA_DOCUMENT_RESOLUTIONS, Document(PerhapsNumber("resolution_300", {0, 1}) +
                                           PerhapsNumber("resolution_600", {0, 1}) +
                                           PerhapsNumber("resolution_1200", {0, 1})));
    Load(IA_DOCUMENT_FAX_LINE_LIST, AnyList(AnyFaxLine));
    Load(IA_DOCUMENT_DEVICENAME, Document(PerhapsText("devicename", {"HZL-A", "Office", ""})));
  }
  ~AnyQuery() override {
    analyze_common_destroy_all_xmldata(&context_);
    for (FlagInfo* store :
         {context_.media_type_flags, context_.input_tray_flags, context_.slot_media_info_flags,
          context_.src_option_flags, context_.finisher_name_flags}) {
      zflaginfo_term(store);
    }
  }

  Entries Query() {
    CallersList list;
    EXPECT_EQ(Analyze_Info_FromPrinter(&context_, list.get(), 0), 0);
    return list.entries();
  }

  BidiPtr bidi_{Bidi_Create(ia_test::kReferenceDriver)};
  std::string model_;
  AnalyzeContext context_ = {};

 private:
  static FlagInfo* NewFlags(const char* flags) {
    FlagInfo* const store = zflaginfo_init("flags", 16);
    EXPECT_EQ(zflaginfo_get(flags, store), 0);
    return store;
  }
  void Load(std::int32_t index, const std::string& document) {
    EXPECT_EQ(analyze_common_initialize_xmldata(&context_, index, document.data(),
                                                static_cast<std::int32_t>(document.size()), "list"),
              0);
  }
};

RC_GTEST_FIXTURE_PROP(AnyQuery, GivesTheSameAgain, ()) { RC_ASSERT(Query() == Query()); }

RC_GTEST_FIXTURE_PROP(AnyQuery, GivesEachKeywordOnce, ()) {
  std::set<std::string> keywords;
  for (const Entry& entry : Query()) RC_ASSERT(keywords.insert(entry.first).second);
}

RC_GTEST_FIXTURE_PROP(AnyQuery, GivesNoValueThatItsKeywordDoesNotHave, ()) {
  for (const auto& [keyword, value] : Query()) {
    const auto allowed = AllowedValues().find(keyword);
    RC_LOG() << keyword << "=" << value << "\n";
    RC_ASSERT(allowed != AllowedValues().end());
    RC_ASSERT(std::ranges::find(allowed->second, value) != allowed->second.end());
  }
}

// The insert unit is the only option that two handlers set: one model derives it from its trays.
RC_GTEST_FIXTURE_PROP(AnyQuery, HandlersKeepExistingOptionsExceptTheInsertUnit, ()) {
  CallersList list;
  Entries before;
  for (const Handler handler :
       {z_Update_Prn_accessories, z_Update_Prn_functions, z_Update_Prn_specid,
        z_Update_Prn_platformVer, z_Update_Prn_finisher_list, z_Update_Prn_bin_list,
        z_Update_Prn_tray_list, z_Update_Prn_resolutions, z_Update_Prn_fax_line_list,
        z_Update_Prn_extra, z_Update_Prn_Complex_FinisherInformations}) {
    handler(&context_, list.get());
    const Entries after = list.entries();
    RC_ASSERT(after.size() >= before.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
      RC_ASSERT(after[i].first == before[i].first);
      RC_ASSERT(after[i].second == before[i].second || after[i].first == "QVInsertUnit");
    }
    before = after;
  }
  RC_ASSERT(before == Query());
}

}  // namespace
}  // namespace ia_test
