#include "cli/provenance/known_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/provenance/provenance.h"
#include "info_analyze/device_documents.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

// Numbers and texts in the rules of update handlers and models. Of a limit, the numbers on both
// sides.
struct KnownByRules {
  std::int32_t document;
  std::string_view key;
  std::vector<Json> values;
};

[[nodiscard]] const std::vector<Json>& Modes() {
  static const std::vector<Json> modes = {"mode1", "mode2", "mode4"};
  return modes;
}

[[nodiscard]] const std::vector<Json>& Units() {
  static const std::vector<Json> units = {
      "Vorel 3 Way Unit-D1",
      "Vorel 3 Way Unit-D2",
      "Vorel Booklet Finisher-D1",
      "Vorel Booklet Finisher-K1 PRO",
      "Vorel Booklet Finisher-P1",
      "Vorel Booklet Finisher-R1",
      "Vorel Booklet Finisher-S1",
      "Vorel Booklet Finisher-U1",
      "Vorel Booklet Finisher-W1",
      "Vorel Booklet Finisher-Z1",
      "Vorel Finisher-A1",
      "Vorel Finisher-C1",
      "Vorel Finisher-Q1",
      "Vorel Finisher-T1",
      "Vorel Finisher-U1/U3",
      "Vorel Finisher-U3",
      "Vorel Finisher-UH1",
      "Vorel Inner 2 Way Tray-S1",
      "Vorel Inner 2Way Tray-B1",
      "Vorel Inner 2Way Tray-R1",
      "Vorel Inner 2way Tray",
      "Vorel Inner 2way Tray-N1",
      "Vorel Inner Finisher-F1",
      "Vorel Inner Finisher-W1",
      "Vorel Inner Shift Sorter-D1",
      "Vorel Multi Function Professional Puncher-D1",
      "Vorel Professional Puncher-B1",
      "Vorel Professional Puncher-E1",
      "Vorel Saddle Finisher-C2",
      "Vorel Saddle Finisher-HB2",
      "Vorel Saddle Finisher-T2",
      "Vorel Saddle Finisher-TC2",
      "Vorel Saddle Finisher-U2/U4",
      "Vorel Saddle Finisher-U4",
      "Vorel Saddle Finisher-UH2",
      "Vorel Saddle Finisher-W3",
      "Vorel Saddle Finisher-W4",
      "Vorel Saddle Finisher-WE2",
      "Vorel Saddle Finisher-WM2",
      "Vorel Saddle Finisher-X2",
      "Vorel Saddle Finisher-X2/X2L",
      "Vorel Saddle Finisher-XU2",
      "Vorel Staple Finisher-D1",
      "Vorel Staple Finisher-P1",
      "Vorel Staple Finisher-R1",
      "Vorel Staple Finisher-S1",
      "Vorel Staple Finisher-U1",
      "Vorel Staple Finisher-W1",
      "Vorel Staple Finisher-Z1",
  };
  return units;
}

[[nodiscard]] const std::vector<KnownByRules>& RowsOfRules() {
  static const std::vector<KnownByRules> rows = {
      {IA_DOCUMENT_FUNCTIONS, "authentication_user", Modes()},
      {IA_DOCUMENT_FUNCTIONS, "authentication_job_password", Modes()},
      {IA_DOCUMENT_FUNCTIONS, "authentication_f_code", Modes()},
      {IA_DOCUMENT_SPECID, "platform_name", {"NCPP"}},
      {IA_DOCUMENT_FINISHER_LIST, "type", {12, 15, 18}},
      {IA_DOCUMENT_FINISHER_LIST, "binnum", {1, 2, 3, 4}},
      {IA_DOCUMENT_FINISHER_LIST, "func", {"staple", "punch", "folding", "trimming", "inserter"}},
      {IA_DOCUMENT_FINISHER_LIST,
       "detail_func",
       {"punching_2", "punching_2_holes", "punching_2or3_holes", "punching_3_holes",
        "punching_French_4_holes", "punching_Swedish_4_holes", "punching_multiple_holes",
        "inserting_multiple_sheet", "trimming_3_direction"}},
      {IA_DOCUMENT_FINISHER_LIST, "name", Units()},
      {IA_DOCUMENT_BIN_LIST, "number", {3}},
      {IA_DOCUMENT_BIN_LIST, "alias", {101, 102, 119, 121}},
      {IA_DOCUMENT_TRAY_LIST, "list", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
      {IA_DOCUMENT_TRAY_LIST, "type", {3, 6}},
      {IA_DOCUMENT_TRAY_LIST,
       "alias",
       {6, 7, 101, 102, 121, 122, 123, 124, 161, 162, 164, 167, 196, 198}},
      {IA_DOCUMENT_TRAY_LIST, "capacity", {1999, 2000}},
      {IA_DOCUMENT_FAX_LINE_LIST, "list", {0, 1, 2, 3, 4}},
      {IA_DOCUMENT_FAX_LINE_LIST, "type", {2, 3}},
      {IA_DOCUMENT_FAX_LINE_LIST, "id_support", {18, 19, 20, 21}},
      {IA_DOCUMENT_FAX_LINE_LIST, "communication_mode", {16, 17, 18, 69, 144, 145, 146, 197}},
      {IA_DOCUMENT_DEVICENAME, "devicename", {"HZL-A", "HZL-B/HZL-C"}},
  };
  return rows;
}

// Lists of the PPD that a reported value is looked up in.
struct Lookup {
  std::int32_t document;
  std::string_view key;
  FlagInfo* AnalyzeContext::* store;
  bool by_name;  // the value begins with an item's name; else it is the number that an item has
  std::string_view list;
};
constexpr auto kLookups = std::to_array<Lookup>({
    {IA_DOCUMENT_FINISHER_LIST, "name", &AnalyzeContext::finisher_name_flags, true,
     "QVAnlz_FinisherName"},
    {IA_DOCUMENT_TRAY_LIST, "alias", &AnalyzeContext::input_tray_flags, false, "QVAnlz_InputTray"},
    {IA_DOCUMENT_TRAY_LIST, "alias", &AnalyzeContext::src_option_flags, false, "QVAnlz_SrcOption"},
    {IA_DOCUMENT_TRAY_LIST, "medium_type", &AnalyzeContext::media_type_flags, false,
     "QV_Prot_MediaType"},
});

// Lists of numbers to which a reported number is rounded down.
struct ValueList {
  std::int32_t document;
  std::string_view key;
  std::string_view list;
};
constexpr auto kValueLists = std::to_array<ValueList>({
    {IA_DOCUMENT_SPECID, "version", "QVValueListSpecID"},
    {IA_DOCUMENT_SPECID, "platform_version", "QVValueListPlatformVersion"},
});

template <class Row>
[[nodiscard]] bool IsRowOf(const Row& row, const InputKey& input) {
  return row.document == input.document && row.key == input.key;
}

void AddLookups(const AnalyzeContext& analyzer, const Lookup& lookup, std::vector<Json>& values) {
  const FlagInfo* const store = analyzer.*lookup.store;
  if (store == nullptr) return;
  for (std::int32_t i = 0; i < store->count; ++i) {
    const FlagPair& pair = store->entries[i];
    if (pair.name == nullptr || pair.value == nullptr) continue;
    if (lookup.by_name) {
      values.emplace_back(pair.name);
    } else {
      values.emplace_back(static_cast<std::int32_t>(std::strtol(pair.value, nullptr, 10)));
    }
  }
}

void AddValueList(const AnalyzeContext& analyzer, std::string_view list,
                  std::vector<Json>& values) {
  for (const OptTable* node = analyzer.ppd_options; node != nullptr; node = node->next) {
    if (list != node->key) continue;
    const std::string_view text = node->value;
    for (std::size_t i = 0; i < text.size();) {
      std::int32_t number = 0;
      const auto [end, error] =
          std::from_chars(text.data() + i, text.data() + text.size(), number, 16);
      const auto parsed = static_cast<std::size_t>(end - text.data());
      if (end != text.data() + i) values.emplace_back(number);
      i = std::max(parsed, i + 1);
    }
  }
}

}  // namespace

std::vector<Json> ValuesInLists(const AnalyzeContext& analyzer, const InputKey& input) {
  std::vector<Json> values;
  for (const Lookup& lookup : kLookups) {
    if (IsRowOf(lookup, input)) AddLookups(analyzer, lookup, values);
  }
  return values;
}

std::vector<Json> KnownValues(const AnalyzeContext& analyzer, const InputKey& input) {
  std::vector<Json> values = ValuesInLists(analyzer, input);
  for (const ValueList& row : kValueLists) {
    if (IsRowOf(row, input)) AddValueList(analyzer, row.list, values);
  }
  for (const KnownByRules& row : RowsOfRules()) {
    if (IsRowOf(row, input)) values.insert(values.end(), row.values.begin(), row.values.end());
  }
  std::vector<Json> distinct;
  std::set<Json> seen;
  for (Json& value : values) {
    if (seen.insert(value).second) distinct.push_back(std::move(value));
  }
  return distinct;
}

std::string ListsOf(const InputKey& input) {
  std::string lists;
  for (const Lookup& lookup : kLookups) {
    if (!IsRowOf(lookup, input)) continue;
    lists += (lists.empty() ? "" : " or ") + std::string(lookup.list);
  }
  return lists;
}

}  // namespace ia::cli
