// What a printer's documents and PPD say, value by value and as it is written there.
#ifndef INFO_ANALYZE_CLI_PROVENANCE_RAW_VALUES_H_
#define INFO_ANALYZE_CLI_PROVENANCE_RAW_VALUES_H_

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "info_analyze/analyzer.h"
#include "info_analyze/provenance.h"

namespace ia::cli {

enum class RawState {
  kPresent,
  kMissing,
  kWrongType,   // the key has a value of a different type, which the library does not see
  kNoDocument,  // the document is not loaded
};

struct RawValue {
  const InputKey* input;
  std::int32_t item = -1;  // of the document's list; -1: an outermost value
  std::string key;         // the key in full
  RawState state = RawState::kMissing;
  nlohmann::ordered_json value = nullptr;  // number, text, or array of them; null unless present

  [[nodiscard]] bool is_present() const { return state == RawState::kPresent; }
};

// The values of an input: one, or one for each item of the document's list, or one for each line of
// the PPD.
[[nodiscard]] std::vector<RawValue> ReadRawValues(const AnalyzeContext& analyzer,
                                                  const InputKey& input);

// Whether one of the values is in the same place.
[[nodiscard]] bool IsIn(const std::vector<RawValue>& values, const RawValue& raw);

// "Tray_list.xml list[0] type = 1".
[[nodiscard]] std::string FormatRawValue(const RawValue& raw);
[[nodiscard]] nlohmann::ordered_json ToJson(const RawValue& raw);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PROVENANCE_RAW_VALUES_H_
