// The update handler of output bins.
#include <algorithm>
#include <array>
#include <cstddef>

#include "analyze/document_keys.h"
#include "analyze/option_rows.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/printer_updates.h"
#include "info_common/owned.h"

static_assert(sizeof(BinUnit) == 3 * sizeof(void*));
static_assert(offsetof(BinUnit, aliases) == 1 * sizeof(void*));
static_assert(offsetof(BinUnit, alias_count) == 2 * sizeof(void*));

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_BIN_LIST;
constexpr std::int32_t kMostAliases = 10;
constexpr std::int32_t kCenterTrayBin = 3;
constexpr std::int32_t kCenterTrayAlias = 101;

}  // namespace
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
  if (context == nullptr || options == nullptr) return -1;
  BinUnit bin{};
  ia::OptionRows rows(std::to_array<OptionSetter>({
      {"QVTrayCSetting", nullptr, zGetTrayCSettingOptionString, &bin, "FinTopTray"},
  }));
  for (int32_t item = 0; item < context->documents[ia::kDocument].count; ++item) {
    ia::LongArray<ia::kMostAliases> aliases(ia::kDocument, "alias");
    const int32_t status =
        ia::ReadListItem(context, ia::kDocument, item,
                         {ia::LongKey(ia::kDocument, "number", bin.number), aliases.Key()});
    if (status != 0) return status;
    bin.aliases = aliases.Data();
    bin.alias_count = &aliases.Count();
    rows.RunGetters();
  }
  return rows.Apply(options);
}
