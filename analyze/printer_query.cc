// The main query: load what is not loaded, then run the update handlers.
#include <array>
#include <cstdint>

#include "info_analyze/analyzer.h"
#include "info_analyze/printer_updates.h"

namespace ia {
namespace {

struct UpdateStep {
  std::int32_t guard;  // document slot that must be loaded for the handler to run
  std::int32_t (*update)(AnalyzeContext*, OptionList*) noexcept;
};

// A handler's guard is the slot of its own place in the row of handlers, which is not always the
// document that it reads: the platform version comes from Specid but waits for Finisher_list.
// Drivers know by this pairing which options a missing document leaves at their PPD defaults.
constexpr auto kUpdateSteps = std::to_array<UpdateStep>({
    {0, z_Update_Prn_accessories},
    {1, z_Update_Prn_functions},
    {2, z_Update_Prn_specid},
    {3, z_Update_Prn_platformVer},
    {7, z_Update_Prn_resolutions},
});

// The result is that of the last document that had to be loaded. That an earlier failure is masked
// is wanted: a printer without, say, a finisher list still answers the rest of the query.
std::int32_t LoadDocuments(AnalyzeContext& context, bool reload) noexcept {
  std::int32_t status = 0;
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) {
    if (reload) analyze_common_destroy_xmldata(&context, index);
    if (context.documents[index].xml == nullptr) {
      status = analyze_common_create_xmldata(&context, index);
    }
  }
  return status;
}

}  // namespace
}  // namespace ia

int32_t Analyze_Info_FromPrinter(AnalyzeContext* context, OptionList* options,
                                 uint8_t reload) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  int32_t status = ia::LoadDocuments(*context, reload != 0);
  for (const ia::UpdateStep& step : ia::kUpdateSteps) {
    if (status != 0) return status;
    if (context->documents[step.guard].xml != nullptr) status = step.update(context, options);
  }
  return status;
}
