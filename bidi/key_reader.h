// Reading values of device documents through key descriptors.
#ifndef BIDI_KEY_READER_H_
#define BIDI_KEY_READER_H_

#include <cstdint>
#include <span>

#include "info_analyze/analyzer.h"

namespace ia {

// As analyze_common_readxml().
[[nodiscard]] std::int32_t ReadKeys(const AnalyzeContext& context,
                                    std::span<const XmlKeyDescriptor> keys) noexcept;

}  // namespace ia

#endif  // BIDI_KEY_READER_H_
