// QVSidePaperDeck: the size class of the side paper deck, per driver model.
#include <array>

#include "analyze/model/model_matrix.h"
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
}  // namespace ia

IA_INPUT_HANDLER(analyze_GetQVSidePaperDeckCommon, ia::AppendInputOption, ia::kSidePaperDeck,
                 ia::LargeOrSmall);
IA_INPUT_HANDLER(analyze_GetQVSidePaperDeck_CYPRESS, ia::AppendInputOption, ia::kSidePaperDeck,
                 ia::LargeOnly);
IA_INPUT_HANDLER(analyze_GetQVSidePaperDeckOAK, ia::AppendInputOption, ia::kSidePaperDeck,
                 ia::LargeUnlessSecondDeck);

// What each handler looks at.
namespace ia {
namespace {

constexpr std::uint64_t kDecks = SetOf(Input::kTrayAlias, Input::kTrayType);

constexpr auto kSources = std::to_array<HandlerSource<InputOptionHandler>>({
    IA_HANDLER_SOURCE(analyze_GetQVSidePaperDeckCommon, kDecks),
    IA_HANDLER_SOURCE(analyze_GetQVSidePaperDeck_CYPRESS, kDecks),
    IA_HANDLER_SOURCE(analyze_GetQVSidePaperDeckOAK, kDecks),
});

}  // namespace

constinit const InputHandlerSources kSidePaperDeckHandlers = kSources;

}  // namespace ia
