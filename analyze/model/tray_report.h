// The input of the handlers of paper-source options, and helpers that set their results.
#ifndef ANALYZE_MODEL_TRAY_REPORT_H_
#define ANALYZE_MODEL_TRAY_REPORT_H_

#include <cstdint>
#include <span>

#include "info_analyze/model_options.h"
#include "info_common/owned.h"

namespace ia {

inline constexpr std::int32_t kSideDeckAlias = 161;
inline constexpr std::int32_t kLargeDeckType = 6;
inline constexpr std::int32_t kSmallDeckType = 3;

// A call of an InputOptionHandler, argument by argument.
struct InputCall {
  InputCall(AnalyzeContext* analyzer, const TrayEntry* entries, std::int32_t entry_count,
            std::int32_t extra_count, OptionSetter* options, std::int32_t* option_count) noexcept
      : context(analyzer),
        trays(entries),
        tray_count(entry_count),
        extra_tray_count(extra_count),
        rows(options),
        row_count(option_count) {}

  AnalyzeContext* context;
  const TrayEntry* trays;
  std::int32_t tray_count;
  std::int32_t extra_tray_count;
  OptionSetter* rows;
  std::int32_t* row_count;
};

// What the device reports.
struct TrayReport {
  const AnalyzeContext& context;
  std::span<const TrayEntry> trays;
  std::int32_t extra_trays;  // of type 3 or 6

  [[nodiscard]] const TrayEntry* FindAlias(std::int32_t alias) const noexcept;
  [[nodiscard]] bool HasAlias(std::int32_t alias) const noexcept {
    return FindAlias(alias) != nullptr;
  }
};

struct OptionName {
  const char* keyword;
  const char* default_value;
};
inline constexpr OptionName kSidePaperDeck{"QVSidePaperDeck", "None"};
inline constexpr OptionName kSourceOption{"QVSrcOption", "None"};
inline constexpr OptionName kEnvelopeFeeder{"QVEnvelopeFeeder", "False"};
inline constexpr const char* kPlainPaper = "PlainPaper";  // default of the media types

// False when an argument is missing or the rows in use are fewer than none.
[[nodiscard]] bool IsComplete(const InputCall& call) noexcept;
[[nodiscard]] TrayReport ReportOf(const InputCall& call) noexcept;

// Appends a row. Without memory for its keyword the row has neither keyword nor value, and is not
// applied.
void AppendRow(const InputCall& call, OptionName option, CString value) noexcept;

// Appends one row whose value is a copy of decide(report), or null.
std::int32_t AppendDecided(const InputCall& call, OptionName option,
                           const char* (*decide)(const TrayReport&) noexcept) noexcept;

// The rule of a handler that appends one row.
template <const OptionName& kOption, const char* (*kDecide)(const TrayReport&) noexcept>
std::int32_t AppendInputOption(const InputCall& call) noexcept {
  return AppendDecided(call, kOption, kDecide);
}

// The pairs of a store, none for a missing one.
[[nodiscard]] std::span<const FlagPair> FlagsOf(const FlagInfo* store) noexcept;

// Whether the value of a flag is this number.
[[nodiscard]] bool HasNumber(const FlagPair& flag, std::int32_t number) noexcept;

}  // namespace ia

#endif  // ANALYZE_MODEL_TRAY_REPORT_H_
