// The doctor's checks of the PPD's flag texts: what the library keeps of them, and what it does
// not.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "cli/doctor/checkup.h"
#include "cli/provenance/provenance.h"
#include "info_analyze/analyzer.h"

namespace ia::cli {
namespace {

struct FlagKey {
  const char* key;
  FlagInfo* AnalyzeContext::*store;
  bool has_numbers;         // the values are numbers
  const char* consequence;  // of a text that is missing
};

constexpr auto kFlagKeys = std::to_array<FlagKey>({
    {"QV_Prot_MediaType", &AnalyzeContext::media_type_flags, true,
     "every tray is told to hold plain paper"},
    {"QVAnlz_SlotMediaInfo", &AnalyzeContext::slot_media_info_flags, false,
     "no media type is told"},
    {"QVAnlz_InputTray", &AnalyzeContext::input_tray_flags, true,
     "trays have no slots, so no media type is told"},
    {"QVAnlz_FinisherName", &AnalyzeContext::finisher_name_flags, false,
     "no finisher is told by its name"},
    {"QVAnlz_SrcOption", &AnalyzeContext::src_option_flags, true, "no extra paper source is told"},
});

[[nodiscard]] bool IsNumber(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

// Looks at the items of one flag text, which may be several lines of the PPD.
class FlagText {
 public:
  FlagText(const FlagKey& key, const FlagInfo& store, Checkup& checkup)
      : key_(key), store_(store), checkup_(checkup) {}

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
    TellRepetitions();
    TellLeftOut();
    checkup_.Ok("flags", std::string(key_.key) + ": " +
                             CountOf(static_cast<std::size_t>(store_.count), "item"));
  }

 private:
  void CheckItem(std::string_view item) {
    const std::size_t start = std::min(item.find_first_not_of(':'), item.size());
    const std::string_view body = item.substr(start);
    if (body.empty()) return TellOdd(item, item.empty() ? "is empty" : "is colons only");
    if (start > 0) TellOdd(item, "begins with a colon");
    const std::size_t colon = std::min(body.find(':'), body.size());
    const std::string name(body.substr(0, colon));
    const std::string_view value = body.substr(std::min(colon + 1, body.size()));
    ++counts_[name];
    CheckParts(item, name, value);
  }

  void CheckParts(std::string_view item, std::string_view name, std::string_view value) {
    if (name.find_first_of(" \t") == 0 || name.find_last_of(" \t") == name.size() - 1) {
      TellOdd(item, "has blanks around its name, which then never fits");
    }
    if (value.empty()) {
      TellOdd(item, "has no value");
    } else if (key_.has_numbers && !IsNumber(value)) {
      TellOdd(item, "has a value that is no number");
    }
  }

  void TellOdd(std::string_view item, const std::string& what) {
    checkup_.Warn("flags",
                  std::string(key_.key) + ": the item \"" + std::string(item) + "\" " + what,
                  "write it as NAME:VALUE, or take it out");
  }

  void TellRepetitions() {
    for (const auto& [name, count] : counts_) {
      if (count < 2) continue;
      const FlagPair* const pair = zflaginfo_find(&store_, name.c_str());
      std::string sentence = std::string(key_.key) + ": the item " + name + " is there ";
      sentence += std::to_string(count) + " times";
      if (pair != nullptr) {
        sentence += std::string(", of which the value ") + pair->value + " counts";
      }
      checkup_.Warn("flags", sentence, "keep one item of that name");
    }
  }

  void TellLeftOut() {
    for (const auto& [name, count] : counts_) {
      if (zflaginfo_find(&store_, name.c_str()) != nullptr) continue;
      checkup_.Warn("flags",
                    std::string(key_.key) + " is over-full: the item " + name +
                        " is left out, there is room for " + std::to_string(store_.capacity),
                    "take items out that no printer of this PPD has");
    }
  }

  const FlagKey& key_;
  const FlagInfo& store_;
  Checkup& checkup_;
  std::size_t lines_ = 0;
  std::map<std::string, int> counts_;
};

// Whether any handler of this model looks at the text.
[[nodiscard]] bool IsLookedAt(const AnalyzeContext& reader, const FlagKey& key) {
  return std::ranges::any_of(
      InputsOf(InputsOfModel(reader.driver_name)),
      [&](const InputKey* input) { return input->key == std::string_view(key.key); });
}

void TellMissing(const AnalyzeContext& reader, const FlagKey& key, Checkup& checkup) {
  const std::string missing = std::string("the PPD has no ") + key.key;
  if (!IsLookedAt(reader, key)) {
    checkup.Note("flags", missing + ", at which no handler of this model looks");
  } else {
    checkup.Warn("flags", missing + ": " + key.consequence,
                 std::string("take a PPD that has the line *") + key.key);
  }
}

void CheckFlagText(const AnalyzeContext& reader, const FlagKey& key, Checkup& checkup) {
  const FlagInfo* const store = reader.*key.store;
  if (store == nullptr) return;  // memory ran out
  FlagText text(key, *store, checkup);
  for (const OptTable* node = reader.ppd_options; node != nullptr; node = node->next) {
    if (std::string_view(node->key).starts_with(key.key)) text.Check(node->value);
  }
  if (text.IsMissing()) return TellMissing(reader, key, checkup);
  text.Conclude();
}

[[nodiscard]] std::vector<FlagPair> PairsOf(const FlagInfo* store) {
  if (store == nullptr) return {};
  return {store->entries, store->entries + store->count};
}

// A slot that no tray has leads nowhere, and so does a keyword that is no option of the PPD.
void CheckSlots(const Patient& patient, Checkup& checkup) {
  const AnalyzeContext& reader = *patient.ppd_reader;
  for (const FlagPair& slot : PairsOf(reader.slot_media_info_flags)) {
    if (*slot.value != '\0' && !patient.ppd_options.contains(std::string_view(slot.value))) {
      checkup.Warn("flags",
                   std::string("QVAnlz_SlotMediaInfo: the slot ") + slot.name +
                       " has the keyword " + slot.value + ", which is no option of the PPD",
                   "add the option to the PPD, or correct the keyword");
    }
  }
  for (const FlagPair& tray : PairsOf(reader.input_tray_flags)) {
    if (zflaginfo_find(reader.slot_media_info_flags, tray.name) != nullptr) continue;
    checkup.Note("flags", std::string("QVAnlz_InputTray: the slot ") + tray.name +
                              " has no item of its own in QVAnlz_SlotMediaInfo");
  }
}

void CheckFinisherNames(const Patient& patient, Checkup& checkup) {
  const auto option = patient.ppd_options.find("QVFinisher");
  if (option == patient.ppd_options.end()) return;
  for (const FlagPair& finisher : PairsOf(patient.ppd_reader->finisher_name_flags)) {
    if (*finisher.value == '\0' || option->second.HasChoice(finisher.value)) continue;
    checkup.Warn("flags",
                 std::string("QVAnlz_FinisherName: ") + finisher.name + " gives " + finisher.value +
                     ", which is no choice of QVFinisher",
                 "add the choice to the PPD, or correct the item");
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
                 "write it in hexadecimal digits");
  }
}

}  // namespace

void CheckFlags(const Patient& patient, Checkup& checkup) {
  if (!patient.ppd_reader) return;
  for (const FlagKey& key : kFlagKeys) CheckFlagText(*patient.ppd_reader, key, checkup);
  CheckSlots(patient, checkup);
  CheckFinisherNames(patient, checkup);
  for (const char* const keyword : {"QVSpecID", "QVPlatformVersion"}) {
    CheckNumberList(patient, keyword, checkup);
  }
}

}  // namespace ia::cli
