// Media types: for each tray, the medium that it holds under the option keyword of its slot. The
// slot's name follows from the tray's alias, the keyword from the slot's name.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

#include "analyze/model/input_handlers.h"
#include "analyze/model/tray_report.h"

namespace ia {
namespace {

const FlagPair* FindNumber(std::span<const FlagPair> flags, std::int32_t number) noexcept {
  const auto hit =
      std::ranges::find_if(flags, [&](const FlagPair& flag) { return HasNumber(flag, number); });
  return hit != flags.end() ? &*hit : nullptr;
}

const char* MediaWord(const TrayReport& report, const TrayEntry& tray) noexcept {
  const FlagPair* const medium =
      FindNumber(FlagsOf(report.context.media_type_flags), tray.medium_type);
  return medium != nullptr && medium->name != nullptr ? medium->name : kPlainPaper;
}

const char* SlotOfAlias(std::span<const FlagPair> slots, std::int32_t alias) noexcept {
  const FlagPair* const slot = FindNumber(slots, alias);
  return slot != nullptr ? slot->name : nullptr;
}

const char* CommonSlot(const TrayReport& report, const TrayEntry& tray, const char*) noexcept {
  return SlotOfAlias(FlagsOf(report.context.input_tray_flags), tray.alias);
}

// With few trays the side deck's first slot is skipped.
const char* CypressSlot(const TrayReport& report, const TrayEntry& tray, const char*) noexcept {
  constexpr std::int32_t kFewTrays = 4;
  std::span<const FlagPair> slots = FlagsOf(report.context.input_tray_flags);
  if (report.extra_trays <= kFewTrays && tray.alias == kSideDeckAlias) {
    const FlagPair* const first = FindNumber(slots, tray.alias);
    if (first == nullptr) return nullptr;
    slots = slots.last(static_cast<std::size_t>(slots.data() + slots.size() - first) - 1);
  }
  return SlotOfAlias(slots, tray.alias);
}

// A slot that depends on whether some tray has a given alias.
struct YewSlot {
  std::int32_t alias;
  const char* slot;
  const char* slot_without_tray2;  // null: the same
};
constexpr std::int32_t kTray2Alias = 102;
constexpr auto kYewSlots = std::to_array<YewSlot>({
    {7, "Manual", nullptr},
    {101, "Cas1", nullptr},
    {102, "Cas2", nullptr},
    {121, "Cas3", "Cas2"},
    {122, "Cas4", "Cas3"},
    {123, "Cas4", nullptr},
});

// A tray of any other alias belongs to the slot of the tray before it.
const char* YewSlotOf(const TrayReport& report, const TrayEntry& tray,
                      const char* previous_slot) noexcept {
  const auto hit = std::ranges::find(kYewSlots, tray.alias, &YewSlot::alias);
  if (hit == kYewSlots.end()) return previous_slot;
  const bool is_same = hit->slot_without_tray2 == nullptr || report.HasAlias(kTray2Alias);
  return is_same ? hit->slot : hit->slot_without_tray2;
}

// The side deck's slot, by the last cassette that is fitted.
struct DeckSlot {
  std::int32_t alias;
  const char* slot;
};
constexpr auto kRedwoodDeckSlots = std::to_array<DeckSlot>({
    {123, "Cas9"},
    {122, "Cas8"},
    {121, "Cas7"},
});

const char* RedwoodSlot(const TrayReport& report, const TrayEntry& tray, const char*) noexcept {
  const AnalyzeContext& context = report.context;
  if (context.input_tray_flags == nullptr || context.media_type_flags == nullptr) return nullptr;
  if (tray.alias != kSideDeckAlias) return CommonSlot(report, tray, nullptr);
  const auto hit = std::ranges::find_if(
      kRedwoodDeckSlots, [&](const DeckSlot& row) { return report.HasAlias(row.alias); });
  return hit != kRedwoodDeckSlots.end() ? hit->slot : "Cas6";
}

bool IsSlot(const char* name, const char* slot) noexcept { return std::strcmp(name, slot) == 0; }

bool BeginsWithSlot(const char* name, const char* slot) noexcept {
  return std::strncmp(name, slot, std::strlen(slot)) == 0;
}

struct MediaTypeRule {
  const char* (*slot)(const TrayReport&, const TrayEntry&, const char* previous_slot) noexcept;
  bool (*names_slot)(const char* name, const char* slot) noexcept;
  bool whole_rows_only;  // no row when its keyword or value cannot be allocated
};

constexpr MediaTypeRule kCommon{CommonSlot, IsSlot, false};
constexpr MediaTypeRule kCypress{CypressSlot, BeginsWithSlot, false};
constexpr MediaTypeRule kYew{YewSlotOf, IsSlot, false};
constexpr MediaTypeRule kRedwood{RedwoodSlot, IsSlot, true};

const char* KeywordOfSlot(const TrayReport& report, const char* slot,
                          const MediaTypeRule& rule) noexcept {
  const auto flags = FlagsOf(report.context.slot_media_info_flags);
  const auto hit = std::ranges::find_if(flags, [&](const FlagPair& flag) {
    return flag.name != nullptr && rule.names_slot(flag.name, slot);
  });
  return hit != flags.end() ? hit->value : nullptr;
}

void DropLastRowUnlessWhole(const InputCall& call) noexcept {
  OptionSetter& row = call.rows[*call.row_count - 1];
  if (row.keyword != nullptr && row.value != nullptr) return;
  std::free(const_cast<char*>(row.keyword));
  std::free(row.value);
  row = {};
  --*call.row_count;
}

std::int32_t AppendMediaTypes(const InputCall& call, const MediaTypeRule& rule) noexcept {
  if (!IsComplete(call)) return -1;
  const TrayReport report = ReportOf(call);
  const char* slot = nullptr;
  for (const TrayEntry& tray : report.trays) {
    slot = rule.slot(report, tray, slot);
    const char* const keyword = slot != nullptr ? KeywordOfSlot(report, slot, rule) : nullptr;
    if (keyword == nullptr) continue;
    AppendRow(call, {keyword, kPlainPaper}, Duplicate(MediaWord(report, tray)));
    if (rule.whole_rows_only) DropLastRowUnlessWhole(call);
  }
  return 0;
}

template <const MediaTypeRule& kRule>
std::int32_t AppendMediaTypesBy(const InputCall& call) noexcept {
  return AppendMediaTypes(call, kRule);
}

}  // namespace

constinit const InputHandler kMediaTypeCommon{
    IA_EXPORTED(analyze_GetQVXXXMediaTypeCommon),
    .inputs = {Input::kTrayAlias, Input::kTrayMedium, Input::kMediaTypeFlags,
               Input::kSlotMediaFlags, Input::kInputTrayFlags},
    .rule = AppendMediaTypesBy<kCommon>,
};

constinit const InputHandler kMediaTypeCypress{
    IA_EXPORTED(analyze_GetQVXXXMediaType_CYPRESS),
    .inputs = {Input::kTrayType, Input::kTrayAlias, Input::kTrayMedium, Input::kMediaTypeFlags,
               Input::kSlotMediaFlags, Input::kInputTrayFlags},
    .rule = AppendMediaTypesBy<kCypress>,
};

constinit const InputHandler kMediaTypeYew{
    IA_EXPORTED(analyze_GetQVXXXMediaTypeYEW),
    .inputs = {Input::kTrayAlias, Input::kTrayMedium, Input::kMediaTypeFlags,
               Input::kSlotMediaFlags},
    .rule = AppendMediaTypesBy<kYew>,
};

constinit const InputHandler kMediaTypeRedwood{
    IA_EXPORTED(analyze_GetQVXXXMediaTypeREDWOOD),
    .inputs = {Input::kTrayAlias, Input::kTrayMedium, Input::kMediaTypeFlags,
               Input::kSlotMediaFlags, Input::kInputTrayFlags},
    .rule = AppendMediaTypesBy<kRedwood>,
};

}  // namespace ia

int32_t analyze_GetQVXXXMediaTypeCommon(AnalyzeContext* context, const TrayEntry* trays,
                                        int32_t tray_count, int32_t extra_tray_count,
                                        OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kMediaTypeCommon,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVXXXMediaType_CYPRESS(AnalyzeContext* context, const TrayEntry* trays,
                                          int32_t tray_count, int32_t extra_tray_count,
                                          OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kMediaTypeCypress,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVXXXMediaTypeYEW(AnalyzeContext* context, const TrayEntry* trays,
                                     int32_t tray_count, int32_t extra_tray_count,
                                     OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kMediaTypeYew,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVXXXMediaTypeREDWOOD(AnalyzeContext* context, const TrayEntry* trays,
                                         int32_t tray_count, int32_t extra_tray_count,
                                         OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kMediaTypeRedwood,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}
