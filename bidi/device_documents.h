// Loading the nine device documents into an analyser's slots.
#ifndef BIDI_DEVICE_DOCUMENTS_H_
#define BIDI_DEVICE_DOCUMENTS_H_

#include <cstdint>

#include "info_analyze/analyzer.h"

namespace ia {

// As analyze_common_create_xmldata() and analyze_common_destroy_xmldata(), for an index in range.
[[nodiscard]] std::int32_t LoadDocument(AnalyzeContext& context, std::int32_t index) noexcept;
void UnloadDocument(AnalyzeContext& context, std::int32_t index) noexcept;

void UnloadDocuments(AnalyzeContext& context) noexcept;

}  // namespace ia

#endif  // BIDI_DEVICE_DOCUMENTS_H_
