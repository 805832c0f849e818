// The alias codes of all bins, for the handlers of finisher options.
#include "analyze/document_keys.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

constexpr std::int32_t kMostAliases = 10;  // the room that callers give

}  // namespace
}  // namespace ia

int32_t analyze_GetBinAlias(AnalyzeContext* context, int32_t* aliases,
                            int32_t* alias_count) noexcept {
  if (context == nullptr || aliases == nullptr || alias_count == nullptr) return -1;
  constexpr int32_t kDocument = IA_DOCUMENT_BIN_LIST;
  ia::LongArray<ia::kMostAliases> codes(kDocument, "alias");
  int32_t status = 0;
  int32_t collected = 0;
  for (int32_t item = 0; item < context->documents[kDocument].count; ++item) {
    status = ia::ReadListItem(context, kDocument, item, {codes.Key()});
    if (status != 0) break;
    for (const int32_t code : codes.Elements()) {
      if (code != 0 && collected < ia::kMostAliases) aliases[collected++] = code;
    }
  }
  *alias_count = collected;
  return status;
}
