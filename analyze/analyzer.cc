#include "info_analyze/analyzer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>

#include "analyze/inputs.h"
#include "bidi/device_documents.h"
#include "info_common/option_table.h"
#include "info_common/owned.h"

namespace ia {
namespace {

// Handlers outside the library read these records.
static_assert(std::is_standard_layout_v<AnalyzeContext>);
constexpr std::size_t kWord = sizeof(void*);
static_assert(sizeof(XmlData) == 2 * kWord);
static_assert(offsetof(AnalyzeContext, bidi) == 0);
static_assert(offsetof(AnalyzeContext, queue_name) == 1 * kWord);
static_assert(offsetof(AnalyzeContext, xml_folder) == 2 * kWord);
static_assert(offsetof(AnalyzeContext, driver_name) == 3 * kWord);
static_assert(offsetof(AnalyzeContext, documents) == 4 * kWord);
static_assert(offsetof(AnalyzeContext, media_type_flags) == 22 * kWord);
static_assert(offsetof(AnalyzeContext, input_tray_flags) == 23 * kWord);
static_assert(offsetof(AnalyzeContext, slot_media_info_flags) == 24 * kWord);
static_assert(offsetof(AnalyzeContext, src_option_flags) == 25 * kWord);
static_assert(offsetof(AnalyzeContext, finisher_name_flags) == 26 * kWord);
static_assert(offsetof(AnalyzeContext, ppd_options) == 27 * kWord);
static_assert(offsetof(AnalyzeContext, is_ppd_cache) == 28 * kWord);

constexpr std::int32_t kFlagCapacity = 1024;

struct FlagKey {
  Input input;
  FlagInfo* AnalyzeContext::* store;
};

// In the order in which the stores are filled: the last one determines whether the call succeeds.
constexpr auto kFlagKeys = std::to_array<FlagKey>({
    {Input::kMediaTypeFlags, &AnalyzeContext::media_type_flags},
    {Input::kSlotMediaFlags, &AnalyzeContext::slot_media_info_flags},
    {Input::kInputTrayFlags, &AnalyzeContext::input_tray_flags},
    {Input::kFinisherNameFlags, &AnalyzeContext::finisher_name_flags},
    {Input::kSourceOptionFlags, &AnalyzeContext::src_option_flags},
});

struct AnalyzerDeleter {
  void operator()(AnalyzeContext* context) const noexcept { Analyze_Destroy(context); }
};

std::int32_t FillFlagStores(AnalyzeContext& context) noexcept {
  std::int32_t status = 0;
  for (const FlagKey& flag : kFlagKeys) {
    FlagInfo* const store = zflaginfo_init(KeyOf(flag.input).key, kFlagCapacity);
    context.*flag.store = store;
    // A store that cannot be allocated is not a failure, and a later success masks a failure:
    // callers depend on getting an analyser, even without its flags.
    if (store == nullptr) continue;
    status = zflaginfo_getflags(context.ppd_options, KeyOf(flag.input).key, store);
  }
  return status;
}

// False when an allocation fails; a PPD without a model code is valid.
bool CopyDriverName(AnalyzeContext& context) noexcept {
  const char* const name = FindValue(context.ppd_options, KeyOf(Input::kModelCode).key);
  if (name == nullptr) return true;
  context.driver_name = Duplicate(name).release();
  return context.driver_name != nullptr;
}

}  // namespace
}  // namespace ia

AnalyzeContext* Analyze_Create(BidiContext* bidi, const char* queue_name,
                               const char* xml_folder) noexcept {
  if (bidi == nullptr || queue_name == nullptr) return nullptr;
  std::unique_ptr<AnalyzeContext, ia::AnalyzerDeleter> context(
      ia::NewZeroed<AnalyzeContext>().release());
  if (!context) return nullptr;
  context->bidi = bidi;
  context->xml_folder = xml_folder;
  context->queue_name = ia::Duplicate(queue_name).release();
  context->is_ppd_cache = static_cast<uint8_t>(info_common_is_ppd_cache());
  if (context->queue_name == nullptr) return nullptr;
  context->ppd_options = info_common_optlist_create(queue_name);
  if (context->ppd_options == nullptr) return nullptr;
  if (ia::FillFlagStores(*context) != 0 || !ia::CopyDriverName(*context)) return nullptr;
  return context.release();
}

void Analyze_Destroy(AnalyzeContext* context) noexcept {
  if (context == nullptr) return;
  ia::FreeTable(context->ppd_options);
  ia::UnloadDocuments(*context);
  for (const ia::FlagKey& flag : ia::kFlagKeys) zflaginfo_term(context->*flag.store);
  std::free(context->driver_name);
  std::free(context->queue_name);
  std::free(context);
}
