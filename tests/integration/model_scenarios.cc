#include "tests/integration/allocation_scenarios.h"

#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "info_analyze/info_analyze.h"
#include "tests/integration/sample_setting.h"

namespace ia_test {
namespace {

// Handlers of paper sources.

struct InputCase {
  const char* name;
  InputOptionHandler handler;
  TrayEntry tray;
  const char* row;  // keyword and value of the row that a tray gives
};

constexpr TrayEntry kDeck{6, 161, 2000, 2};
constexpr TrayEntry kPlainDeck{6, 161, 2000, 1};
constexpr TrayEntry kCassette{3, 101, 550, 2};

const InputCase kInputCases[] = {
    {"SidePaperDeckCommon", analyze_GetQVSidePaperDeckCommon, kDeck, "QVSidePaperDeck=Large"},
    {"SidePaperDeckCypress", analyze_GetQVSidePaperDeck_CYPRESS, kDeck, "QVSidePaperDeck=Large"},
    {"SidePaperDeckOak", analyze_GetQVSidePaperDeckOAK, kDeck, "QVSidePaperDeck=Large"},
    {"SrcOptionCommon", analyze_GetQVSrcOptionCommon, kDeck, "QVSrcOption=Deck,Second"},
    {"SrcOptionCommonByCount", analyze_GetQVSrcOptionCommonByCount, kDeck, "QVSrcOption=None"},
    {"SrcOptionLaurel", analyze_GetQVSrcOptionLAUREL, kDeck, "QVSrcOption=None"},
    {"SrcOptionMyrtle", analyze_GetQVSrcOptionMYRTLE, kDeck, "QVSrcOption=None"},
    {"SrcOptionElm", analyze_GetQVSrcOption_ELM, kDeck, "QVSrcOption=None"},
    {"SrcOptionOlive", analyze_GetQVSrcOptionOLIVE, kDeck, "QVSrcOption=None"},
    {"SrcOptionSpruce", analyze_GetQVSrcOptionSPRUCE, kDeck, "QVSrcOption=None"},
    {"SrcOptionCypress", analyze_GetQVSrcOption_CYPRESS, kDeck, "QVSrcOption=None"},
    {"SrcOptionHolly", analyze_GetQVSrcOptionHOLLY, kDeck, "QVSrcOption=OptCas1"},
    {"SrcOptionOak", analyze_GetQVSrcOptionOAK, kDeck, "QVSrcOption=None"},
    {"SrcOptionRowan", analyze_GetQVSrcOptionROWAN, kDeck, "QVSrcOption=MltDeck1"},
    {"SrcOptionRedwood", analyze_GetQVSrcOptionREDWOOD, kDeck, "QVSrcOption=None"},
    {"EnvelopeFeeder", analyze_GetQVEnvelopeFeederCommon, kDeck, "QVEnvelopeFeeder=False"},
    {"MediaTypeCommon", analyze_GetQVXXXMediaTypeCommon, kDeck, "QVDeckMediaType=Thick"},
    {"MediaTypeCypress", analyze_GetQVXXXMediaType_CYPRESS, kDeck, "QVSecondMediaType=Thick"},
    {"MediaTypeYew", analyze_GetQVXXXMediaTypeYEW, kCassette, "QVCas1MediaType=Thick"},
    {"MediaTypeRedwood", analyze_GetQVXXXMediaTypeREDWOOD, kDeck, "QVCas6MediaType=Thick"},
    {"MediaTypePlain", analyze_GetQVXXXMediaTypeCommon, kPlainDeck, "QVDeckMediaType=PlainPaper"},
    {"MediaTypeRedwoodPlain", analyze_GetQVXXXMediaTypeREDWOOD, kPlainDeck,
     "QVCas6MediaType=PlainPaper"},
};

// The flags of a driver that knows those trays.
class TrayAnalyser {
 public:
  TrayAnalyser() {
    context_.media_type_flags = Store("Thick:2");
    context_.input_tray_flags = Store("Deck:161,Second:161");
    context_.slot_media_info_flags = Store(
        "Deck:QVDeckMediaType,Second:QVSecondMediaType,"
        "Cas1:QVCas1MediaType,Cas6:QVCas6MediaType");
    context_.src_option_flags = Store("Deck:161,Second:161");
  }
  ~TrayAnalyser() {
    for (FlagInfo* store : {context_.media_type_flags, context_.input_tray_flags,
                            context_.slot_media_info_flags, context_.src_option_flags}) {
      zflaginfo_term(store);
    }
  }
  TrayAnalyser(const TrayAnalyser&) = delete;
  TrayAnalyser& operator=(const TrayAnalyser&) = delete;

  AnalyzeContext* context() { return &context_; }

 private:
  static FlagInfo* Store(const char* text) {
    FlagInfo* const store = zflaginfo_init("Flags", 8);
    zflaginfo_get(text, store);
    return store;
  }

  AnalyzeContext context_ = {};
};

// "keyword=value" of each row, with "(none)" for a missing text.
std::string TakeRows(OptionSetter* rows, int32_t count) {
  std::string shown;
  for (OptionSetter* row = rows; row != rows + count; ++row) {
    // Handlers give their callers texts to release, although rows only read them.
    shown +=
        (shown.empty() ? "" : " ") + Take(const_cast<char*>(row->keyword)) + "=" + Take(row->value);
  }
  return shown;
}

// The library skips a row without keyword, so a value in it would leak. A row without value gets
// the default. The rows of REDWOOD are complete or missing.
void AppendsRow(Round& round, const InputCase& handler) {
  TrayAnalyser analyser;
  OptionSetter rows[4] = {};
  int32_t count = 0;
  const int32_t status = round.Try(
      [&] { return handler.handler(analyser.context(), &handler.tray, 1, 1, rows, &count); });
  const std::string right = handler.row;
  const std::string keyword = right.substr(0, right.find('='));
  const std::string answer = TakeRows(rows, count);
  const bool is_documented_failure =
      handler.handler == analyze_GetQVXXXMediaTypeREDWOOD
          ? answer.empty()
          : answer == keyword + "=(none)" || answer == "(none)=(none)";
  round.Expect(status == 0 && answer == right, status == 0 && is_documented_failure,
               std::to_string(status) + " " + answer);
}

// Handlers of finishing functions.

struct FunctionCase {
  const char* name;
  FunctionStringHandler handler;
  const char* model;
  bool has_table;
  const char* details[2];
  const char* right;
  const char* fallback;  // what is found when there is no memory for that
};

const FunctionCase kFunctionCases[] = {
    {"PuncherOfTwoAndFrench",
     analyze_GetPuncherOptionString,
     nullptr,
     true,
     {"punching_2_holes", "punching_French_4_holes"},
     "PUNF24",
     "PUNU2"},
    {"PuncherOfModel",
     analyze_GetPuncherOptionString,
     "RA-J3",
     true,
     {"punching_2_holes", "punching_multiple_holes"},
     "PUNM",
     "(none)"},
    {"PuncherInTableOrder",
     analyze_GetPuncherOptionStringSearchTableListOrder,
     nullptr,
     true,
     {"x", "punching_2_holes"},
     "PUNU2",
     "(none)"},
    {"PuncherByDefault",
     analyze_GetPuncherOptionStringSearchTableListOrder,
     nullptr,
     false,
     {"x", "y"},
     "DEF",
     "(none)"},
    {"PuncherInDeviceOrder",
     analyze_GetPuncherOptionStringDetailFuncListOrder,
     nullptr,
     true,
     {"x", "punching_2_holes"},
     "PUNU2",
     "(none)"},
    {"PuncherInDeviceOrderByDefault",
     analyze_GetPuncherOptionStringDetailFuncListOrder,
     nullptr,
     false,
     {"x", "y"},
     "DEF",
     "(none)"},
    {"PuncherJuniper",
     analyze_GetPuncherOptionStringJUNIPER,
     nullptr,
     true,
     {"x", "punching_2_holes"},
     "PUNU2",
     "(none)"},
    {"PuncherJuniperMlt",
     analyze_GetPuncherOptionStringJUNIPER_MLT,
     nullptr,
     true,
     {"punching_2_holes", "punching_French_4_holes"},
     "PUNU24",
     "(none)"},
    {"PuncherJuniperMltInTableOrder",
     analyze_GetPuncherOptionStringJUNIPER_MLT,
     nullptr,
     true,
     {"x", "punching_French_4_holes"},
     "PUNF4",
     "(none)"},
    {"PuncherMultipleHoles",
     analyze_GetPuncherOptionStringMultipleHoles,
     nullptr,
     true,
     {"x", "punching_multiple_holes"},
     "PUNM",
     "(none)"},
    {"PuncherMultipleHolesInTableOrder",
     analyze_GetPuncherOptionStringMultipleHoles,
     nullptr,
     true,
     {"x", "punching_2_holes"},
     "PUNU2",
     "(none)"},
    {"FinishingFunction",
     analyze_GetFinishingFunctionOptionString,
     nullptr,
     true,
     {"punching_2_holes", "punching_French_4_holes"},
     "PUNF4",
     "(none)"},
    {"FinishingFunctionCommon",
     analyze_GetFinishingFunctionOptionStringCommon,
     nullptr,
     true,
     {"punching_2_holes", "punching_French_4_holes"},
     "PUNF4",
     "(none)"},
    {"FinishingFunctionByDefault",
     analyze_GetFinishingFunctionOptionStringCommon,
     nullptr,
     false,
     {"x", "y"},
     "DEF",
     "(none)"},
    {"FinishingFunctionElm",
     analyze_GetFinishingFunctionOptionString_ELM,
     nullptr,
     true,
     {"x", "y"},
     "True",
     "(none)"},
    {"FinishingFunctionMagnolia",
     analyze_GetFinishingFunctionOptionStringMagnolia,
     nullptr,
     true,
     {"x", "y"},
     "True",
     "(none)"},
};

constexpr FunctionPair kPunchTable[] = {{"punching_2_holes", "PUNU2"},
                                        {"punching_French_4_holes", "PUNF4"}};

void FindsValue(Round& round, const FunctionCase& handler) {
  std::string function = "staple";
  std::string details[] = {handler.details[0], handler.details[1]};
  char* const functions[] = {function.data()};
  char* const detail_functions[] = {details[0].data(), details[1].data()};
  const int32_t function_count = 1;
  const int32_t detail_count = 2;
  const FunctionQuery query{handler.model,
                            function.c_str(),
                            functions,
                            &function_count,
                            handler.has_table ? kPunchTable : nullptr,
                            static_cast<int32_t>(std::size(kPunchTable)),
                            detail_functions,
                            &detail_count,
                            "DEF"};
  const std::string answer = Take(round.Try([&] { return handler.handler(&query); }));
  round.Expect(answer == handler.right, answer == handler.fallback || answer == "(none)", answer);
}

// Handlers of finishers.

struct FinisherCase {
  const char* name;
  FinisherOptionHandler handler;
  const char* accessory;
  int32_t bins;
  int32_t alias;
  const char* right;
};

int32_t SetValueString(AnalyzeContext* context, const FinisherEntry* finishers, int32_t count,
                       const int32_t*, int32_t, OptionSetter* row) {
  row->value = analyze_GetQVFinisherValueString(context, finishers, count);
  return 0;
}

const FinisherCase kFinisherCases[] = {
    {"FinisherValueString", SetValueString, "Staple", 1, 101, "STFIN"},
    {"FinisherCommon", analyze_GetQVFinisherCommon, "Staple", 1, 101, "STFIN"},
    {"FinisherBeech", analyze_GetQVFinisher_BEECH, "Staple", 1, 101, "STFIN"},
    {"FinisherBirch", analyze_GetQVFinisher_BIRCH, "Vorel 3 Way Unit-D1", 1, 101, "None"},
    {"FinisherCedar", analyze_GetQVFinisher_CEDAR, "Vorel Inner 2 Way Tray-S1", 1, 101, "None"},
    {"FinisherMaple", analyze_GetQVFinisherMAPLE, "Vorel Inner 2Way Tray-R1", 1, 101, "None"},
    {"FinisherSpruce", analyze_GetQVFinisherSPRUCE, "Staple", 1, 119, "IN2TRAYF1"},
    {"FinisherSumac", analyze_GetQVFinisherSUMAC, "Vorel Inner 2way Tray-N1", 1, 119, "IN2TRAY"},
    {"FinisherIn2Tray", analyze_GetQVFinisherSpecialIn2TrayCommon, "Vorel Inner 2way Tray", 1, 119,
     "IN2TRAY"},
    {"FinisherWalnut", analyze_GetQVFinisherWALNUT, "Staple", 2, 101, "IN2TRAY"},
    {"FinisherWalnutOfOtherBins", analyze_GetQVFinisherWALNUT, "Staple", 4, 101, "None"},
    {"CopyTrayAspen", analyze_GetQVCopyTray_ASPEN, "Vorel Finisher-Q1", 1, 101, "CPTU1"},
    {"CopyTrayBeech", analyze_GetQVCopyTray_BEECH, "Staple", 1, 101, "CPTU1"},
    {"CopyTrayMaple", analyze_GetQVCopyTrayMAPLE, "Staple", 1, 101, "CPTU1"},
    {"FinTrayAlder", analyze_GetQVFinTray_ALDER, "Vorel Finisher-T1", 3, 101, "FNTU1"},
    {"FinTrayBeech", analyze_GetQVFinTray_BEECH, "Staple", 1, 121, "FNTU1"},
    {"FinTraySumac", analyze_GetQVFinTraySUMAC, "Vorel Inner Finisher-F1", 1, 119, "EXTU1"},
    {"FinTrayHornbeam", analyze_GetQVFinTrayHORNBEAM, "Vorel Inner Finisher-W1", 1, 119, "FNTU1"},
};

void SetsFinisherOption(Round& round, const FinisherCase& handler) {
  FlagInfo* const names = zflaginfo_init("Flags", 1);
  zflaginfo_get("Staple:STFIN", names);
  AnalyzeContext context = {};
  context.finisher_name_flags = names;
  std::string accessory = handler.accessory;
  const FinisherEntry finisher{handler.bins, accessory.data()};
  OptionSetter row = {};
  const int32_t status =
      round.Try([&] { return handler.handler(&context, &finisher, 1, &handler.alias, 1, &row); });
  const std::string answer = Take(row.value);
  zflaginfo_term(names);
  round.Expect(status == 0 && answer == handler.right, status == 0 && answer == "(none)",
               std::to_string(status) + " " + answer);
}

// Getters of list items.

using Getter = char* (*)(const void* datum);

struct NumberCase {
  const char* name;
  Getter getter;
  int32_t number;
  const char* right;
};

const NumberCase kNumberCases[] = {
    {"FaxType", zGetFaxOptionString, 2, "isdn"},  {"FaxLineA", zGetLine1IDSupport, 18, "True"},
    {"FaxLineB", zGetLine2IDSupport, 19, "True"}, {"FaxLineC", zGetLine3IDSupport, 20, "True"},
    {"FaxLineD", zGetLine4IDSupport, 21, "True"},
};

void TakesNumber(Round& round, const NumberCase& number) {
  ExpectText(round, round.Try([&] { return number.getter(&number.number); }), number.right);
}

struct ModeCase {
  const char* name;
  Getter getter;
  int32_t mode;
};

const ModeCase kModeCases[] = {
    {"FaxOverIntranet", zGetIntranetSupport, 17},
    {"FaxOverVoIp", zGetVoIPSupport, 18},
    {"FaxOverNgn", zGetNGNSupport, 16},
    {"FaxOverNgnMyNumber", zGetNGNMyNumberSupport, 69},
};

void TakesMode(Round& round, const ModeCase& mode) {
  const int32_t count = 1;
  const FaxModes modes{&mode.mode, &count};
  ExpectText(round, round.Try([&] { return mode.getter(&modes); }), "True");
}

struct UnitCase {
  const char* name;
  Getter getter;
  int32_t type;
  const char* accessory;
  const char* right;
};

const UnitCase kUnitCases[] = {
    {"Trimmer", zGetTrimmerFunctionOptionString, 1, "Vorel Saddle Finisher-X2", "TRMU1"},
    {"InnerTrimmer", zGetInnerTrimmerFunctionOptionString, 1, "Vorel Booklet Finisher-S1",
     "ITRMU1"},
    {"Inserter", zGetFinisherInserterOptionString, 1, "Staple", "INSU1"},
    {"MultiInserter", zGetMultiInserterOptionString, 1, "Staple", "True"},
    {"Stacker", zGetStackerOptionString, 15, "Staple", "STKU1"},
    {"Binder", zGetFinisherConstitutionOptionString, 18, "Staple", "BIDU1"},
    {"ProPuncher", zGetProPuncherOptionString, 1, "Vorel Finisher-UH1", "PUNU1"},
    {"TopBottomTrimmer", zGetTopBottomTrimmerOptionString, 12, "Staple", "TBTU1"},
};

// A unit that does everything.
void TakesUnit(Round& round, const UnitCase& unit) {
  std::string all;
  char* const words[] = {all.data()};  // the empty word is a prefix of every word
  const int32_t count = 1;
  int32_t stackers = 0;
  const FinisherUnit datum{unit.type, unit.accessory, words, &count, words, &count, &stackers};
  ExpectText(round, round.Try([&] { return unit.getter(&datum); }), unit.right);
}

void TakesBin(Round& round) {
  const int32_t alias = 101;
  const int32_t count = 1;
  const BinUnit bin{3, &alias, &count};
  ExpectText(round, round.Try([&] { return zGetTrayCSettingOptionString(&bin); }), "FinCenterTray");
}

// The insert unit of one model. An entry that finds no memory is not added.
void SetsInsertUnit(Round& round) {
  const SampleAnalyser analyser;
  analyze_common_create_xmldata(analyser.context(), IA_DOCUMENT_TRAY_LIST);
  const CallersList list;
  const int32_t status =
      round.Try([&] { return analyze_GetExtraOptionStringROWAN(analyser.context(), list.head()); });
  const std::string answer = std::to_string(status) + " " + list.Added();
  round.Expect(answer == "0 QVInsertUnit=None\n", answer == "0 ", answer);
}

std::vector<Scenario> NewScenarios() {
  std::vector<Scenario> scenarios{{"SetsInsertUnit", SetsInsertUnit}, {"TakesBin", TakesBin}};
  for (const NumberCase& number : kNumberCases) {
    scenarios.push_back({number.name, [&](Round& round) { TakesNumber(round, number); }});
  }
  for (const ModeCase& mode : kModeCases) {
    scenarios.push_back({mode.name, [&](Round& round) { TakesMode(round, mode); }});
  }
  for (const UnitCase& unit : kUnitCases) {
    scenarios.push_back({unit.name, [&](Round& round) { TakesUnit(round, unit); }});
  }
  for (const InputCase& handler : kInputCases) {
    scenarios.push_back({handler.name, [&](Round& round) { AppendsRow(round, handler); }});
  }
  for (const FinisherCase& handler : kFinisherCases) {
    scenarios.push_back({handler.name, [&](Round& round) { SetsFinisherOption(round, handler); }});
  }
  for (const FunctionCase& handler : kFunctionCases) {
    scenarios.push_back({handler.name, [&](Round& round) { FindsValue(round, handler); }});
  }
  return scenarios;
}

}  // namespace

std::span<const Scenario> ModelScenarios() {
  static const std::vector<Scenario> scenarios = NewScenarios();
  return scenarios;
}

}  // namespace ia_test
