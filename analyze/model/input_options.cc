// Which handlers decide the paper-source options of each driver model.
#include <array>

#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

struct InputOptionRow {
  std::string_view model;
  InputOptionHandler side_paper_deck;  // an empty slot: the model has no such option
  InputOptionHandler source_option;
  InputOptionHandler media_type;
  InputOptionHandler envelope_feeder;
};

// clang-format off
constexpr auto kInputOptionTable = std::to_array<InputOptionRow>({
    {"RA-Z2", analyze_GetQVSidePaperDeckOAK, analyze_GetQVSrcOptionOAK, analyze_GetQVXXXMediaType_CYPRESS, nullptr},
    {"RC-Z9", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionOLIVE, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-Z4", analyze_GetQVSidePaperDeck_CYPRESS, analyze_GetQVSrcOption_CYPRESS, analyze_GetQVXXXMediaType_CYPRESS, nullptr},
    {"RC-T7", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOption_ELM, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RC-X1", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionLAUREL, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RB-X1-1", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionMYRTLE, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-Z5", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionROWAN, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RC-J4", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionCommonByCount, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-G7", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionSPRUCE, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-G4", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionSPRUCE, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RB-T9-1", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionCommonByCount, analyze_GetQVXXXMediaTypeYEW, nullptr},
    {"RC-X5", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionCommonByCount, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RC-W5", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionCommonByCount, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RC-STD", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionCommonByCount, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-H1", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionCommonByCount, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-W8", nullptr, analyze_GetQVSrcOptionHOLLY, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RB-X7", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionCommonByCount, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RC-W0", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionREDWOOD, analyze_GetQVXXXMediaTypeREDWOOD, analyze_GetQVEnvelopeFeederCommon},
    {"RA-T0", nullptr, analyze_GetQVSrcOptionHOLLY, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-T6", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionREDWOOD, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RA-X6", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionREDWOOD, analyze_GetQVXXXMediaTypeCommon, nullptr},
    {"RC-X8", analyze_GetQVSidePaperDeckCommon, analyze_GetQVSrcOptionOLIVE, analyze_GetQVXXXMediaTypeCommon, nullptr},
});
// clang-format on
static_assert(kInputOptionTable.size() == 22);
static_assert(CountUnreachableRows<InputOptionRow>(kInputOptionTable) == 0);

constexpr InputOptionRow kOtherModels{"", analyze_GetQVSidePaperDeckCommon,
                                      analyze_GetQVSrcOptionCommon, analyze_GetQVXXXMediaTypeCommon,
                                      nullptr};

}  // namespace
}  // namespace ia

void analyze_GetInputOptions(AnalyzeContext* context, const TrayEntry* trays, int32_t tray_count,
                             int32_t extra_tray_count, OptionSetter* rows,
                             int32_t* row_count) noexcept {
  if (context == nullptr || trays == nullptr || rows == nullptr || row_count == nullptr) return;
  const auto* const found =
      ia::FindModel<ia::InputOptionRow>(ia::kInputOptionTable, context->driver_name);
  const ia::InputOptionRow& row = found != nullptr ? *found : ia::kOtherModels;
  for (const InputOptionHandler handler :
       {row.side_paper_deck, row.source_option, row.media_type, row.envelope_feeder}) {
    if (handler != nullptr &&
        handler(context, trays, tray_count, extra_tray_count, rows, row_count) != 0) {
      return;
    }
  }
}

namespace ia {

constinit const ModelColumn kSidePaperDeckColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels, &InputOptionRow::side_paper_deck,
             kSidePaperDeckHandlers>::kColumn;
constinit const ModelColumn kSourceOptionColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels, &InputOptionRow::source_option,
             kSourceOptionHandlers>::kColumn;
constinit const ModelColumn kMediaTypeColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels, &InputOptionRow::media_type,
             kMediaTypeHandlers>::kColumn;
constinit const ModelColumn kEnvelopeFeederColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels, &InputOptionRow::envelope_feeder,
             kEnvelopeFeederHandlers>::kColumn;

}  // namespace ia
