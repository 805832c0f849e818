// The alias codes of all bins, for the handlers of finisher options.
#include <cstdint>

#include "analyze/document_keys.h"
#include "analyze/model/finisher_report.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

constexpr std::int32_t kDocument = IA_DOCUMENT_BIN_LIST;

// Adds the non-zero alias codes of one bin.
std::int32_t CollectAliases(AnalyzeContext* context, std::int32_t item, std::int32_t* aliases,
                            std::int32_t& count) noexcept {
  LongArray<kMaxAliases> codes(Input::kBinAlias);
  const std::int32_t status = ReadListItem(context, kDocument, item, {codes.Key()});
  if (status != 0) return status;
  for (const std::int32_t code : codes.Elements()) {
    if (code != 0 && count < kMaxAliases) aliases[count++] = code;
  }
  return 0;
}

}  // namespace
}  // namespace ia

int32_t analyze_GetBinAlias(AnalyzeContext* context, int32_t* aliases,
                            int32_t* alias_count) noexcept {
  if (context == nullptr || aliases == nullptr || alias_count == nullptr) return -1;
  int32_t status = 0;
  int32_t collected = 0;
  for (int32_t item = 0; status == 0 && item < context->documents[ia::kDocument].count; ++item) {
    status = ia::CollectAliases(context, item, aliases, collected);
  }
  *alias_count = collected;
  return status;
}
