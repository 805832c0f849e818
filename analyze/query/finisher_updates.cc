// The update handlers of finishers: the functions of each unit, and the combined pass that decides
// the finisher and its trays per driver model.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "analyze/document_keys.h"
#include "analyze/model/finisher_report.h"
#include "analyze/option_rows.h"
#include "analyze/query/update_handlers.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/model_options.h"
#include "info_analyze/printer_updates.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_FINISHER_LIST;
constexpr std::int32_t kMaxWords = 1024;

// The order is the priority of the punchers.
constexpr auto kPunchTable = std::to_array<FunctionPair>({
    {"punching_2_holes", "PUNU2"},
    {"punching_2or3_holes", "PUNU23"},
    {"punching_3_holes", "PUNU3"},
    {"punching_French_4_holes", "PUNF4"},
    {"punching_Swedish_4_holes", "PUNS4"},
});

constexpr auto kUnitOptions = std::to_array<UpdateOption>({
    ModelOption("QVOptionStaple", zGetFinishingFunctionOptionString, "False",
                IA_FAMILY_FINISHING_FUNCTION),
    ModelOption("QVPuncher", zGetPuncherOptionString, "None", IA_FAMILY_PUNCHER),
    DecidedOption("QVFolder", zGetFinishingFunctionOptionString, "None", {Input::kFunctions}),
    DecidedOption("QVTrimmer", zGetTrimmerFunctionOptionString, "None",
                  {Input::kFinisherName, Input::kFunctions}),
    DecidedOption("QVInnerTrimmer", zGetInnerTrimmerFunctionOptionString, "None",
                  {Input::kFinisherName, Input::kFunctions}),
    DecidedOption("QVInsertUnit", zGetFinisherInserterOptionString, "None",
                  {Input::kFinisherType, Input::kFunctions}),
    DecidedOption("QVEnableMultiInserter", zGetMultiInserterOptionString, "False",
                  {Input::kFinisherType, Input::kFunctions, Input::kDetailFunctions}),
    DecidedOption("QVStacker", zGetStackerOptionString, "None", {Input::kFinisherType}),
    DecidedOption("QVBinderOption", zGetFinisherConstitutionOptionString, "None",
                  {Input::kFinisherType}),
    DecidedOption("QVProPuncher", zGetProPuncherOptionString, "None",
                  {Input::kFinisherName, Input::kDetailFunctions}),
    DecidedOption("QVTopBottomTrimmer", zGetTopBottomTrimmerOptionString, "None",
                  {Input::kFinisherType, Input::kDetailFunctions}),
});

constexpr auto kFinisherOptions = std::to_array<UpdateOption>({
    ModelOption("QVFinisher", nullptr, "None", IA_FAMILY_FINISHER),
    ModelOption("QVCopyTray", nullptr, "None", IA_FAMILY_COPY_TRAY),
    ModelOption("QVFinTray", nullptr, "None", IA_FAMILY_FIN_TRAY),
});
// A constant, because GCC with -Os would otherwise copy the rows from writable data.
constexpr auto kFinisherRows = RowsOf(kFinisherOptions, {nullptr, nullptr, nullptr});

// One item of the list, in the shapes that the getters read.
class FinisherItem {
 public:
  explicit FinisherItem(const char* model) noexcept
      : staple_(Query(model, "staple")),
        punch_(Query(model, "punch")),
        folding_(Query(nullptr, "folding")) {
    staple_.detail_functions = nullptr;
    staple_.detail_count = nullptr;
    punch_.search_table = kPunchTable.data();
    punch_.search_rows = static_cast<std::int32_t>(kPunchTable.size());
    folding_.default_value = "FLDU1";
  }

  [[nodiscard]] OptionRows<kUnitOptions.size()> Rows() const noexcept {
    return OptionRows(RowsOf(kUnitOptions, {&staple_, &punch_, &folding_, &unit_, &unit_, &unit_,
                                            &unit_, &unit_, &unit_, &unit_, &unit_}));
  }

  // A unit that reports no type has that of the unit before it.
  [[nodiscard]] std::int32_t Read(AnalyzeContext* context, std::int32_t item) noexcept {
    functions_.Clear();
    details_.Clear();
    char* name = nullptr;
    const std::int32_t status =
        ReadListItem(context, kDocument, item,
                     {LongKey(Input::kFinisherType, unit_.type),
                      TextKey(Input::kFinisherName, name), functions_.Key(), details_.Key()});
    name_.reset(name);
    unit_.name = name;
    return status;
  }

 private:
  [[nodiscard]] FunctionQuery Query(const char* model, const char* function) noexcept {
    return {.driver_name = model,
            .function = function,
            .functions = functions_.Data(),
            .function_count = &functions_.Count(),
            .search_table = nullptr,
            .search_rows = 0,
            .detail_functions = details_.Data(),
            .detail_count = &details_.Count(),
            .default_value = nullptr};
  }

  TextArray<kMaxWords> functions_{Input::kFunctions};
  TextArray<kMaxWords> details_{Input::kDetailFunctions};
  CString name_;
  std::int32_t stackers_ = 0;
  FinisherUnit unit_{.type = 0,
                     .name = nullptr,
                     .functions = functions_.Data(),
                     .function_count = &functions_.Count(),
                     .detail_functions = details_.Data(),
                     .detail_count = &details_.Count(),
                     .stacker_count = &stackers_};
  FunctionQuery staple_;
  FunctionQuery punch_;
  FunctionQuery folding_;  // without a model, so that folding is the same for all
};

// The number of items of the finisher list, and an array for them.
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
  CPtr<FinisherEntry[]> entries;  // null when an allocation fails
  std::size_t size;
};

// Keeps only the result of the last read; the entry of a failed one stays empty.
std::int32_t ReadFinishers(AnalyzeContext* context, FinisherEntries& finishers) noexcept {
  std::int32_t status = 0;
  std::int32_t bins = 0;  // a unit that reports none has those of the unit before it
  for (std::size_t i = 0; i < finishers.size; ++i) {
    char* read_name = nullptr;
    status = ReadListItem(
        context, kDocument, static_cast<std::int32_t>(i),
        {TextKey(Input::kFinisherName, read_name), LongKey(Input::kFinisherBins, bins)});
    CString name(read_name);
    if (status != 0) continue;
    if (!name) name = Duplicate("");
    if (!name) return -1;
    finishers.entries[i] = {bins, name.release()};
  }
  return status;
}

std::int32_t UpdateUnits(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  FinisherItem unit(context->driver_name);
  OptionRows rows = unit.Rows();
  for (std::int32_t item = 0; item < context->documents[kDocument].count; ++item) {
    const std::int32_t status = unit.Read(context, item);
    if (status != 0) return status;
    rows.RunGetters();
  }
  return rows.Apply(target);
}

std::int32_t UpdateFinisherInformations(AnalyzeContext* context,
                                        const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  std::int32_t aliases[kMaxAliases] = {};
  std::int32_t alias_count = 0;
  std::int32_t status = analyze_GetBinAlias(context, aliases, &alias_count);
  if (status != 0) return status;
  const std::int32_t count = std::max(context->documents[kDocument].count, 0);
  FinisherEntries finishers(count);
  if (!finishers.entries) return -1;
  status = ReadFinishers(context, finishers);
  if (status != 0) return status;
  OptionRows rows(kFinisherRows);
  analyze_GetFinisherOption(context, finishers.entries.get(), count, aliases, alias_count,
                            rows.Data());
  return rows.Apply(target);
}

}  // namespace

constinit const UpdateHandler kFinisherListUpdate{
    IA_EXPORTED(z_Update_Prn_finisher_list),
    .guard = IA_DOCUMENT_BIN_LIST,
    .options = kUnitOptions,
    .run = UpdateUnits,
};
constinit const UpdateHandler kFinisherInformationsUpdate{
    IA_EXPORTED(z_Update_Prn_Complex_FinisherInformations),
    .guard = IA_GUARD_NONE,
    .options = kFinisherOptions,
    .run = UpdateFinisherInformations,
};

}  // namespace ia

int32_t z_Update_Prn_finisher_list(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kFinisherListUpdate.run(context, {options, true});
}

int32_t z_Update_Prn_Complex_FinisherInformations(AnalyzeContext* context,
                                                  OptionList* options) noexcept {
  return ia::kFinisherInformationsUpdate.run(context, {options, true});
}
