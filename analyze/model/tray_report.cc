#include "analyze/model/tray_report.h"

#include <algorithm>
#include <cstddef>

#include "info_common/ascii.h"

static_assert(sizeof(TrayEntry) == 4 * sizeof(int32_t));
static_assert(offsetof(TrayEntry, alias) == 1 * sizeof(int32_t));
static_assert(offsetof(TrayEntry, capacity) == 2 * sizeof(int32_t));
static_assert(offsetof(TrayEntry, medium_type) == 3 * sizeof(int32_t));

namespace ia {

const TrayEntry* TrayReport::FindAlias(std::int32_t alias) const noexcept {
  const auto count = static_cast<std::int32_t>(trays.size());
  const std::int32_t index = zFindTrayByAlias(trays.data(), count, alias);
  return index >= 0 ? &trays[static_cast<std::size_t>(index)] : nullptr;
}

bool IsComplete(const InputArguments& arguments) noexcept {
  return arguments.context != nullptr && arguments.trays != nullptr && arguments.rows != nullptr &&
         arguments.row_count != nullptr && *arguments.row_count >= 0;
}

TrayReport ReportOf(const InputArguments& arguments) noexcept {
  const auto count = static_cast<std::size_t>(std::max(arguments.tray_count, 0));
  return {*arguments.context, {arguments.trays, count}, arguments.extra_tray_count};
}

void AppendRow(const InputArguments& arguments, OptionName option, CString value) noexcept {
  CString keyword = Duplicate(option.keyword);
  if (!keyword) value.reset();
  arguments.rows[(*arguments.row_count)++] = {keyword.release(), value.release(), nullptr, nullptr,
                                              option.default_value};
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
