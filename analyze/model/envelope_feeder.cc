// QVEnvelopeFeeder: whether an envelope feeder is fitted.
#include <array>

#include "analyze/model/model_matrix.h"
#include "analyze/model/tray_report.h"

namespace ia {
namespace {

constexpr std::int32_t kEnvelopeFeederAlias = 6;

const char* HasFeeder(const TrayReport& report) noexcept {
  return report.HasAlias(kEnvelopeFeederAlias) ? "True" : "False";
}

}  // namespace
}  // namespace ia

IA_INPUT_HANDLER(analyze_GetQVEnvelopeFeederCommon, ia::AppendInputOption, ia::kEnvelopeFeeder,
                 ia::HasFeeder);

// What each handler looks at.
namespace ia {
namespace {

constexpr auto kSources = std::to_array<HandlerSource<InputOptionHandler>>({
    IA_HANDLER_SOURCE(analyze_GetQVEnvelopeFeederCommon, SetOf(Input::kTrayAlias)),
});

}  // namespace

constinit const InputHandlerSources kEnvelopeFeederHandlers = kSources;

}  // namespace ia
