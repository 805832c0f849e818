#include "tests/analyze/intercepted_calls.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "info_analyze/device_documents.h"
#include "info_analyze/option_list.h"

// Of a wrapped function calls go to __wrap_NAME, and __real_NAME is the function itself.
#define IA_WRAPPED(name) __asm__("__wrap_" #name)
#define IA_REAL(name) __asm__("__real_" #name)

namespace ia_test {
namespace {

std::int32_t Answer(FlagSetting& setting, FlagSetting::Call call) {
  const std::size_t place = setting.calls.size();
  setting.calls.push_back(std::move(call));
  return place < setting.results.size() ? setting.results[place] : 0;
}

bool IsEmpty(const OptionSetter& row) {
  return row.keyword == nullptr && row.value == nullptr && row.getter == nullptr &&
         row.getter_arg == nullptr && row.default_value == nullptr;
}

}  // namespace
}  // namespace ia_test

using ia_test::FinisherMapping;
using ia_test::FlagSetting;
using ia_test::FlagStores;
using ia_test::InputMapping;
using ia_test::ListReads;

extern "C" {

std::int32_t RealRead(AnalyzeContext*, const XmlKeyDescriptor*, std::int32_t, std::int32_t)
    IA_REAL(analyze_common_readxml_for_list);
std::int32_t WrappedRead(AnalyzeContext*, const XmlKeyDescriptor*, std::int32_t, std::int32_t)
    IA_WRAPPED(analyze_common_readxml_for_list);

std::int32_t WrappedRead(AnalyzeContext* context, const XmlKeyDescriptor* descriptors,
                         std::int32_t count, std::int32_t item) {
  const std::int32_t result = RealRead(context, descriptors, count, item);
  if (ListReads::active == nullptr) return result;
  const ListReads::Item read(static_cast<std::int32_t>(descriptors->document), item);
  ListReads::active->reads.push_back(read);
  const auto scripted = ListReads::active->results.find(read);
  return scripted != ListReads::active->results.end() ? scripted->second : result;
}

void RealInputOptions(AnalyzeContext*, const TrayEntry*, std::int32_t, std::int32_t, OptionSetter*,
                      std::int32_t*) IA_REAL(analyze_GetInputOptions);
void WrappedInputOptions(AnalyzeContext*, const TrayEntry*, std::int32_t, std::int32_t,
                         OptionSetter*, std::int32_t*) IA_WRAPPED(analyze_GetInputOptions);

void WrappedInputOptions(AnalyzeContext* context, const TrayEntry* trays, std::int32_t tray_count,
                         std::int32_t extra_trays, OptionSetter* rows, std::int32_t* row_count) {
  InputMapping* const mapping = InputMapping::active;
  if (mapping == nullptr) {
    RealInputOptions(context, trays, tray_count, extra_trays, rows, row_count);
    return;
  }
  InputMapping::Call call{context, {}, extra_trays, *row_count, false};
  for (const TrayEntry* tray = trays; tray != trays + tray_count; ++tray) {
    call.trays.push_back({tray->type, tray->alias, tray->capacity, tray->medium_type});
  }
  call.has_empty_rows = std::all_of(rows, rows + tray_count + 3, ia_test::IsEmpty);
  mapping->calls.push_back(std::move(call));
  if (mapping->answer) mapping->answer(rows, row_count);
}

void RealFinisherOption(AnalyzeContext*, const FinisherEntry*, std::int32_t, const std::int32_t*,
                        std::int32_t, OptionSetter*) IA_REAL(analyze_GetFinisherOption);
void WrappedFinisherOption(AnalyzeContext*, const FinisherEntry*, std::int32_t, const std::int32_t*,
                           std::int32_t, OptionSetter*) IA_WRAPPED(analyze_GetFinisherOption);

void WrappedFinisherOption(AnalyzeContext* context, const FinisherEntry* finishers,
                           std::int32_t finisher_count, const std::int32_t* aliases,
                           std::int32_t alias_count, OptionSetter* rows) {
  FinisherMapping* const mapping = FinisherMapping::active;
  if (mapping == nullptr) {
    RealFinisherOption(context, finishers, finisher_count, aliases, alias_count, rows);
    return;
  }
  FinisherMapping::Call call{context, {}, {aliases, aliases + alias_count}};
  for (const FinisherEntry* unit = finishers; unit != finishers + finisher_count; ++unit) {
    call.finishers.push_back({unit->binnum, std::nullopt});
    if (unit->name != nullptr) call.finishers.back().name = unit->name;
  }
  mapping->calls.push_back(std::move(call));
  if (mapping->answer) mapping->answer(rows);
}

std::int32_t RealSetFlag(const OptTable*, const char*, const char*, OptionList*)
    IA_REAL(OptionList_Set_FlagValue);
std::int32_t WrappedSetFlag(const OptTable*, const char*, const char*, OptionList*)
    IA_WRAPPED(OptionList_Set_FlagValue);

std::int32_t WrappedSetFlag(const OptTable* source, const char* base, const char* text,
                            OptionList* target) {
  FlagSetting* const setting = FlagSetting::active;
  if (setting == nullptr) return RealSetFlag(source, base, text, target);
  return ia_test::Answer(*setting, {source, base, text, target});
}

std::int32_t RealSetItems(const char*, OptionList*) IA_REAL(OptionList_Set_ArrrayFlagValue);
std::int32_t WrappedSetItems(const char*, OptionList*) IA_WRAPPED(OptionList_Set_ArrrayFlagValue);

std::int32_t WrappedSetItems(const char* text, OptionList* target) {
  FlagSetting* const setting = FlagSetting::active;
  if (setting == nullptr) return RealSetItems(text, target);
  return ia_test::Answer(*setting, {nullptr, std::nullopt, text, target});
}

FlagInfo* RealMakeStore(const char*, std::int32_t) IA_REAL(zflaginfo_init);
FlagInfo* WrappedMakeStore(const char*, std::int32_t) IA_WRAPPED(zflaginfo_init);

FlagInfo* WrappedMakeStore(const char* key, std::int32_t capacity) {
  const FlagStores* const stores = FlagStores::active;
  if (stores != nullptr && stores->not_made.contains(key)) return nullptr;
  return RealMakeStore(key, capacity);
}

std::int32_t RealFillStore(OptTable*, const char*, FlagInfo*) IA_REAL(zflaginfo_getflags);
std::int32_t WrappedFillStore(OptTable*, const char*, FlagInfo*) IA_WRAPPED(zflaginfo_getflags);

std::int32_t WrappedFillStore(OptTable* table, const char* key, FlagInfo* store) {
  const std::int32_t result = RealFillStore(table, key, store);
  const FlagStores* const stores = FlagStores::active;
  if (stores == nullptr || !stores->results.contains(key)) return result;
  return stores->results.at(key);
}

}  // extern "C"
