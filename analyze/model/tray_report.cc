#include "analyze/model/tray_report.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "info_common/ascii.h"

static_assert(sizeof(TrayEntry) == 4 * sizeof(int32_t));
static_assert(offsetof(TrayEntry, alias) == 1 * sizeof(int32_t));
static_assert(offsetof(TrayEntry, capacity) == 2 * sizeof(int32_t));
static_assert(offsetof(TrayEntry, medium_type) == 3 * sizeof(int32_t));

namespace ia {

const TrayEntry* TrayReport::FindAlias(std::int32_t alias) const noexcept {
  const auto hit = std::ranges::find(trays, alias, &TrayEntry::alias);
  return hit != trays.end() ? &*hit : nullptr;
}

bool IsComplete(const InputCall& call) noexcept {
  return call.context != nullptr && call.trays != nullptr && call.rows != nullptr &&
         call.row_count != nullptr && *call.row_count >= 0;
}

TrayReport ReportOf(const InputCall& call) noexcept {
  const auto count = static_cast<std::size_t>(std::max(call.tray_count, 0));
  return {*call.context, {call.trays, count}, call.extra_tray_count};
}

void AppendRow(const InputCall& call, OptionName option, CString value) noexcept {
  CString keyword = Duplicate(option.keyword);
  if (!keyword) value.reset();
  call.rows[(*call.row_count)++] = {.keyword = keyword.release(),
                                    .value = value.release(),
                                    .getter = nullptr,
                                    .getter_arg = nullptr,
                                    .default_value = option.default_value};
}

std::int32_t AppendDecided(const InputCall& call, OptionName option,
                           const char* (*decide)(const TrayReport&) noexcept) noexcept {
  if (!IsComplete(call)) return -1;
  AppendRow(call, option, CopyOf(decide(ReportOf(call))));
  return 0;
}

std::span<const FlagPair> FlagsOf(const FlagInfo* store) noexcept {
  if (store == nullptr || store->count < 1) return {};
  return {store->entries, static_cast<std::size_t>(store->count)};
}

bool HasNumber(const FlagPair& flag, std::int32_t number) noexcept {
  return flag.value != nullptr && ParseInt32(flag.value, 10) == number;
}

}  // namespace ia

int32_t zFindTrayByAlias(const TrayEntry* trays, int32_t count, int32_t alias) noexcept {
  if (trays == nullptr || count < 1) return -1;
  const TrayEntry* const end = trays + count;
  const TrayEntry* const hit = std::ranges::find(trays, end, alias, &TrayEntry::alias);
  return hit != end ? static_cast<int32_t>(hit - trays) : -1;
}
