// The main query: load what is not loaded, then run the update handlers.
#include <array>
#include <cstdint>

#include "info_analyze/analyzer.h"
#include "info_analyze/printer_updates.h"

namespace ia {
namespace {

using UpdateHandler = std::int32_t (*)(AnalyzeContext*, OptionList*) noexcept;

// A handler's guard is the slot at its own place in this row, which is not always the document that
// it reads: the platform version comes from Specid but waits for Finisher_list, and the last
// handler for the word behind the slots. Drivers depend on this pairing.
constexpr auto kUpdateHandlers = std::to_array<UpdateHandler>({
    z_Update_Prn_accessories,
    z_Update_Prn_functions,
    z_Update_Prn_specid,
    z_Update_Prn_platformVer,
    z_Update_Prn_finisher_list,
    z_Update_Prn_bin_list,
    z_Update_Prn_tray_list,
    z_Update_Prn_resolutions,
    z_Update_Prn_fax_line_list,
    z_Update_Prn_extra,
});
static_assert(kUpdateHandlers.size() == IA_DOCUMENT_COUNT + 1);

bool IsGuardSet(const AnalyzeContext& context, std::size_t place) noexcept {
  return place < IA_DOCUMENT_COUNT ? context.documents[place].xml != nullptr
                                   : context.media_type_flags != nullptr;
}

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
  for (std::size_t place = 0; place < ia::kUpdateHandlers.size() && status == 0; ++place) {
    if (ia::IsGuardSet(*context, place)) status = ia::kUpdateHandlers[place](context, options);
  }
  return status != 0 ? status : z_Update_Prn_Complex_FinisherInformations(context, options);
}
