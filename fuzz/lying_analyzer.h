// An analyser on the lying library, made without a print queue.
#ifndef FUZZ_LYING_ANALYZER_H_
#define FUZZ_LYING_ANALYZER_H_

#include <cstdint>
#include <cstdlib>

#include "fuzz/lying_bidi.h"
#include "info_analyze/analyzer.h"
#include "tests/support/analyzer_ptr.h"

namespace ia_fuzz {

inline ia_test::AnalyzerPtr NewAnalyzer() {
  ia_test::AnalyzerPtr context(
      static_cast<AnalyzeContext*>(std::calloc(1, sizeof(AnalyzeContext))));
  context->bidi = LyingBidi();
  return context;
}

// A verdict of the script for each document; those with a list take a number of items too.
inline void LoadDocuments(AnalyzeContext* context) {
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) {
    const bool has_list = index == IA_DOCUMENT_FINISHER_LIST || index == IA_DOCUMENT_BIN_LIST ||
                          index == IA_DOCUMENT_TRAY_LIST || index == IA_DOCUMENT_FAX_LINE_LIST;
    Require(analyze_common_initialize_xmldata(context, index, "", 0, has_list ? "list" : nullptr) ==
            0);
    const std::int32_t count = context->documents[index].count;
    Require(count >= 0 && count <= (has_list ? std::int32_t{IA_DOCUMENT_MAX_ITEMS} : 0));
  }
}

}  // namespace ia_fuzz

#endif  // FUZZ_LYING_ANALYZER_H_
