// The doctor's checks of the PPD's flag texts: what the library keeps of them, and what it does
// not.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "cli/doctor/checkup.h"
#include "cli/provenance/provenance.h"
#include "info_analyze/analyzer.h"

namespace ia::cli {
namespace {

// The flag texts, in the order of the library's inputs.
enum FlagKey : std::size_t { kMediaTypes, kSlots, kInputTrays, kFinisherNames, kSourceOptions };

struct FlagRow {
  FlagKey key;
  FlagInfo* AnalyzeContext::* store;
  bool has_numbers;         // the values are numbers
  const char* consequence;  // of a missing text
};

constexpr auto kFlagRows = std::to_array<FlagRow>({
    {.key = kMediaTypes,
     .store = &AnalyzeContext::media_type_flags,
     .has_numbers = true,
     .consequence = "every tray is reported to hold plain paper"},
    {.key = kSlots,
     .store = &AnalyzeContext::slot_media_info_flags,
     .has_numbers = false,
     .consequence = "no media type is reported"},
    {.key = kInputTrays,
     .store = &AnalyzeContext::input_tray_flags,
     .has_numbers = true,
     .consequence = "trays have no slots, so no media type is reported"},
    {.key = kFinisherNames,
     .store = &AnalyzeContext::finisher_name_flags,
     .has_numbers = false,
     .consequence = "no finisher is recognised by its name"},
    {.key = kSourceOptions,
     .store = &AnalyzeContext::src_option_flags,
     .has_numbers = true,
     .consequence = "no extra paper source is reported"},
});

// The PPD keyword of a flag text.
[[nodiscard]] std::string NameOf(FlagKey key) { return FlagInputs().at(key)->key; }

[[nodiscard]] bool IsNumber(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

// Checks the items of one flag text, which may be several lines of the PPD.
class FlagText {
 public:
  FlagText(const FlagRow& row, const FlagInfo& store, Checkup& checkup)
      : name_(NameOf(row.key)), has_numbers_(row.has_numbers), store_(store), checkup_(checkup) {}

  [[nodiscard]] bool IsMissing() const { return lines_ == 0; }

  void Check(std::string_view text) {
    ++lines_;
    while (!text.empty()) {
      const std::size_t comma = std::min(text.find(','), text.size());
      CheckItem(text.substr(0, comma));
      text.remove_prefix(std::min(comma + 1, text.size()));
    }
  }

  void Conclude() {
    ReportRepetitions();
    ReportLeftOut();
    checkup_.Ok("flags", name_ + ": " + CountOf(static_cast<std::size_t>(store_.count), "item"));
  }

 private:
  void CheckItem(std::string_view item) {
    const std::size_t start = std::min(item.find_first_not_of(':'), item.size());
    const std::string_view body = item.substr(start);
    if (body.empty()) return ReportOdd(item, item.empty() ? "is empty" : "is colons only");
    if (start > 0) ReportOdd(item, "begins with a colon");
    const std::size_t colon = std::min(body.find(':'), body.size());
    const std::string name(body.substr(0, colon));
    const std::string_view value = body.substr(std::min(colon + 1, body.size()));
    ++counts_[name];
    CheckParts(item, name, value);
  }

  void CheckParts(std::string_view item, std::string_view name, std::string_view value) {
    if (name.find_first_of(" \t") == 0 || name.find_last_of(" \t") == name.size() - 1) {
      ReportOdd(item, "has blanks around its name, which then never fits");
    }
    if (value.empty()) {
      ReportOdd(item, "has no value");
    } else if (has_numbers_ && !IsNumber(value)) {
      ReportOdd(item, "has a value that is no number");
    }
  }

  void ReportOdd(std::string_view item, const std::string& what) {
    const std::string quoted = '"' + std::string(item) + '"';
    checkup_.Warn("flags", name_ + ": the item " + quoted + " " + what,
                  "write it as NAME:VALUE, or take it out",
                  {.group = name_ + what, .object = quoted});
  }

  void ReportRepetitions() {
    for (const auto& [name, count] : counts_) {
      if (count < 2) continue;
      const FlagPair* const pair = zflaginfo_find(&store_, name.c_str());
      std::string sentence = name_ + ": the item " + name + " appears ";
      sentence += std::to_string(count) + " times";
      if (pair != nullptr) {
        sentence += std::string("; only the value ") + pair->value + " is used";
      }
      checkup_.Warn("flags", sentence, "keep one item of that name",
                    {.group = name_ + " repeats", .object = name});
    }
  }

  void ReportLeftOut() {
    for (const auto& [name, count] : counts_) {
      if (zflaginfo_find(&store_, name.c_str()) != nullptr) continue;
      checkup_.Warn("flags",
                    name_ + " is over-full: the item " + name + " is left out, there is room for " +
                        std::to_string(store_.capacity),
                    "take items out that no printer of this PPD has",
                    {.group = name_ + " is over-full", .object = name});
    }
  }

  std::string name_;
  bool has_numbers_;
  const FlagInfo& store_;
  Checkup& checkup_;
  std::size_t lines_ = 0;
  std::map<std::string, int> counts_;
};

// Whether any handler of this model reads the text.
[[nodiscard]] bool IsRead(const AnalyzeContext& reader, const std::string& name) {
  return std::ranges::any_of(InputsOfModel(reader.driver_name),
                             [&](const InputKey* input) { return input->key == name; });
}

void ReportMissing(const AnalyzeContext& reader, const FlagRow& row, Checkup& checkup) {
  const std::string name = NameOf(row.key);
  const std::string missing = "the PPD has no " + name;
  if (!IsRead(reader, name)) {
    checkup.Note("flags", missing + ", which no handler of this model reads",
                 {.group = "unread text", .object = name});
  } else {
    checkup.Warn("flags", missing + ": " + row.consequence,
                 "take a PPD that has the line *" + name);
  }
}

void CheckFlagText(const AnalyzeContext& reader, const FlagRow& row, Checkup& checkup) {
  const FlagInfo* const store = reader.*row.store;
  if (store == nullptr) return;  // out of memory
  FlagText text(row, *store, checkup);
  const std::string name = NameOf(row.key);
  for (const OptTable* node = reader.ppd_options; node != nullptr; node = node->next) {
    if (std::string_view(node->key).starts_with(name)) text.Check(node->value);
  }
  if (text.IsMissing()) return ReportMissing(reader, row, checkup);
  text.Conclude();
}

[[nodiscard]] std::vector<FlagPair> PairsOf(const FlagInfo* store) {
  if (store == nullptr) return {};
  return {store->entries, store->entries + store->count};
}

// Without effect: a slot that no tray has, and a keyword that is no option of the PPD.
void CheckSlots(const Patient& patient, Checkup& checkup) {
  const AnalyzeContext& reader = *patient.ppd_reader;
  for (const FlagPair& slot : PairsOf(reader.slot_media_info_flags)) {
    if (*slot.value != '\0' && !patient.ppd_options.contains(std::string_view(slot.value))) {
      checkup.Warn("flags",
                   NameOf(kSlots) + ": the slot " + slot.name + " has the keyword " + slot.value +
                       ", which is no option of the PPD",
                   "add the option to the PPD, or correct the keyword",
                   {.group = "slot keyword", .object = slot.name});
    }
  }
  for (const FlagPair& tray : PairsOf(reader.input_tray_flags)) {
    if (zflaginfo_find(reader.slot_media_info_flags, tray.name) != nullptr) continue;
    checkup.Note("flags",
                 NameOf(kInputTrays) + ": the slot " + tray.name + " has no item of its own in " +
                     NameOf(kSlots),
                 {.group = "slot without item", .object = tray.name});
  }
}

void CheckFinisherNames(const Patient& patient, Checkup& checkup) {
  const auto option = patient.ppd_options.find("QVFinisher");
  if (option == patient.ppd_options.end()) return;
  for (const FlagPair& finisher : PairsOf(patient.ppd_reader->finisher_name_flags)) {
    if (*finisher.value == '\0' || option->second.HasChoice(finisher.value)) continue;
    checkup.Warn("flags",
                 NameOf(kFinisherNames) + ": " + finisher.name + " gives " + finisher.value +
                     ", which is no choice of QVFinisher",
                 "add the choice to the PPD, or correct the item",
                 {.group = "finisher", .object = finisher.name});
  }
}

[[nodiscard]] bool IsHexadecimal(std::string_view text) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  return error == std::errc() && end == text.data() + text.size();
}

// The numbers of a list are compared, so one that is none counts as zero.
void CheckNumberList(const Patient& patient, const char* keyword, Checkup& checkup) {
  const auto option = patient.ppd_options.find(keyword);
  if (option == patient.ppd_options.end()) return;
  for (const PpdChoice& choice : option->second.choices) {
    if (IsHexadecimal(choice.name)) continue;
    checkup.Warn("flags",
                 std::string(keyword) + ": the choice \"" + choice.name +
                     "\" is no hexadecimal number and counts as 0",
                 "write it in hexadecimal digits",
                 {.group = std::string("number in ") + keyword, .object = '"' + choice.name + '"'});
  }
}

}  // namespace

void CheckFlags(const Patient& patient, Checkup& checkup) {
  if (!patient.ppd_reader) return;
  for (const FlagRow& row : kFlagRows) CheckFlagText(*patient.ppd_reader, row, checkup);
  CheckSlots(patient, checkup);
  CheckFinisherNames(patient, checkup);
  for (const char* const keyword : {"QVSpecID", "QVPlatformVersion"}) {
    CheckNumberList(patient, keyword, checkup);
  }
}

}  // namespace ia::cli
