// Which handlers decide the finisher options of each driver model.
#include <array>

#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

struct FinisherOptionRow {
  std::string_view model;
  FinisherOptionHandler finisher;
  FinisherOptionHandler copy_tray;
  FinisherOptionHandler fin_tray;
};

// "RA-P9-1" must stay ahead of "RA-P9", which is its beginning.
// clang-format off
constexpr auto kFinisherOptionTable = std::to_array<FinisherOptionRow>({
    {"RA-P9-1", analyze_GetQVFinisher_FIR, analyze_GetQVCopyTray_FIR, analyze_GetQVFinTray_FIR},
    {"RA-P9", analyze_GetQVFinisher_ASPEN, analyze_GetQVCopyTray_ASPEN, analyze_GetQVFinTray_ASPEN},
    {"RA-J0", analyze_GetQVFinisherCommon, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTray_ALDER},
    {"RA-G1", analyze_GetQVFinisher_CEDAR, analyze_GetQVCopyTray_CEDAR, analyze_GetQVFinTrayCommon},
    {"RA-T7", analyze_GetQVFinisher_BEECH, analyze_GetQVCopyTray_BEECH, analyze_GetQVFinTray_BEECH},
    {"RA-X1", analyze_GetQVFinisher_BIRCH, analyze_GetQVCopyTray_BIRCH, analyze_GetQVFinTray_BIRCH},
    {"RA-T9", analyze_GetQVFinisher_HAZEL, analyze_GetQVCopyTray_HAZEL, analyze_GetQVFinTray_HAZEL},
    {"RA-G8", analyze_GetQVFinisherMAPLE, analyze_GetQVCopyTrayMAPLE, analyze_GetQVFinTrayMAPLE},
    {"RB-X1-1", analyze_GetQVFinisherCommon, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayMYRTLE},
    {"RB-X1-2", analyze_GetQVFinisherCommon, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayMYRTLE},
    {"RA-G7", analyze_GetQVFinisherSPRUCE, analyze_GetQVCopyTrayMAPLE, analyze_GetQVFinTrayMAPLE},
    {"RA-G4", analyze_GetQVFinisherSPRUCE, analyze_GetQVCopyTrayMAPLE, analyze_GetQVFinTrayMAPLE},
    {"RB-T9-1", analyze_GetQVFinisherCommon, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayMYRTLE},
    {"RB-T9-2", analyze_GetQVFinisherCommon, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayMYRTLE},
    {"RA-K8", analyze_GetQVFinisherWALNUT, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayCommon},
    {"RA-H8", analyze_GetQVFinisherWILLOW, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayWILLOW},
    {"RA-Z3", analyze_GetQVFinisherSUMAC, analyze_GetQVCopyTrayMAPLE, analyze_GetQVFinTraySUMAC},
    {"RA-T6", analyze_GetQVFinisherHICKORY, analyze_GetQVCopyTrayMAPLE, analyze_GetQVFinTrayCommon},
    {"RA-X6", analyze_GetQVFinisherSpecialIn2TrayCommon, analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayCommon},
    {"RA-H5", analyze_GetQVFinisherSUMAC, analyze_GetQVCopyTrayMAPLE, analyze_GetQVFinTrayHORNBEAM},
});
// clang-format on
static_assert(kFinisherOptionTable.size() == 20);
static_assert(CountUnreachableRows<FinisherOptionRow>(kFinisherOptionTable) == 0);

// Models without a row get a finisher only.
constexpr FinisherOptionRow kOtherModels{"", analyze_GetQVFinisherCommon, nullptr, nullptr};

}  // namespace
}  // namespace ia

void analyze_GetFinisherOption(AnalyzeContext* context, const FinisherEntry* finishers,
                               int32_t finisher_count, const int32_t* aliases, int32_t alias_count,
                               OptionSetter* rows) noexcept {
  if (context == nullptr || finishers == nullptr || rows == nullptr || finisher_count == 0) return;
  const auto* const found =
      ia::FindModel<ia::FinisherOptionRow>(ia::kFinisherOptionTable, context->driver_name);
  const ia::FinisherOptionRow& row = found != nullptr ? *found : ia::kOtherModels;
  for (const FinisherOptionHandler handler : {row.finisher, row.copy_tray, row.fin_tray}) {
    if (handler != nullptr &&
        handler(context, finishers, finisher_count, aliases, alias_count, rows) != 0) {
      return;
    }
    ++rows;
  }
}

namespace ia {

constinit const ModelColumn kFinisherColumn =
    ColumnOf<FinisherOptionRow, kFinisherOptionTable, kOtherModels, &FinisherOptionRow::finisher,
             kFinisherHandlers>::kColumn;
constinit const ModelColumn kCopyTrayColumn =
    ColumnOf<FinisherOptionRow, kFinisherOptionTable, kOtherModels, &FinisherOptionRow::copy_tray,
             kCopyTrayHandlers>::kColumn;
constinit const ModelColumn kFinTrayColumn =
    ColumnOf<FinisherOptionRow, kFinisherOptionTable, kOtherModels, &FinisherOptionRow::fin_tray,
             kFinTrayHandlers>::kColumn;

}  // namespace ia
