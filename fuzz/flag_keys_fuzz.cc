// Any indexed flag keys. Lines: base key, highest index, text to set, then "key=value" entries of
// the list that is searched.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "fuzz/input.h"
#include "info_analyze/option_list.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/table_model.h"

namespace {

using ia_fuzz::Require;
using ia_test::Entries;
using ia_test::ExactText;
using ia_test::Table;

constexpr std::size_t kLongest = 512;  // each key that is set is found by walking both lists

// A list as callers make it, to be appended to.
Entries CallersEntries() { return {ia_test::Entry("", "")}; }

bool Contains(std::string_view key, std::string_view base) {
  for (std::size_t at = 0; at + base.size() <= key.size(); ++at) {
    if (ia_test::EqualIgnoringCase(key.substr(at, base.size()), base)) return true;
  }
  return false;
}

Entries EntriesIn(ia_fuzz::Input& input) {
  Entries entries;
  while (!input.IsEmpty()) {
    const std::string_view line = input.TakeText();
    const std::size_t equals = std::min(line.find('='), line.size());
    entries.emplace_back(line.substr(0, equals), line.substr(std::min(equals + 1, line.size())));
  }
  return entries;
}

void CompareValues(OptTable* list, const Entries& entries, const std::string& base,
                   std::int32_t highest) {
  const auto exact_base = ExactText(base);
  OptTable* cursor = list;
  char* value = nullptr;
  for (const auto& [key, expected] : entries) {
    if (!Contains(key, base)) continue;
    const std::string suffix = key.substr(base.size());
    if (!suffix.empty() && ia_fuzz::NumberOf(suffix.substr(1)) > highest) continue;
    Require(OptionList_Get_FlagValue(&cursor, exact_base.get(), highest, &value) == 1);
    Require(value == expected);
  }
  Require(OptionList_Get_FlagValue(&cursor, exact_base.get(), highest, &value) == 0);
  Require(value == nullptr && cursor == nullptr);
}

std::string NextKey(const Entries& first, const Entries& second, const std::string& base) {
  std::int64_t next = 0;
  for (const Entries* entries : {&first, &second}) {
    for (const auto& [key, value] : *entries) {
      if (!Contains(key, base)) continue;
      const std::size_t separator = key.find('_', base.size());
      const std::int64_t above =
          separator != key.npos ? std::int64_t{ia_fuzz::NumberOf(key.substr(separator + 1))} + 1
                                : 1;
      next = std::max(next, above);
    }
  }
  next = std::min<std::int64_t>(next, std::numeric_limits<std::int32_t>::max());
  return next == 0 ? base : base + "_" + std::to_string(next);
}

template <class Take>
void ForEachItem(std::string_view text, Take take) {
  while (!text.empty()) {
    const std::string_view item = text.substr(0, text.find_first_of(",_"));
    text.remove_prefix(std::min(item.size() + 1, text.size()));
    if (!item.empty()) take(item);
  }
}

void CompareIndexed(const OptTable* list, const Entries& entries, const std::string& base,
                    const std::string& text) {
  const Table target = ia_test::MakeTable(CallersEntries());
  Require(OptionList_Set_FlagValue(list, ExactText(base).get(), ExactText(text).get(),
                                   target.get()) == 0);
  ia_test::TableModel expected(CallersEntries());
  ForEachItem(text, [&](std::string_view item) {
    // No list to search: nothing is set.
    if (list != nullptr) {
      expected.AddBack(NextKey(entries, expected.entries(), base), std::string(item));
    }
  });
  Require(ia_test::EntriesOf(target.get()) == expected.entries());
}

void CompareItems(const std::string& text) {
  const Table target = ia_test::MakeTable(CallersEntries());
  Require(OptionList_Set_ArrrayFlagValue(ExactText(text).get(), target.get()) == 0);
  ia_test::TableModel expected(CallersEntries());
  ForEachItem(text, [&](std::string_view item) {
    const std::size_t name = item.find_first_not_of(':');
    if (name == item.npos) return;
    const std::size_t colon = std::min(item.find(':', name), item.size());
    expected.AddBack(std::string(item.substr(0, colon)),
                     std::string(item.substr(std::min(colon + 1, item.size()))));
  });
  Require(ia_test::EntriesOf(target.get()) == expected.entries());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ia_fuzz::Input input(data, std::min(size, kLongest));
  const std::string base(input.TakeText());
  const std::int32_t highest = input.TakeNumber();
  const std::string text(input.TakeText());
  const Entries entries = EntriesIn(input);
  const Table list = ia_test::MakeTable(entries);
  CompareValues(list.get(), entries, base, highest);
  CompareIndexed(list.get(), entries, base, text);
  CompareItems(text);
  return 0;
}
