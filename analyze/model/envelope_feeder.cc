// QVEnvelopeFeeder: whether an envelope feeder is fitted.
#include <cstdint>

#include "analyze/model/input_handlers.h"
#include "analyze/model/tray_report.h"

namespace ia {
namespace {

constexpr std::int32_t kEnvelopeFeederAlias = 6;

const char* HasFeeder(const TrayReport& report) noexcept {
  return report.HasAlias(kEnvelopeFeederAlias) ? "True" : "False";
}

}  // namespace

constinit const InputHandler kEnvelopeFeederCommon{
    IA_EXPORTED(analyze_GetQVEnvelopeFeederCommon),
    .inputs = {Input::kTrayAlias},
    .rule = AppendInputOption<kEnvelopeFeeder, HasFeeder>,
};

}  // namespace ia

int32_t analyze_GetQVEnvelopeFeederCommon(AnalyzeContext* context, const TrayEntry* trays,
                                          int32_t tray_count, int32_t extra_tray_count,
                                          OptionSetter* rows, int32_t* row_count) noexcept {
  return ia::Apply(ia::kEnvelopeFeederCommon,
                   {context, trays, tray_count, extra_tray_count, rows, row_count});
}
