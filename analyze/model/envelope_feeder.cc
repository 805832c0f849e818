// QVEnvelopeFeeder: whether an envelope feeder is fitted.
#include "analyze/model/tray_report.h"

namespace ia {
namespace {

constexpr OptionName kEnvelopeFeeder{"QVEnvelopeFeeder", "False"};
constexpr std::int32_t kEnvelopeFeederAlias = 6;

const char* HasFeeder(const TrayReport& report) noexcept {
  return report.HasAlias(kEnvelopeFeederAlias) ? "True" : "False";
}

}  // namespace
}  // namespace ia

IA_INPUT_HANDLER(analyze_GetQVEnvelopeFeederCommon, ia::AppendInputOption, ia::kEnvelopeFeeder,
                 ia::HasFeeder);
