// The main query: load what is not loaded, then run the update handlers.
#include <array>
#include <cstddef>
#include <cstdint>

#include "analyze/model/extra_options.h"
#include "analyze/query/update_handlers.h"
#include "analyze/record_copy.h"
#include "bidi/device_documents.h"
#include "info_analyze/analyzer.h"
#include "info_analyze/provenance.h"

namespace ia {
namespace {

// In the order in which they run: of two that set one option, the later one decides.
constexpr auto kUpdateHandlers = std::to_array<const UpdateHandler*>({
    &kAccessoriesUpdate,
    &kFunctionsUpdate,
    &kSpecIdUpdate,
    &kPlatformUpdate,
    &kFinisherListUpdate,
    &kBinListUpdate,
    &kTrayListUpdate,
    &kResolutionsUpdate,
    &kFaxLineListUpdate,
    &kExtraUpdate,
    &kFinisherInformationsUpdate,
});

static_assert(std::int32_t{IA_GUARD_FLAGS} == IA_DOCUMENT_COUNT);

bool IsGuardSet(const AnalyzeContext& context, std::int32_t guard) noexcept {
  if (guard == IA_GUARD_NONE) return true;
  return guard == IA_GUARD_FLAGS ? context.media_type_flags != nullptr
                                 : context.documents[guard].xml != nullptr;
}

std::int32_t RunIfGuarded(const UpdateHandler& update, AnalyzeContext& context,
                          const OptionTarget& target) noexcept {
  return IsGuardSet(context, update.guard) ? update.run(&context, target) : 0;
}

const UpdateHandler* FindUpdate(std::int32_t index) noexcept {
  if (index < 0 || index >= static_cast<std::int32_t>(kUpdateHandlers.size())) return nullptr;
  return kUpdateHandlers[static_cast<std::size_t>(index)];
}

const UpdateOption* FindOption(std::int32_t update, std::int32_t option) noexcept {
  const UpdateHandler* const handler = FindUpdate(update);
  if (handler == nullptr || option < 0) return nullptr;
  const auto index = static_cast<std::size_t>(option);
  return index < handler->options.size() ? &handler->options[index] : nullptr;
}

// The result is that of the last document that had to be loaded. It masks earlier failures on
// purpose: for a printer without a finisher list, for example, the rest of the query still works.
std::int32_t LoadDocuments(AnalyzeContext& context, bool reload) noexcept {
  std::int32_t status = 0;
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) {
    if (reload) UnloadDocument(context, index);
    if (context.documents[index].xml == nullptr) status = LoadDocument(context, index);
  }
  return status;
}

}  // namespace
}  // namespace ia

int32_t Analyze_Info_FromPrinter(AnalyzeContext* context, OptionList* options,
                                 uint8_t reload) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  int32_t status = ia::LoadDocuments(*context, reload != 0);
  for (const ia::UpdateHandler* const update : ia::kUpdateHandlers) {
    if (status != 0) break;
    status = ia::RunIfGuarded(*update, *context, {options, true});
  }
  return status;
}

int32_t Analyze_Provenance_GetUpdate(int32_t update, UpdateSource* source, size_t size) noexcept {
  const ia::UpdateHandler* const handler = ia::FindUpdate(update);
  if (handler == nullptr) return 0;
  const UpdateSource record = {.name = handler->name,
                               .guard = handler->guard,
                               .option_count = static_cast<int32_t>(handler->options.size())};
  return ia::CopyRecord(record, record.option_count, source, size);
}

int32_t Analyze_Provenance_GetOption(int32_t update, int32_t option, OptionSource* source,
                                     size_t size) noexcept {
  const ia::UpdateOption* const found = ia::FindOption(update, option);
  if (found == nullptr) return 0;
  const OptionSource record = {.keyword = found->keyword,
                               .getter = found->getter,
                               .default_value = found->default_value,
                               .family = found->family,
                               .value_input = found->value_input,
                               .input_count = found->inputs.Count()};
  return ia::CopyRecord(record, record.input_count, source, size);
}

int32_t Analyze_Provenance_GetOptionInput(int32_t update, int32_t option, int32_t index) noexcept {
  const ia::UpdateOption* const found = ia::FindOption(update, option);
  return found != nullptr ? found->inputs.At(index) : IA_NO_INPUT;
}

int32_t Analyze_Provenance_RunUpdate(AnalyzeContext* context, int32_t update, uint8_t with_defaults,
                                     OptionList* options) noexcept {
  const ia::UpdateHandler* const handler = ia::FindUpdate(update);
  if (context == nullptr || handler == nullptr || options == nullptr) return -1;
  return ia::RunIfGuarded(*handler, *context, {options, with_defaults != 0});
}
