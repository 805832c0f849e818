// Which handlers decide the finisher options of each driver model.
#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "analyze/model/finisher_handlers.h"
#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

struct FinisherOptionRow {
  std::string_view model;
  const FinisherHandler* finisher;
  const FinisherHandler* copy_tray;
  const FinisherHandler* fin_tray;
};

// "RA-P9-1" must stay ahead of "RA-P9", which is its prefix.
// clang-format off
constexpr auto kFinisherOptionTable = std::to_array<FinisherOptionRow>({
    {.model = "RA-P9-1", .finisher = &kFinisherFir, .copy_tray = &kCopyTrayFir, .fin_tray = &kFinTrayFir},
    {.model = "RA-P9", .finisher = &kFinisherAspen, .copy_tray = &kCopyTrayAspen, .fin_tray = &kFinTrayAspen},
    {.model = "RA-J0", .finisher = &kFinisherCommon, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayAlder},
    {.model = "RA-G1", .finisher = &kFinisherCedar, .copy_tray = &kCopyTrayCedar, .fin_tray = &kFinTrayCommon},
    {.model = "RA-T7", .finisher = &kFinisherBeech, .copy_tray = &kCopyTrayBeech, .fin_tray = &kFinTrayBeech},
    {.model = "RA-X1", .finisher = &kFinisherBirch, .copy_tray = &kCopyTrayBirch, .fin_tray = &kFinTrayBirch},
    {.model = "RA-T9", .finisher = &kFinisherHazel, .copy_tray = &kCopyTrayHazel, .fin_tray = &kFinTrayHazel},
    {.model = "RA-G8", .finisher = &kFinisherMaple, .copy_tray = &kCopyTrayMaple, .fin_tray = &kFinTrayMaple},
    {.model = "RB-X1-1", .finisher = &kFinisherCommon, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayMyrtle},
    {.model = "RB-X1-2", .finisher = &kFinisherCommon, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayMyrtle},
    {.model = "RA-G7", .finisher = &kFinisherSpruce, .copy_tray = &kCopyTrayMaple, .fin_tray = &kFinTrayMaple},
    {.model = "RA-G4", .finisher = &kFinisherSpruce, .copy_tray = &kCopyTrayMaple, .fin_tray = &kFinTrayMaple},
    {.model = "RB-T9-1", .finisher = &kFinisherCommon, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayMyrtle},
    {.model = "RB-T9-2", .finisher = &kFinisherCommon, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayMyrtle},
    {.model = "RA-K8", .finisher = &kFinisherWalnut, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayCommon},
    {.model = "RA-H8", .finisher = &kFinisherWillow, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayWillow},
    {.model = "RA-Z3", .finisher = &kFinisherSumac, .copy_tray = &kCopyTrayMaple, .fin_tray = &kFinTraySumac},
    {.model = "RA-T6", .finisher = &kFinisherHickory, .copy_tray = &kCopyTrayMaple, .fin_tray = &kFinTrayCommon},
    {.model = "RA-X6", .finisher = &kFinisherSpecialIn2TrayCommon, .copy_tray = &kCopyTrayCommon, .fin_tray = &kFinTrayCommon},
    {.model = "RA-H5", .finisher = &kFinisherSumac, .copy_tray = &kCopyTrayMaple, .fin_tray = &kFinTrayHornbeam},
});
// clang-format on
static_assert(CountUnreachableRows<FinisherOptionRow>(kFinisherOptionTable) == 0);

// Models without a row get a finisher only.
constexpr FinisherOptionRow kOtherModels{
    .model = "", .finisher = &kFinisherCommon, .copy_tray = nullptr, .fin_tray = nullptr};

}  // namespace
}  // namespace ia

std::int32_t ia::Apply(const FinisherHandler& handler, const FinisherCall& call) noexcept {
  return handler.rule(call);
}

void ia::RunHandlers(std::initializer_list<const FinisherHandler*> handlers,
                     FinisherCall call) noexcept {
  for (const FinisherHandler* const handler : handlers) {
    if (handler != nullptr && handler->function(call.context, call.finishers, call.finisher_count,
                                                call.aliases, call.alias_count, call.row) != 0) {
      return;
    }
    ++call.row;
  }
}

void analyze_GetFinisherOption(AnalyzeContext* context, const FinisherEntry* finishers,
                               int32_t finisher_count, const int32_t* aliases, int32_t alias_count,
                               OptionSetter* rows) noexcept {
  if (context == nullptr || finishers == nullptr || rows == nullptr || finisher_count == 0) return;
  const auto* const found =
      ia::FindModel<ia::FinisherOptionRow>(ia::kFinisherOptionTable, context->driver_name);
  const ia::FinisherOptionRow& row = found != nullptr ? *found : ia::kOtherModels;
  ia::RunHandlers({row.finisher, row.copy_tray, row.fin_tray},
                  {context, finishers, finisher_count, aliases, alias_count, rows});
}

namespace ia {

constinit const ModelColumn kFinisherColumn =
    ColumnOf<FinisherOptionRow, kFinisherOptionTable, kOtherModels,
             &FinisherOptionRow::finisher>::kColumn;
constinit const ModelColumn kCopyTrayColumn =
    ColumnOf<FinisherOptionRow, kFinisherOptionTable, kOtherModels,
             &FinisherOptionRow::copy_tray>::kColumn;
constinit const ModelColumn kFinTrayColumn =
    ColumnOf<FinisherOptionRow, kFinisherOptionTable, kOtherModels,
             &FinisherOptionRow::fin_tray>::kColumn;

}  // namespace ia
