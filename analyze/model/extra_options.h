// The option of the one driver model whose insert unit is reported as a tray.
#ifndef ANALYZE_MODEL_EXTRA_OPTIONS_H_
#define ANALYZE_MODEL_EXTRA_OPTIONS_H_

#include <cstdint>

#include "analyze/inputs.h"
#include "analyze/option_rows.h"

namespace ia {

inline constexpr OptionSource kExtraOption =
    ModelOption("QVInsertUnit", nullptr, "None", IA_FAMILY_EXTRA_OPTIONS);

[[nodiscard]] bool HasExtraOptions(const char* model_code) noexcept;

// As analyze_GetExtraOptionStringROWAN().
std::int32_t SetExtraOptions(AnalyzeContext* context, const OptionTarget& target) noexcept;

}  // namespace ia

#endif  // ANALYZE_MODEL_EXTRA_OPTIONS_H_
