#include "tests/integration/allocation_scenarios.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "info_analyze/info_analyze.h"
#include "tests/integration/sample_setting.h"
#include "tests/support/build_folders.h"

namespace ia_test {
namespace {

CallFaults& Faults() { return CallFaults::Instance(); }

// Communication library.

void CreatesBinding(Round& round) {
  BidiContext* context = round.Try([] { return Bidi_Create(ia_test::kReferenceDriver); });
  const bool is_right = context != nullptr && context->library != nullptr &&
                        context->driver_folder == std::string(ia_test::kReferenceDriver);
  round.Expect(is_right, context == nullptr, "a context");
  Bidi_Destroy(context);
}

void LoadsLibrary(Round& round) {
  BidiLibrary* library = round.Try([] {
    return z_LoadBidiLibrary(
        (std::string(ia_test::kReferenceDriver) + "/Bidi/libmqpd_util.so").c_str());
  });
  round.Expect(library != nullptr, library == nullptr, "a library");
  z_FreeBidiLibrary(library);
}

// Documents.

std::string LoadedDocuments(const AnalyzeContext& context) {
  std::string loaded;
  for (const XmlData& slot : context.documents) {
    loaded += slot.xml != nullptr ? std::to_string(slot.count) : "-";
  }
  return loaded;
}

constexpr char kAllLoaded[] = "000213010";

void LoadsDocument(Round& round) {
  const SampleAnalyser analyser;
  const int32_t status = round.Try(
      [&] { return analyze_common_create_xmldata(analyser.context(), IA_DOCUMENT_BIN_LIST); });
  const std::string loaded = LoadedDocuments(*analyser.context());
  round.Expect(status == 0 && loaded == "----1----", status == -1 && loaded == "---------",
               std::to_string(status) + " " + loaded);
}

void LoadsDocuments(Round& round) {
  const SampleAnalyser analyser;
  const int32_t status =
      round.Try([&] { return analyze_common_create_all_xmldata(analyser.context()); });
  const std::string loaded = LoadedDocuments(*analyser.context());
  const std::string before = loaded.substr(0, loaded.find('-'));
  round.Expect(
      status == 0 && loaded == kAllLoaded,
      status == -1 && std::string_view(kAllLoaded).starts_with(before) && before != kAllLoaded,
      std::to_string(status) + " " + loaded);
}

const char* const kUtf8 = "UTF-8";

// An element that cannot be allocated ends the reading; its slot and the later ones keep what they
// held.
void ReadsTexts(Round& round) {
  const SampleAnalyser analyser;
  analyze_common_create_xmldata(analyser.context(), IA_DOCUMENT_FINISHER_LIST);
  char* const old_texts[] = {Faults().NewText("old1"), Faults().NewText("old2")};
  char* texts[] = {old_texts[0], old_texts[1]};
  int32_t capacity = std::size(texts);
  int32_t count = 0;
  XmlKeyDescriptor element{
      IA_DOCUMENT_FINISHER_LIST, "", IA_KEY_STRING_ELEMENTS, texts, &kUtf8, nullptr, &capacity};
  XmlKeyDescriptor* elements = &element;
  XmlKeyDescriptor array{IA_DOCUMENT_FINISHER_LIST,
                         "func",
                         IA_KEY_ARRAY,
                         static_cast<void*>(&elements),
                         nullptr,
                         nullptr,
                         &count};
  XmlKeyDescriptor* arrays = &array;
  int32_t array_count = 1;
  const XmlKeyDescriptor list{IA_DOCUMENT_FINISHER_LIST,
                              "list",
                              IA_KEY_DICTIONARY,
                              static_cast<void*>(&arrays),
                              nullptr,
                              nullptr,
                              &array_count};
  const int32_t status =
      round.Try([&] { return analyze_common_readxml_for_list(analyser.context(), &list, 1, 0); });
  std::string answer = std::to_string(status);
  for (std::size_t i = 0; i < std::size(texts); ++i) {
    if (texts[i] != old_texts[i]) Faults().Release(old_texts[i]);
    answer += " " + Take(texts[i]);
  }
  round.Expect(answer == "0 staple punch", answer == "-1 old1 old2" || answer == "-1 staple old2",
               answer);
}

// Analyser.

bool Is(const char* text, std::string_view right) { return text != nullptr && text == right; }

// A store may be missing. An existing one may lack flags, except the last one made.
bool IsUsable(const AnalyzeContext& context) {
  const auto is_part = [](const FlagInfo* store, const std::string& right) {
    return store == nullptr || IsSomeOf(Shown(store), right);
  };
  return Is(context.queue_name, kQueue) && Is(context.driver_name, kModel) &&
         Shown(context.ppd_options) == kPpdTable &&
         (is_part(context.media_type_flags, "Plain=3\nThick=2\n") ||
          is_part(context.media_type_flags, "Plain=1\nThick=2\n")) &&
         is_part(context.slot_media_info_flags, "Cas1=QVCas1MediaType\n") &&
         is_part(context.input_tray_flags, "Cas2=102\nCas1=101\n") &&
         is_part(context.finisher_name_flags, "Staple Finisher=STFIN\n") &&
         (context.src_option_flags == nullptr || Shown(context.src_option_flags) == "Cas34=122\n");
}

bool IsWhole(const AnalyzeContext& context) {
  return IsUsable(context) && Shown(context.media_type_flags) == "Plain=3\nThick=2\n" &&
         Shown(context.slot_media_info_flags) == "Cas1=QVCas1MediaType\n" &&
         Shown(context.input_tray_flags) == "Cas2=102\nCas1=101\n" &&
         Shown(context.finisher_name_flags) == "Staple Finisher=STFIN\n" &&
         Shown(context.src_option_flags) == "Cas34=122\n";
}

void CreatesAnalyser(Round& round) {
  const SampleSetting& setting = SampleSetting::Get();
  AnalyzeContext* context =
      round.Try([&] { return Analyze_Create(setting.bidi(), kQueue, setting.document_folder()); });
  round.Expect(context != nullptr && IsWhole(*context), context == nullptr || IsUsable(*context),
               "an analyser");
  if (context != nullptr) {
    const CallersList list;
    const int32_t status = Analyze_Info_FromPrinter(context, list.head(), 0);
    round.Expect(status == 0, false, "a query that gives " + std::to_string(status));
  }
  Analyze_Destroy(context);
}

// The options that an undisturbed query adds, starting with those of the setting's documents. The
// query runs once.
const std::string& RightOptions() {
  static const std::string right = [] {
    const SampleAnalyser analyser;
    const CallersList list;
    const int32_t status = Analyze_Info_FromPrinter(analyser.context(), list.head(), 0);
    return std::to_string(status) + "\n" + list.Added();
  }();
  return right;
}

constexpr char kPlainOptions[] =
    "0\n"
    "QVHardDisk=True\nQVTotalMemSize=512\n"
    "QVDupUnit=True\nQVUseJobAccount=True\nQVEnableTrustPrint=False\nQVUseSecuredPrint=True\n"
    "QVUseCSModeJobAccount=mode2\nQVUseCSModeSecured=mode2\nQVUseCSModeFCode=mode1\n"
    "QVUseUsrManagement=True\n"
    "QVSpecID=0120\nQVPlatformVersion=0002\n";

// Texts that an option may have instead of the right one: its default, when its getter found no
// memory; the first pass's text, when that of the second could not be copied; the device's own
// number, when the PPD's list of numbers could not be built.
const std::multimap<std::string, std::string>& OtherTexts() {
  static const std::multimap<std::string, std::string> texts{
      {"QVHardDisk", "False"},
      {"QVTotalMemSize", "0"},
      {"QVDupUnit", "False"},
      {"QVUseJobAccount", "False"},
      {"QVUseSecuredPrint", "False"},
      {"QVUseCSModeJobAccount", "mode1"},
      {"QVUseCSModeJobAccount", "mode4"},
      {"QVUseCSModeSecured", "mode1"},
      {"QVUseCSModeFCode", "mode3"},
      {"QVUseUsrManagement", "False"},
      {"QVSpecID", "0000"},
      {"QVSpecID", "0123"},
      {"QVPlatformVersion", "0000"},
      {"QVPlatformVersion", "0003"},
      {"QVEnableQuick", "False"},
      {"QVEnableFine", "False"},
      {"QVEnableSuperFine", "False"},
      {"QVPuncher", "None"},
      {"QVFolder", "None"},
      {"QVInsertUnit", "None"},
      {"QVStacker", "None"},
      {"QVTrayCSetting", "FinTopTray"},
      {"QVSidePaperDeck", "None"},
      {"QVSrcOption", "None"},
      {"QVCas1MediaType", "PlainPaper"},
      {"QVFAXNumOfLine", "0"},
      {"QVFAXLineType", "None"},
      {"QVFAXDialLineA", "False"},
      {"QVFAXDialLineB", "False"},
      {"QVFAXDialLineC", "False"},
      {"QVFAXIPFAXINTRA", "False"},
      {"QVFinisher", "None"},
  };
  return texts;
}

}  // namespace

bool AreOptions(const std::string& added) {
  const auto right = Lines(RightOptions());
  const std::set<std::string> right_lines(right.begin(), right.end());
  for (const std::string& line : Lines(added)) {
    const std::size_t equals = line.find('=');
    const auto [first, last] = OtherTexts().equal_range(line.substr(0, equals));
    if (!right_lines.contains(line) && std::none_of(first, last, [&](const auto& other) {
          return other.second == line.substr(equals + 1);
        })) {
      return false;
    }
  }
  return true;
}

namespace {

void ExpectOptions(Round& round, const SampleAnalyser& analyser, uint8_t reload) {
  const std::string& right = RightOptions();
  const CallersList list;
  const int32_t status =
      round.Try([&] { return Analyze_Info_FromPrinter(analyser.context(), list.head(), reload); });
  const std::string answer = std::to_string(status) + "\n" + list.Added();
  round.Expect(answer == right && answer.starts_with(kPlainOptions),
               (status == 0 || status == -1) && AreOptions(list.Added()), answer);
}

void AsksPrinter(Round& round) {
  const SampleAnalyser analyser;
  ExpectOptions(round, analyser, 0);
}

void AsksPrinterAgain(Round& round) {
  const SampleAnalyser analyser;
  analyze_common_create_all_xmldata(analyser.context());
  ExpectOptions(round, analyser, 1);
}

// The flags before the one that failed are kept.
void QueriesFunctionVersion(Round& round) {
  const std::string right =
      "QVSecureErase=True\nQV_Prot_CommonFlag=Proof\nQV_Prot_CommonFlag_1=Quota\n";
  const SampleAnalyser analyser;
  const CallersList list;
  const int32_t status = round.Try(
      [&] { return Analyze_Info_FromFunctionVersion(analyser.context(), 0x310, list.head()); });
  const std::string added = list.Added();
  round.Expect(status == 0 && added == right,
               status == -1 && added != right && right.starts_with(added),
               std::to_string(status) + "\n" + added);
}

void SetsOptionsFromDocument(Round& round) {
  const SampleAnalyser analyser;
  analyze_common_create_xmldata(analyser.context(), IA_DOCUMENT_ACCESSORIES);
  int32_t memory = 0;
  const XmlKeyDescriptor key{
      IA_DOCUMENT_ACCESSORIES, "memory", IA_KEY_LONG, &memory, nullptr, nullptr, nullptr};
  OptionSetter row{"Memory", nullptr, zGetBinaryString, &memory, "none"};
  const CallersList list;
  const int32_t status = round.Try(
      [&] { return zReadXMLandSetOptionList(analyser.context(), &key, 1, &row, 1, list.head()); });
  const std::string answer = std::to_string(status) + " " + list.Added();
  round.Expect(answer == "0 Memory=512\n", answer == "0 Memory=none\n" || answer == "0 ", answer);
}

using Update = int32_t (*)(AnalyzeContext* context, OptionList* options);

void ExpectUpdate(Round& round, Update update, const std::string& right) {
  const SampleAnalyser analyser;
  analyze_common_create_all_xmldata(analyser.context());
  const CallersList list;
  const int32_t status = round.Try([&] { return update(analyser.context(), list.head()); });
  round.Expect(status == 0 && list.Added() == right,
               (status == 0 || status == -1) && AreOptions(list.Added()), list.Added());
}

void UpdatesAccessories(Round& round) {
  ExpectUpdate(round, z_Update_Prn_accessories, "QVHardDisk=True\nQVTotalMemSize=512\n");
}
void UpdatesFunctions(Round& round) {
  ExpectUpdate(round, z_Update_Prn_functions,
               "QVDupUnit=True\nQVUseJobAccount=True\nQVEnableTrustPrint=False\n"
               "QVUseSecuredPrint=True\nQVUseCSModeJobAccount=mode2\nQVUseCSModeSecured=mode2\n"
               "QVUseCSModeFCode=mode1\nQVUseUsrManagement=True\n");
}
void UpdatesSpecId(Round& round) { ExpectUpdate(round, z_Update_Prn_specid, "QVSpecID=0120\n"); }
void UpdatesPlatformVersion(Round& round) {
  ExpectUpdate(round, z_Update_Prn_platformVer, "QVPlatformVersion=0002\n");
}
void UpdatesResolutions(Round& round) {
  ExpectUpdate(round, z_Update_Prn_resolutions,
               "QVEnableQuick=False\nQVEnableFine=True\nQVEnableSuperFine=False\n");
}
void UpdatesFinishers(Round& round) {
  ExpectUpdate(round, z_Update_Prn_finisher_list,
               "QVOptionStaple=False\nQVPuncher=PUNU2\nQVFolder=FLDU1\nQVTrimmer=None\n"
               "QVInnerTrimmer=None\nQVInsertUnit=INSU1\nQVEnableMultiInserter=False\n"
               "QVStacker=STKU1\nQVBinderOption=None\nQVProPuncher=None\n"
               "QVTopBottomTrimmer=None\n");
}
void UpdatesBins(Round& round) {
  ExpectUpdate(round, z_Update_Prn_bin_list, "QVTrayCSetting=FinCenterTray\n");
}
void UpdatesTrays(Round& round) {
  ExpectUpdate(round, z_Update_Prn_tray_list,
               "QVSidePaperDeck=Large\nQVSrcOption=Cas34\nQVCas1MediaType=Thick\n");
}
void UpdatesFaxLines(Round& round) {
  ExpectUpdate(round, z_Update_Prn_fax_line_list,
               "QVFAXNumOfLine=1\nQVFAXLineType=isdn\nQVFAXDialLineA=True\nQVFAXDialLineB=True\n"
               "QVFAXDialLineC=True\nQVFAXDialLineD=False\nQVFAXIPFAXINTRA=True\n"
               "QVFAXIPFAXVoIP=False\nQVFAXIPFAXNGN=False\nQVFAXIPFAXMyNumberNGN=False\n");
}
void UpdatesFinisherAndItsTrays(Round& round) {
  ExpectUpdate(round, z_Update_Prn_Complex_FinisherInformations,
               "QVFinisher=STFIN\nQVCopyTray=None\nQVFinTray=None\n");
}

}  // namespace

std::span<const Scenario> AnalyserScenarios() {
  static const auto scenarios = std::to_array<Scenario>({
      {"SetsOptionsFromDocument", SetsOptionsFromDocument},
      {"CreatesBinding", CreatesBinding},
      {"LoadsLibrary", LoadsLibrary},
      {"LoadsDocument", LoadsDocument},
      {"LoadsDocuments", LoadsDocuments},
      {"ReadsTexts", ReadsTexts},
      {"CreatesAnalyser", CreatesAnalyser},
      {"AsksPrinter", AsksPrinter},
      {"AsksPrinterAgain", AsksPrinterAgain},
      {"QueriesFunctionVersion", QueriesFunctionVersion},
      {"UpdatesAccessories", UpdatesAccessories},
      {"UpdatesFunctions", UpdatesFunctions},
      {"UpdatesSpecId", UpdatesSpecId},
      {"UpdatesPlatformVersion", UpdatesPlatformVersion},
      {"UpdatesResolutions", UpdatesResolutions},
      {"UpdatesFinishers", UpdatesFinishers},
      {"UpdatesBins", UpdatesBins},
      {"UpdatesTrays", UpdatesTrays},
      {"UpdatesFaxLines", UpdatesFaxLines},
      {"UpdatesFinisherAndItsTrays", UpdatesFinisherAndItsTrays},
  });
  return scenarios;
}

}  // namespace ia_test
