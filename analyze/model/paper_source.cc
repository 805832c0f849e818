// QVSrcOption: which extra paper sources are fitted, per driver model.
#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "analyze/model/model_matrix.h"
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

std::int32_t AppendSourceNames(const InputArguments& arguments, OptionName option) noexcept {
  if (!IsComplete(arguments)) return -1;
  const TrayReport report = ReportOf(arguments);
  NameList names;
  for (const TrayEntry& tray : report.trays) {
    for (const FlagPair& flag : FlagsOf(report.context.src_option_flags)) {
      if (flag.name != nullptr && HasNumber(flag, tray.alias)) names.Add(flag.name);
    }
  }
  AppendRow(arguments, option, names.Text().empty() ? nullptr : Duplicate(names.Text()));
  return 0;
}

}  // namespace
}  // namespace ia

#define IA_SOURCE_OPTION(name, decide) \
  IA_INPUT_HANDLER(name, ia::AppendInputOption, ia::kSourceOption, decide)

IA_INPUT_HANDLER(analyze_GetQVSrcOptionCommon, ia::AppendSourceNames, ia::kSourceOption);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionCommonByCount, ia::ByTrayCount<ia::kByCount>);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionLAUREL, ia::ByTrayCount<ia::kByCount>);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionMYRTLE, ia::ByTrayCount<ia::kByCount>);
IA_SOURCE_OPTION(analyze_GetQVSrcOption_ELM, ia::ByTrayCount<ia::kByCount>);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionOLIVE, ia::ByTrayCount<ia::kByCount>);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionSPRUCE, ia::ByTrayCount<ia::kSpruce>);
IA_SOURCE_OPTION(analyze_GetQVSrcOption_CYPRESS, ia::ByExtraTrayCount<ia::kCypress>);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionHOLLY, ia::ByLargeDecks);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionOAK, ia::ByAlias<ia::kOak>);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionROWAN, ia::ByRowanDecks);
IA_SOURCE_OPTION(analyze_GetQVSrcOptionREDWOOD, ia::ByAlias<ia::kRedwood>);

// What each handler looks at.
namespace ia {
namespace {

constexpr std::uint64_t kCount = SetOf(Input::kTrays);

constexpr auto kSources = std::to_array<HandlerSource<InputOptionHandler>>({
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionCommon,
                      SetOf(Input::kTrayAlias, Input::kSourceOptionFlags)),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionCommonByCount, kCount),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionLAUREL, kCount),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionMYRTLE, kCount),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOption_ELM, kCount),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionOLIVE, kCount),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionSPRUCE, kCount),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOption_CYPRESS, SetOf(Input::kTrayType)),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionHOLLY, SetOf(Input::kTrayType)),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionOAK, SetOf(Input::kTrayAlias)),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionROWAN, SetOf(Input::kTrayAlias, Input::kTrayCapacity)),
    IA_HANDLER_SOURCE(analyze_GetQVSrcOptionREDWOOD, SetOf(Input::kTrayAlias)),
});

}  // namespace

constinit const InputHandlerSources kSourceOptionHandlers = kSources;

}  // namespace ia
