// QVSidePaperDeck: the size class of the side paper deck, per driver model.
#include <cstdint>

#include "analyze/model/input_handlers.h"
#include "analyze/model/tray_report.h"

namespace ia {
namespace {

constexpr std::int32_t kSecondDeckAlias = 162;

const char* LargeOrSmall(const TrayReport& report) noexcept {
  const TrayEntry* const deck = report.FindAlias(kSideDeckAlias);
  if (deck == nullptr) return nullptr;
  return deck->type == kLargeDeckType ? "Large" : "Small";
}

const char* LargeOnly(const TrayReport& report) noexcept {
  const TrayEntry* const deck = report.FindAlias(kSideDeckAlias);
  return deck != nullptr && deck->type == kLargeDeckType ? "Large" : nullptr;
}

const char* LargeUnlessSecondDeck(const TrayReport& report) noexcept {
  const TrayEntry* const deck = report.FindAlias(kSideDeckAlias);
  if (deck == nullptr) return nullptr;
  if (deck->type == kSmallDeckType) return "Small";
  if (deck->type != kLargeDeckType) return nullptr;
  return report.HasAlias(kSecondDeckAlias) ? "None" : "Large";
}

}  // namespace

constinit const InputHandler kSidePaperDeckCommon{
    IA_EXPORTED(analyze_GetQVSidePaperDeckCommon),
    .inputs = {Input::kTrayType, Input::kTrayAlias},
    .rule = AppendInputOption<kSidePaperDeck, LargeOrSmall>,
};

constinit const InputHandler kSidePaperDeckCypress{
    IA_EXPORTED(analyze_GetQVSidePaperDeck_CYPRESS),
    .inputs = {Input::kTrayType, Input::kTrayAlias},
    .rule = AppendInputOption<kSidePaperDeck, LargeOnly>,
};

constinit const InputHandler kSidePaperDeckOak{
    IA_EXPORTED(analyze_GetQVSidePaperDeckOAK),
    .inputs = {Input::kTrayType, Input::kTrayAlias},
    .rule = AppendInputOption<kSidePaperDeck, LargeUnlessSecondDeck>,
};

}  // namespace ia

int32_t analyze_GetQVSidePaperDeckCommon(AnalyzeContext* context, const TrayEntry* trays,
                                         int32_t tray_count, int32_t extra_tray_count,
                                         OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSidePaperDeckCommon,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSidePaperDeck_CYPRESS(AnalyzeContext* context, const TrayEntry* trays,
                                           int32_t tray_count, int32_t extra_tray_count,
                                           OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSidePaperDeckCypress,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSidePaperDeckOAK(AnalyzeContext* context, const TrayEntry* trays,
                                      int32_t tray_count, int32_t extra_tray_count,
                                      OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSidePaperDeckOak,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}
