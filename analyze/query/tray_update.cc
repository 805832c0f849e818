// The update handler of paper sources.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "analyze/document_keys.h"
#include "analyze/model/tray_report.h"
#include "analyze/query/update_handlers.h"
#include "info_analyze/model_options.h"
#include "info_analyze/printer_updates.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_TRAY_LIST;
constexpr auto kOptions = std::to_array<UpdateOption>({
    ModelOption(kSidePaperDeck.keyword, nullptr, kSidePaperDeck.default_value,
                IA_FAMILY_SIDE_PAPER_DECK),
    ModelOption(kSourceOption.keyword, nullptr, kSourceOption.default_value,
                IA_FAMILY_SOURCE_OPTION),
    ModelOption(nullptr, nullptr, kPlainPaper, IA_FAMILY_MEDIA_TYPE),
    ModelOption(kEnvelopeFeeder.keyword, nullptr, kEnvelopeFeeder.default_value,
                IA_FAMILY_ENVELOPE_FEEDER),
});

constexpr std::size_t kRowsBesideTrays = 3;  // side paper deck, source option, envelope feeder

std::int32_t ReadTray(AnalyzeContext* context, std::int32_t item, TrayEntry& tray) noexcept {
  LongArray<1> alias(Input::kTrayAlias);
  TrayEntry read{};
  const std::int32_t status = ReadListItem(
      context, kDocument, item,
      {LongKey(Input::kTrayType, read.type), LongKey(Input::kTrayCapacity, read.capacity),
       LongKey(Input::kTrayMedium, read.medium_type), alias.Key()});
  if (status != 0) return status;
  read.alias = alias.Data()[0];
  tray = read;
  return 0;
}

// Types 3 and 6 are extra paper sources.
bool IsExtraSource(const TrayEntry& tray) noexcept { return tray.type == 3 || tray.type == 6; }

// Appends the rows that the model's handlers make.
std::int32_t SetInputOptions(AnalyzeContext* context, const TrayEntry* trays, std::int32_t count,
                             const OptionTarget& target) noexcept {
  const std::size_t capacity = static_cast<std::size_t>(count) + kRowsBesideTrays;
  const CPtr<OptionSetter[]> rows = NewZeroedArray<OptionSetter>(capacity);
  if (!rows) return -1;
  std::int32_t row_count = 0;
  const auto extra_sources = std::count_if(trays, trays + count, IsExtraSource);
  analyze_GetInputOptions(context, trays, count, static_cast<std::int32_t>(extra_sources),
                          rows.get(), &row_count);
  const std::int32_t status = SetOptions(rows.get(), row_count, target);
  for (std::size_t i = 0; i < capacity; ++i) std::free(const_cast<char*>(rows[i].keyword));
  return status;
}

// Only a failed read of the list's last item fails the update; any other failed item counts as a
// tray without type.
std::int32_t UpdateTrays(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  const std::int32_t count = std::max(context->documents[kDocument].count, 0);
  const auto trays = NewZeroedArray<TrayEntry>(static_cast<std::size_t>(count) + 1);
  if (!trays) return -1;
  std::int32_t status = 0;
  for (std::int32_t item = 0; item < count; ++item) {
    status = ReadTray(context, item, trays[static_cast<std::size_t>(item)]);
  }
  return status != 0 ? status : SetInputOptions(context, trays.get(), count, target);
}

}  // namespace

constinit const UpdateHandler kTrayListUpdate{
    IA_EXPORTED(z_Update_Prn_tray_list),
    .guard = IA_DOCUMENT_RESOLUTIONS,
    .options = kOptions,
    .run = UpdateTrays,
};

}  // namespace ia

int32_t z_Update_Prn_tray_list(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::kTrayListUpdate.run(context, {options, true});
}
