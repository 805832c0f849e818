// What the handlers of paper-source options look at, and how they answer.
#ifndef ANALYZE_MODEL_TRAY_REPORT_H_
#define ANALYZE_MODEL_TRAY_REPORT_H_

#include <cstddef>
#include <cstdint>
#include <span>

#include "info_analyze/model_options.h"
#include "info_common/owned.h"

namespace ia {

inline constexpr std::int32_t kSideDeckAlias = 161;
inline constexpr std::int32_t kLargeDeckType = 6;
inline constexpr std::int32_t kSmallDeckType = 3;

// The arguments of an InputOptionHandler.
struct InputArguments {
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
[[nodiscard]] bool IsComplete(const InputArguments& arguments) noexcept;
[[nodiscard]] TrayReport ReportOf(const InputArguments& arguments) noexcept;

// Appends a row. When memory runs out the row has neither keyword nor value and is passed over.
void AppendRow(const InputArguments& arguments, OptionName option, CString value) noexcept;

// Appends one row with decide(report), a constant text or null.
template <class Decide>
std::int32_t AppendInputOption(const InputArguments& arguments, OptionName option,
                               Decide decide) noexcept {
  if (!IsComplete(arguments)) return -1;
  AppendRow(arguments, option, CopyOf(decide(ReportOf(arguments))));
  return 0;
}

// The pairs of a store, none for a missing one.
[[nodiscard]] std::span<const FlagPair> FlagsOf(const FlagInfo* store) noexcept;

// Whether the value of a flag is this number.
[[nodiscard]] bool HasNumber(const FlagPair& flag, std::int32_t number) noexcept;

// Defines an exported InputOptionHandler that answers with answer(arguments, ...).
#define IA_INPUT_HANDLER(name, answer, ...)                                                      \
  int32_t name(AnalyzeContext* context, const TrayEntry* trays, int32_t tray_count,              \
               int32_t extra_tray_count, OptionSetter* rows, int32_t* row_count) noexcept {      \
    return answer({context, trays, tray_count, extra_tray_count, rows, row_count}, __VA_ARGS__); \
  }                                                                                              \
  static_assert(true)

}  // namespace ia

#endif  // ANALYZE_MODEL_TRAY_REPORT_H_
