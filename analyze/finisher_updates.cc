// The update handlers of finishers: the functions of each unit, and the combined pass that decides
// the finisher and its trays per driver model.
#include <algorithm>
#include <array>
#include <utility>

#include "analyze/document_keys.h"
#include "analyze/option_rows.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/model_options.h"
#include "info_analyze/printer_updates.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_FINISHER_LIST;
constexpr std::int32_t kMostWords = 1024;
constexpr std::int32_t kMostAliases = 10;

// The order is the priority of the punchers.
constexpr auto kPunchTable = std::to_array<FunctionPair>({
    {"punching_2_holes", "PUNU2"},
    {"punching_2or3_holes", "PUNU23"},
    {"punching_3_holes", "PUNU3"},
    {"punching_French_4_holes", "PUNF4"},
    {"punching_Swedish_4_holes", "PUNS4"},
});

// The number of items of the finisher list, and room for them.
struct FinisherEntries {
  explicit FinisherEntries(std::int32_t count) noexcept
      : entries(static_cast<FinisherEntry*>(
            std::calloc(static_cast<std::size_t>(count) + 1, sizeof(FinisherEntry)))),
        size(static_cast<std::size_t>(count)) {}
  FinisherEntries(const FinisherEntries&) = delete;
  FinisherEntries& operator=(const FinisherEntries&) = delete;
  ~FinisherEntries() {
    if (!entries) return;
    for (std::size_t i = 0; i < size; ++i) std::free(entries[i].name);
  }
  CPtr<FinisherEntry[]> entries;  // null when memory ran out
  std::size_t size;
};

// Keeps the result of the last read alone; the entry of a failed one stays empty.
std::int32_t ReadFinishers(AnalyzeContext* context, FinisherEntries& finishers) noexcept {
  std::int32_t status = 0;
  std::int32_t bins = 0;  // a unit that reports none has those of the unit before it
  for (std::size_t i = 0; i < finishers.size; ++i) {
    char* name = nullptr;
    status = ReadListItem(context, kDocument, static_cast<std::int32_t>(i),
                          {TextKey(kDocument, "name", name), LongKey(kDocument, "binnum", bins)});
    const CString owned_name(name);
    if (status == 0) {
      finishers.entries[i] = {bins, Duplicate(name != nullptr ? name : "").release()};
    }
  }
  return status;
}

}  // namespace
}  // namespace ia

int32_t z_Update_Prn_finisher_list(AnalyzeContext* context, OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  char* name = nullptr;
  int32_t stackers = 0;
  ia::TextArray<ia::kMostWords> functions(ia::kDocument, "func");
  ia::TextArray<ia::kMostWords> details(ia::kDocument, "detail_func");
  FinisherUnit unit{
      0,        nullptr, functions.Data(), &functions.Count(), details.Data(), &details.Count(),
      &stackers};
  const FunctionQuery staple{context->driver_name,
                             "staple",
                             functions.Data(),
                             &functions.Count(),
                             nullptr,
                             0,
                             nullptr,
                             nullptr,
                             nullptr};
  const FunctionQuery punch{context->driver_name,
                            "punch",
                            functions.Data(),
                            &functions.Count(),
                            ia::kPunchTable.data(),
                            static_cast<int32_t>(ia::kPunchTable.size()),
                            details.Data(),
                            &details.Count(),
                            nullptr};
  // Without a model code, so that folding is the same for every model.
  const FunctionQuery folding{nullptr, "folding", functions.Data(), &functions.Count(),
                              nullptr, 0,         details.Data(),   &details.Count(),
                              "FLDU1"};
  ia::OptionRows rows(std::to_array<OptionSetter>({
      {"QVOptionStaple", nullptr, zGetFinishingFunctionOptionString, &staple, "False"},
      {"QVPuncher", nullptr, zGetPuncherOptionString, &punch, "None"},
      {"QVFolder", nullptr, zGetFinishingFunctionOptionString, &folding, "None"},
      {"QVTrimmer", nullptr, zGetTrimmerFunctionOptionString, &unit, "None"},
      {"QVInnerTrimmer", nullptr, zGetInnerTrimmerFunctionOptionString, &unit, "None"},
      {"QVInsertUnit", nullptr, zGetFinisherInserterOptionString, &unit, "None"},
      {"QVEnableMultiInserter", nullptr, zGetMultiInserterOptionString, &unit, "False"},
      {"QVStacker", nullptr, zGetStackerOptionString, &unit, "None"},
      {"QVBinderOption", nullptr, zGetFinisherConstitutionOptionString, &unit, "None"},
      {"QVProPuncher", nullptr, zGetProPuncherOptionString, &unit, "None"},
      {"QVTopBottomTrimmer", nullptr, zGetTopBottomTrimmerOptionString, &unit, "None"},
  }));
  for (int32_t item = 0; item < context->documents[ia::kDocument].count; ++item) {
    const int32_t status = ia::ReadListItem(
        context, ia::kDocument, item,
        {ia::LongKey(ia::kDocument, "type", unit.type), ia::TextKey(ia::kDocument, "name", name),
         functions.Key(), details.Key()});
    const ia::CString owned_name(std::exchange(name, nullptr));
    if (status != 0) return status;
    unit.name = owned_name.get();
    rows.RunGetters();
    functions.Clear();
    details.Clear();
  }
  return rows.Apply(options);
}

int32_t z_Update_Prn_Complex_FinisherInformations(AnalyzeContext* context,
                                                  OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  int32_t aliases[ia::kMostAliases] = {};
  int32_t alias_count = 0;
  int32_t status = analyze_GetBinAlias(context, aliases, &alias_count);
  if (status != 0) return status;
  const int32_t count = std::max(context->documents[ia::kDocument].count, 0);
  ia::FinisherEntries finishers(count);
  if (!finishers.entries) return -1;
  status = ia::ReadFinishers(context, finishers);
  if (status != 0) return status;
  ia::OptionRows rows(std::to_array<OptionSetter>({
      {"QVFinisher", nullptr, nullptr, nullptr, "None"},
      {"QVCopyTray", nullptr, nullptr, nullptr, "None"},
      {"QVFinTray", nullptr, nullptr, nullptr, "None"},
  }));
  analyze_GetFinisherOption(context, finishers.entries.get(), count, aliases, alias_count,
                            rows.Data());
  return rows.Apply(options);
}
