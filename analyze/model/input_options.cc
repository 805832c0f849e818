// Which handlers decide the paper-source options of each driver model.
#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "analyze/model/input_handlers.h"
#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

struct InputOptionRow {
  std::string_view model;
  const InputHandler* side_paper_deck;  // an empty slot: the model has no such option
  const InputHandler* source_option;
  const InputHandler* media_type;
  const InputHandler* envelope_feeder;
};

// clang-format off
constexpr auto kInputOptionTable = std::to_array<InputOptionRow>({
    {.model = "RA-Z2", .side_paper_deck = &kSidePaperDeckOak, .source_option = &kSrcOptionOak, .media_type = &kMediaTypeCypress, .envelope_feeder = nullptr},
    {.model = "RC-Z9", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionOlive, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-Z4", .side_paper_deck = &kSidePaperDeckCypress, .source_option = &kSrcOptionCypress, .media_type = &kMediaTypeCypress, .envelope_feeder = nullptr},
    {.model = "RC-T7", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionElm, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RC-X1", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionLaurel, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RB-X1-1", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionMyrtle, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-Z5", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionRowan, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RC-J4", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionCommonByCount, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-G7", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionSpruce, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-G4", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionSpruce, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RB-T9-1", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionCommonByCount, .media_type = &kMediaTypeYew, .envelope_feeder = nullptr},
    {.model = "RC-X5", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionCommonByCount, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RC-W5", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionCommonByCount, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RC-STD", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionCommonByCount, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-H1", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionCommonByCount, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-W8", .side_paper_deck = nullptr, .source_option = &kSrcOptionHolly, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RB-X7", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionCommonByCount, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RC-W0", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionRedwood, .media_type = &kMediaTypeRedwood, .envelope_feeder = &kEnvelopeFeederCommon},
    {.model = "RA-T0", .side_paper_deck = nullptr, .source_option = &kSrcOptionHolly, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-T6", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionRedwood, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RA-X6", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionRedwood, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
    {.model = "RC-X8", .side_paper_deck = &kSidePaperDeckCommon, .source_option = &kSrcOptionOlive, .media_type = &kMediaTypeCommon, .envelope_feeder = nullptr},
});
// clang-format on
static_assert(CountUnreachableRows<InputOptionRow>(kInputOptionTable) == 0);

constexpr InputOptionRow kOtherModels{.model = "",
                                      .side_paper_deck = &kSidePaperDeckCommon,
                                      .source_option = &kSrcOptionCommon,
                                      .media_type = &kMediaTypeCommon,
                                      .envelope_feeder = nullptr};

}  // namespace
}  // namespace ia

std::int32_t ia::Apply(const InputHandler& handler, const InputCall& call) noexcept {
  return handler.rule(call);
}

void ia::RunHandlers(std::initializer_list<const InputHandler*> handlers,
                     const InputCall& call) noexcept {
  for (const InputHandler* const handler : handlers) {
    if (handler != nullptr &&
        handler->function(call.context, call.trays, call.tray_count, call.extra_tray_count,
                          call.rows, call.row_count) != 0) {
      return;
    }
  }
}

void analyze_GetInputOptions(AnalyzeContext* context, const TrayEntry* trays, int32_t tray_count,
                             int32_t extra_tray_count, OptionSetter* rows,
                             int32_t* row_count) noexcept {
  if (context == nullptr || trays == nullptr || rows == nullptr || row_count == nullptr) return;
  const auto* const found =
      ia::FindModel<ia::InputOptionRow>(ia::kInputOptionTable, context->driver_name);
  const ia::InputOptionRow& row = found != nullptr ? *found : ia::kOtherModels;
  ia::RunHandlers({row.side_paper_deck, row.source_option, row.media_type, row.envelope_feeder},
                  {context, trays, tray_count, extra_tray_count, rows, row_count});
}

namespace ia {

constinit const ModelColumn kSidePaperDeckColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels,
             &InputOptionRow::side_paper_deck>::kColumn;
constinit const ModelColumn kSourceOptionColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels,
             &InputOptionRow::source_option>::kColumn;
constinit const ModelColumn kMediaTypeColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels, &InputOptionRow::media_type>::kColumn;
constinit const ModelColumn kEnvelopeFeederColumn =
    ColumnOf<InputOptionRow, kInputOptionTable, kOtherModels,
             &InputOptionRow::envelope_feeder>::kColumn;

}  // namespace ia
