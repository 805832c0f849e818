// The update handler of output bins.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "analyze/document_keys.h"
#include "analyze/option_rows.h"
#include "analyze/query/update_handlers.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/printer_updates.h"
#include "info_common/owned.h"

static_assert(sizeof(BinUnit) == 3 * sizeof(void*));
static_assert(offsetof(BinUnit, aliases) == 1 * sizeof(void*));
static_assert(offsetof(BinUnit, alias_count) == 2 * sizeof(void*));

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_BIN_LIST;
constexpr std::int32_t kMaxAliases = 10;
constexpr std::int32_t kCenterTrayBin = 3;
constexpr std::int32_t kCenterTrayAlias = 101;

constexpr auto kOptions = std::to_array<UpdateOption>({
    DecidedOption("QVTrayCSetting", zGetTrayCSettingOptionString, "FinTopTray",
                  {Input::kBinNumber, Input::kBinAlias}),
});

std::int32_t UpdateBins(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  BinUnit bin{};
  OptionRows rows(RowsOf(kOptions, {&bin}));
  for (std::int32_t item = 0; item < context->documents[kDocument].count; ++item) {
    LongArray<kMaxAliases> aliases(Input::kBinAlias);
    const std::int32_t status = ReadListItem(
        context, kDocument, item, {LongKey(Input::kBinNumber, bin.number), aliases.Key()});
    if (status != 0) return status;
    bin.aliases = aliases.Data();
    bin.alias_count = &aliases.Count();
    rows.RunGetters();
  }
  return rows.Apply(target);
}

}  // namespace

constinit const UpdateHandler kBinListUpdate{
    IA_EXPORTED(z_Update_Prn_bin_list),
    .guard = IA_DOCUMENT_TRAY_LIST,
    .options = kOptions,
    .run = UpdateBins,
};

}  // namespace ia

char* zGetTrayCSettingOptionString(const void* datum) noexcept {
  if (datum == nullptr) return nullptr;
  const auto& bin = *static_cast<const BinUnit*>(datum);
  if (bin.number != ia::kCenterTrayBin || bin.aliases == nullptr || bin.alias_count == nullptr) {
    return nullptr;
  }
  const int32_t* const end = bin.aliases + std::max(*bin.alias_count, 0);
  const bool is_center = std::find(bin.aliases, end, ia::kCenterTrayAlias) != end;
  return is_center ? ia::Duplicate("FinCenterTray").release() : nullptr;
}

int32_t z_Update_Prn_bin_list(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kBinListUpdate.run(context, {options, true});
}
