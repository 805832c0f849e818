// QVSrcOption: which extra paper sources are fitted, per driver model.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>

#include "analyze/model/input_handlers.h"
#include "analyze/model/tray_report.h"

namespace ia {
namespace {

// The value from a count of trays on, up to the next row's; null: no value.
struct CountValue {
  std::int32_t from;
  const char* value;
};
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

constexpr auto kByCount = std::to_array<CountValue>({
    {kLowest, "None"},
    {3, "OptCas1"},
    {4, "OptCas2"},
    {5, "OptCas3"},
    {6, nullptr},
});
constexpr auto kSpruce = std::to_array<CountValue>({
    {kLowest, "None"},
    {3, "OptCas1"},
    {4, "OptCas2"},
    {6, nullptr},
});
constexpr auto kCypress = std::to_array<CountValue>({
    {kLowest, "None"},
    {5, "OptCas1"},
    {6, "OptCas2"},
    {9, nullptr},
});

const char* ValueOfCount(std::span<const CountValue> rows, std::int32_t count) noexcept {
  return std::ranges::prev(std::ranges::upper_bound(rows, count, {}, &CountValue::from))->value;
}

template <const auto& kRows>
const char* ByTrayCount(const TrayReport& report) noexcept {
  return ValueOfCount(kRows, static_cast<std::int32_t>(report.trays.size()));
}

template <const auto& kRows>
const char* ByExtraTrayCount(const TrayReport& report) noexcept {
  return ValueOfCount(kRows, report.extra_trays);
}

const char* ByLargeDecks(const TrayReport& report) noexcept {
  const auto decks = std::ranges::count(report.trays, kLargeDeckType, &TrayEntry::type);
  if (decks == 3) return "OptCas3";
  return decks == 1 ? "OptCas1" : "None";
}

// The value of the first alias, in the order of the rows, that some tray has.
struct AliasValue {
  std::int32_t alias;
  const char* value;
};

constexpr auto kOak = std::to_array<AliasValue>({{162, "OptCas1"}});
constexpr auto kRowan = std::to_array<AliasValue>({{167, "PODDeck3"}, {164, "PODDeck2"}});
constexpr auto kRedwood = std::to_array<AliasValue>({
    {124, "OptCas4"},
    {123, "OptCas3"},
    {122, "OptCas2"},
    {121, "OptCas1"},
});

const char* ValueOfAlias(const TrayReport& report, std::span<const AliasValue> rows) noexcept {
  const auto hit =
      std::ranges::find_if(rows, [&](const AliasValue& row) { return report.HasAlias(row.alias); });
  return hit != rows.end() ? hit->value : nullptr;
}

template <const auto& kRows>
const char* ByAlias(const TrayReport& report) noexcept {
  const char* const value = ValueOfAlias(report, kRows);
  return value != nullptr ? value : "None";
}

const char* ByRowanDecks(const TrayReport& report) noexcept {
  constexpr std::int32_t kSmallDeckCapacity = 1999;
  if (const char* const value = ValueOfAlias(report, kRowan)) return value;
  const TrayEntry* const deck = report.FindAlias(kSideDeckAlias);
  if (deck == nullptr) return nullptr;
  return deck->capacity > kSmallDeckCapacity ? "MltDeck1" : "PODDeck1";
}

// Names joined by commas, in at most 255 bytes.
class NameList {
 public:
  // A name that occurs in the text already, be it inside another name, is not added again: which
  // name of "Cas1" and "Cas10" comes first in the PPD decides whether both are listed.
  void Add(std::string_view name) noexcept {
    const std::size_t comma = length_ > 0 ? 1 : 0;
    const bool fits = length_ + comma + name.size() < sizeof text_;
    if (!fits || (comma != 0 && Text().find(name) != std::string_view::npos)) return;
    if (comma != 0) text_[length_++] = ',';
    std::ranges::copy(name, text_ + length_);
    length_ += name.size();
  }
  [[nodiscard]] std::string_view Text() const noexcept { return {text_, length_}; }

 private:
  char text_[256];  // one byte stays free for a NUL
  std::size_t length_ = 0;
};

std::int32_t AppendSourceNames(const InputCall& call) noexcept {
  if (!IsComplete(call)) return -1;
  const TrayReport report = ReportOf(call);
  NameList names;
  for (const TrayEntry& tray : report.trays) {
    for (const FlagPair& flag : FlagsOf(report.context.src_option_flags)) {
      if (flag.name != nullptr && HasNumber(flag, tray.alias)) names.Add(flag.name);
    }
  }
  AppendRow(call, kSourceOption, names.Text().empty() ? nullptr : Duplicate(names.Text()));
  return 0;
}

}  // namespace

constinit const InputHandler kSrcOptionCommon{
    IA_EXPORTED(analyze_GetQVSrcOptionCommon),
    .inputs = {Input::kTrayAlias, Input::kSourceOptionFlags},
    .rule = AppendSourceNames,
};

constinit const InputHandler kSrcOptionCommonByCount{
    IA_EXPORTED(analyze_GetQVSrcOptionCommonByCount),
    .inputs = {Input::kTrays},
    .rule = AppendInputOption<kSourceOption, ByTrayCount<kByCount>>,
};

constinit const InputHandler kSrcOptionLaurel{
    IA_EXPORTED(analyze_GetQVSrcOptionLAUREL),
    .inputs = {Input::kTrays},
    .rule = AppendInputOption<kSourceOption, ByTrayCount<kByCount>>,
};

constinit const InputHandler kSrcOptionMyrtle{
    IA_EXPORTED(analyze_GetQVSrcOptionMYRTLE),
    .inputs = {Input::kTrays},
    .rule = AppendInputOption<kSourceOption, ByTrayCount<kByCount>>,
};

constinit const InputHandler kSrcOptionElm{
    IA_EXPORTED(analyze_GetQVSrcOption_ELM),
    .inputs = {Input::kTrays},
    .rule = AppendInputOption<kSourceOption, ByTrayCount<kByCount>>,
};

constinit const InputHandler kSrcOptionOlive{
    IA_EXPORTED(analyze_GetQVSrcOptionOLIVE),
    .inputs = {Input::kTrays},
    .rule = AppendInputOption<kSourceOption, ByTrayCount<kByCount>>,
};

constinit const InputHandler kSrcOptionSpruce{
    IA_EXPORTED(analyze_GetQVSrcOptionSPRUCE),
    .inputs = {Input::kTrays},
    .rule = AppendInputOption<kSourceOption, ByTrayCount<kSpruce>>,
};

constinit const InputHandler kSrcOptionCypress{
    IA_EXPORTED(analyze_GetQVSrcOption_CYPRESS),
    .inputs = {Input::kTrayType},
    .rule = AppendInputOption<kSourceOption, ByExtraTrayCount<kCypress>>,
};

constinit const InputHandler kSrcOptionHolly{
    IA_EXPORTED(analyze_GetQVSrcOptionHOLLY),
    .inputs = {Input::kTrayType},
    .rule = AppendInputOption<kSourceOption, ByLargeDecks>,
};

constinit const InputHandler kSrcOptionOak{
    IA_EXPORTED(analyze_GetQVSrcOptionOAK),
    .inputs = {Input::kTrayAlias},
    .rule = AppendInputOption<kSourceOption, ByAlias<kOak>>,
};

constinit const InputHandler kSrcOptionRowan{
    IA_EXPORTED(analyze_GetQVSrcOptionROWAN),
    .inputs = {Input::kTrayAlias, Input::kTrayCapacity},
    .rule = AppendInputOption<kSourceOption, ByRowanDecks>,
};

constinit const InputHandler kSrcOptionRedwood{
    IA_EXPORTED(analyze_GetQVSrcOptionREDWOOD),
    .inputs = {Input::kTrayAlias},
    .rule = AppendInputOption<kSourceOption, ByAlias<kRedwood>>,
};

}  // namespace ia

int32_t analyze_GetQVSrcOptionCommon(AnalyzeContext* context, const TrayEntry* trays,
                                     int32_t tray_count, int32_t extra_tray_count,
                                     OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionCommon,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionCommonByCount(AnalyzeContext* context, const TrayEntry* trays,
                                            int32_t tray_count, int32_t extra_tray_count,
                                            OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionCommonByCount,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionLAUREL(AnalyzeContext* context, const TrayEntry* trays,
                                     int32_t tray_count, int32_t extra_tray_count,
                                     OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionLaurel,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionMYRTLE(AnalyzeContext* context, const TrayEntry* trays,
                                     int32_t tray_count, int32_t extra_tray_count,
                                     OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionMyrtle,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOption_ELM(AnalyzeContext* context, const TrayEntry* trays,
                                   int32_t tray_count, int32_t extra_tray_count, OptionSetter* rows,
                                   int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionElm,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionOLIVE(AnalyzeContext* context, const TrayEntry* trays,
                                    int32_t tray_count, int32_t extra_tray_count,
                                    OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionOlive,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionSPRUCE(AnalyzeContext* context, const TrayEntry* trays,
                                     int32_t tray_count, int32_t extra_tray_count,
                                     OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionSpruce,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOption_CYPRESS(AnalyzeContext* context, const TrayEntry* trays,
                                       int32_t tray_count, int32_t extra_tray_count,
                                       OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionCypress,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionHOLLY(AnalyzeContext* context, const TrayEntry* trays,
                                    int32_t tray_count, int32_t extra_tray_count,
                                    OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionHolly,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionOAK(AnalyzeContext* context, const TrayEntry* trays,
                                  int32_t tray_count, int32_t extra_tray_count, OptionSetter* rows,
                                  int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionOak,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionROWAN(AnalyzeContext* context, const TrayEntry* trays,
                                    int32_t tray_count, int32_t extra_tray_count,
                                    OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionRowan,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}

int32_t analyze_GetQVSrcOptionREDWOOD(AnalyzeContext* context, const TrayEntry* trays,
                                      int32_t tray_count, int32_t extra_tray_count,
                                      OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kSrcOptionRedwood,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}
