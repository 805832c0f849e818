#include "tests/integration/allocation_scenarios.h"

#include <cups/file.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "info_analyze/info_analyze.h"
#include "tests/integration/sample_setting.h"
#include "tests/support/print_queues.h"

namespace ia_test {
namespace {

CallFaults& Faults() { return CallFaults::Instance(); }

// Option table.

void ReadsPpd(Round& round) {
  OptTable* table = round.Try([] { return info_common_optlist_create(kQueue); });
  round.Expect(Shown(table) == kPpdTable, table == nullptr, Shown(table));
  info_common_optlist_destroy(table);
}

// More keys than the index of a table has room for at first.
void ReadsLargePpd(Round& round) {
  std::string ppd;
  std::string entries;
  for (int i = 0; i < 300; ++i) {
    const std::string key = "QVKey" + std::to_string(i);
    ppd += "*" + key + ": \"old\"\n";
    entries.insert(0, key + (i == 17 ? "=new\n" : "=old\n"));
  }
  PrintQueues::Get().Add("large", ppd + "*QVKEY17: \"other\"\n*QVKey17: \"new\"\n*QVKe: \"x\"\n");
  OptTable* table = round.Try([] { return info_common_optlist_create("large"); });
  round.Expect(Shown(table) == "QVKEY17=new\n" + entries, table == nullptr, Shown(table));
  info_common_optlist_destroy(table);
}

void OpensPpd(Round& round) {
  char untouched[] = "untouched";
  char* path = untouched;
  int error = 0;
  cups_file_t* file = round.Try([&] {
    cups_file_t* opened = wrapCupsFileOpen2(kQueue, "r", &path);
    error = errno;
    return opened;
  });
  const bool is_documented_failure = file == nullptr && path == untouched && error == ENOMEM;
  round.Expect(file != nullptr && path != untouched, is_documented_failure,
               std::string(path) + ", error " + std::to_string(error));
  wrapCupsFileClose2(file, path);
  if (path != untouched) Faults().Release(path);
}

void GetsValue(Round& round) {
  const CallersList list;
  ExpectText(round, round.Try([&] { return info_common_optlist_getvalue(list.head(), "START"); }),
             "0");
}

// A table with case variants, whose values change together; a value that cannot be copied stays.
void ChangesValues(Round& round) {
  CallersList list;
  info_common_optlist_additem_front(list.address(), "start", "1");
  round.Try([&] { return info_common_optlist_changevalue(list.head(), "Start", "2"), 0; });
  const std::string answer = Shown(list.head());
  round.Expect(answer == "start=2\nStart=2\n",
               answer == "start=1\nStart=0\n" || answer == "start=2\nStart=0\n" ||
                   answer == "start=1\nStart=2\n",
               answer);
}

using Adding = void (*)(CallersList& list, const char* key, const char* value);

void ExpectAdded(Round& round, Adding add, const char* key, const std::string& right) {
  CallersList list;
  const std::string before = Shown(list.head());
  round.Try([&] { return add(list, key, "new"), 0; });
  const std::string answer = Shown(list.head());
  round.Expect(answer == right, answer == before, answer);
}

void AddToBack(CallersList& list, const char* key, const char* value) {
  info_common_optlist_additem_back(list.head(), key, value);
}
void AddToFront(CallersList& list, const char* key, const char* value) {
  info_common_optlist_additem_front(list.address(), key, value);
}
void AddOption(CallersList& list, const char* key, const char* value) {
  OptionList_Add(list.head(), key, value);
}

void AddsToBack(Round& round) { ExpectAdded(round, AddToBack, "Key", "Start=0\nKey=new\n"); }
void AddsToFront(Round& round) { ExpectAdded(round, AddToFront, "Key", "Key=new\nStart=0\n"); }
void AddsOption(Round& round) { ExpectAdded(round, AddOption, "Key", "Start=0\nKey=new\n"); }
void AddsKnownToBack(Round& round) { ExpectAdded(round, AddToBack, "Start", "Start=new\n"); }
void AddsKnownToFront(Round& round) { ExpectAdded(round, AddToFront, "Start", "Start=new\n"); }
void AddsKnownOption(Round& round) { ExpectAdded(round, AddOption, "Start", "Start=new\n"); }

void StartsTable(Round& round) {
  OptTable* table = nullptr;
  round.Try([&] { return info_common_optlist_additem_front(&table, "Key", "new"), 0; });
  round.Expect(Shown(table) == "Key=new\n", table == nullptr, Shown(table));
  info_common_optlist_destroy(table);
}

// Numbers.

std::string Numbers(const LongValList* list) {
  std::string shown;
  for (; list != nullptr; list = list->next) shown += std::to_string(list->value) + " ";
  return shown;
}

void ExpectNumbers(Round& round, LongValList* list, const std::string& right) {
  round.Expect(Numbers(list) == right, list == nullptr, Numbers(list));
  info_common_long_val_list_free(list);
}

void AddsNumber(Round& round) {
  LongValList* list = info_common_long_val_list_add(nullptr, 7);
  list = info_common_long_val_list_add(list, 3);
  ExpectNumbers(round, round.Try([&] { return info_common_long_val_list_add(list, 5); }), "3 5 7 ");
}

void ConvertsNumbers(Round& round) {
  ExpectNumbers(round, round.Try([] {
    return info_common_convert_hex_string_to_long_val_list(",,1F,0A,,0a");
  }),
                "10 10 31 ");
}

// Option lists and flag keys.

void GetsOption(Round& round) {
  const CallersList list;
  char* value = nullptr;
  const int32_t found = round.Try([&] { return OptionList_Get(list.head(), "start", &value); });
  const std::string answer = Take(value);
  round.Expect(found == 1 && answer == "0", found == 0 && answer == "(none)",
               std::to_string(found) + " " + answer);
}

void CreatesFirstFlagKey(Round& round) {
  ExpectText(round,
             round.Try([] { return z_create_flag_key_fom_option_list(nullptr, nullptr, "Flag"); }),
             "Flag");
}

void CreatesNextFlagKey(Round& round) {
  CallersList list;
  OptionList_Add(list.head(), "Flag_9", "");
  ExpectText(round, round.Try([&] {
    return z_create_flag_key_fom_option_list(nullptr, list.head(), "Flag");
  }),
             "Flag_10");
}

// A failed allocation is reported, and the items before it are kept.
void ExpectItems(Round& round, int32_t status, const CallersList& list, const std::string& right) {
  const std::string answer = list.Added();
  round.Expect(status == 0 && answer == right,
               status == -1 && right.starts_with(answer) && answer != right,
               std::to_string(status) + "\n" + answer);
}

void SetsFlagValues(Round& round) {
  const CallersList list;
  const int32_t status = round.Try(
      [&] { return OptionList_Set_FlagValue(list.head(), "Flag", "A1,B2_C3", list.head()); });
  ExpectItems(round, status, list, "Flag=A1\nFlag_1=B2\nFlag_2=C3\n");
}

void SetsArrayFlagValues(Round& round) {
  const CallersList list;
  const int32_t status =
      round.Try([&] { return OptionList_Set_ArrrayFlagValue("K1:On_K2:Off,K3", list.head()); });
  ExpectItems(round, status, list, "K1=On\nK2=Off\nK3=\n");
}

// Formatting.

using Formatting = int32_t (*)(char* destination, const char* format, ...);

void ExpectFormatted(Round& round, Formatting format, std::size_t length) {
  const std::string text(length, 'x');
  std::vector<char> destination(length + 1, '#');
  const int32_t answer = round.Try([&] { return format(destination.data(), "%s", text.c_str()); });
  const bool is_untouched = destination == std::vector<char>(length + 1, '#');
  round.Expect(answer == static_cast<int32_t>(length) && text == destination.data(),
               answer == -1 && is_untouched, std::to_string(answer));
}

void Formats(Round& round) { ExpectFormatted(round, util_sprintf, 127); }
void FormatsLong(Round& round) { ExpectFormatted(round, util_sprintf, 600); }
void FormatsForQueues(Round& round) { ExpectFormatted(round, tb_util_sprintf, 127); }
void FormatsLongForQueues(Round& round) { ExpectFormatted(round, tb_util_sprintf, 600); }

// Flag stores.

void MakesStore(Round& round) {
  FlagInfo* store = round.Try([] { return zflaginfo_init("Key", 1024); });
  round.Expect(store != nullptr && store->count == 0 && store->capacity == 1024, store == nullptr,
               Shown(store));
  zflaginfo_term(store);
}

// The flags before the one that ran out of memory are kept; the last "Plain" may have come too
// late.
void ParsesFlags(Round& round) {
  FlagInfo* store = zflaginfo_init("Key", 8);
  const int32_t status = round.Try([&] { return zflaginfo_get(kFlags, store); });
  const std::string answer = Shown(store);
  const bool is_prefix = std::string_view("Plain=1\nThick=2\n").starts_with(answer);
  round.Expect(status == 0 && answer == "Plain=3\nThick=2\n", status == -1 && is_prefix,
               std::to_string(status) + "\n" + answer);
  zflaginfo_term(store);
}

// The result is that of the last text; flags of an earlier one may be lost unseen.
void ParsesFlagsOfTable(Round& round) {
  CallersList list;
  OptionList_Add(list.head(), "Flags", "A:1,B:2");
  OptionList_Add(list.head(), "Flags_2", "B:3,C:4");
  FlagInfo* store = zflaginfo_init("Flags", 8);
  const int32_t status = round.Try([&] { return zflaginfo_getflags(list.head(), "Flags", store); });
  const std::string answer = Shown(store);
  const bool has_last_text = answer.ends_with("B=3\nC=4\n");
  const bool is_part = IsSomeOf(answer, "A=1\nB=2\nC=4\n") || IsSomeOf(answer, "A=1\nB=3\nC=4\n");
  round.Expect(status == 0 && answer == "A=1\nB=3\nC=4\n",
               status == 0 ? has_last_text && is_part : status == -1 && is_part,
               std::to_string(status) + "\n" + answer);
  zflaginfo_term(store);
}

}  // namespace

std::span<const Scenario> ListScenarios() {
  static const auto scenarios = std::to_array<Scenario>({
      {"ReadsPpd", ReadsPpd},
      {"ReadsLargePpd", ReadsLargePpd},
      {"OpensPpd", OpensPpd},
      {"GetsValue", GetsValue},
      {"ChangesValues", ChangesValues},
      {"AddsToBack", AddsToBack},
      {"AddsToFront", AddsToFront},
      {"AddsOption", AddsOption},
      {"AddsKnownToBack", AddsKnownToBack},
      {"AddsKnownToFront", AddsKnownToFront},
      {"AddsKnownOption", AddsKnownOption},
      {"StartsTable", StartsTable},
      {"AddsNumber", AddsNumber},
      {"ConvertsNumbers", ConvertsNumbers},
      {"GetsOption", GetsOption},
      {"CreatesFirstFlagKey", CreatesFirstFlagKey},
      {"CreatesNextFlagKey", CreatesNextFlagKey},
      {"SetsFlagValues", SetsFlagValues},
      {"SetsArrayFlagValues", SetsArrayFlagValues},
      {"Formats", Formats},
      {"FormatsLong", FormatsLong},
      {"FormatsForQueues", FormatsForQueues},
      {"FormatsLongForQueues", FormatsLongForQueues},
      {"MakesStore", MakesStore},
      {"ParsesFlags", ParsesFlags},
      {"ParsesFlagsOfTable", ParsesFlagsOfTable},
  });
  return scenarios;
}

}  // namespace ia_test
