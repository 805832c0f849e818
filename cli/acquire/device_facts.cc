#include "cli/acquire/device_facts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/acquire/fields.h"
#include "cli/acquire/printer_attributes.h"
#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

using nlohmann::ordered_json;
using Texts = std::vector<std::string>;
using TextSet = std::set<std::string, std::less<>>;

// Values of the device itself --------------------------------------------------------------------

// Each makes a value of the texts of an attribute that the device reports.
using Reading = ordered_json (*)(const Texts& texts, std::string_view argument);

[[nodiscard]] ordered_json AnyStartsWith(const Texts& texts, std::string_view prefix) {
  return std::ranges::any_of(texts, [&](const auto& text) { return text.starts_with(prefix); }) ? 1
                                                                                                : 0;
}

[[nodiscard]] ordered_json AnyIs(const Texts& texts, std::string_view wanted) {
  return std::ranges::find(texts, wanted) != texts.end() ? 1 : 0;
}

[[nodiscard]] ordered_json IsAboveZero(const Texts& texts, std::string_view) {
  return ParseCapacity(texts.front()).value_or(0) > 0 ? 1 : 0;
}

[[nodiscard]] ordered_json First(const Texts& texts, std::string_view) { return texts.front(); }

struct ScalarRow {
  const char* key;
  const char* attribute;
  Reading read;
  const char* argument;
};

constexpr auto kScalarRows = std::to_array<ScalarRow>({
    {"duplex", "sides-supported", AnyStartsWith, "two-sided-"},
    {"management", "job-account-id-supported", AnyIs, "true"},
    {"securedprint", "job-password-supported", IsAboveZero, ""},
    {"resolution_300", "printer-resolution-supported", AnyIs, "300dpi"},
    {"resolution_600", "printer-resolution-supported", AnyIs, "600dpi"},
    {"resolution_1200", "printer-resolution-supported", AnyIs, "1200dpi"},
    {"devicename", "printer-make-and-model", First, ""},
});

[[nodiscard]] Part DeviceOf(const AttributeValues& attributes) {
  Part device = {.name = "device", .fields = {}, .known = {}};
  for (const ScalarRow& row : kScalarRows) {
    const Texts& texts = FindValues(attributes, row.attribute);
    if (texts.empty()) continue;
    device.known[row.key] = {.value = row.read(texts, row.argument), .source = row.attribute};
  }
  return device;
}

// Paper sources and output bins ------------------------------------------------------------------

constexpr std::string_view kAutomaticSource = "auto";  // a choice of jobs, not a tray

[[nodiscard]] std::string TextIn(const Fields& fields, std::string_view name) {
  const auto hit = fields.find(name);
  return hit != fields.end() ? hit->second : "";
}

// The fields of each value of an attribute; where that is missing, the names that a keyword
// attribute has.
[[nodiscard]] std::vector<Fields> FieldsOf(const AttributeValues& attributes,
                                           std::string_view attribute, std::string_view keywords) {
  std::vector<Fields> all;
  for (const std::string& text : FindValues(attributes, attribute)) {
    all.push_back(ParseFields(text));
  }
  if (!all.empty()) return all;
  for (const std::string& keyword : FindValues(attributes, keywords)) {
    all.push_back({{"name", keyword}});
  }
  return all;
}

// A keyword for a name, as media-source has it: "Tray 1" is tray-1.
[[nodiscard]] std::string KeywordOf(std::string_view name) {
  std::string keyword = LowerCase(name);
  std::ranges::replace(keyword, ' ', '-');
  return keyword;
}

// The medium in each paper source, by its keyword (PWG 5100.7, section 6.9).
[[nodiscard]] Fields ReadyMedia(const AttributeValues& attributes) {
  Fields media;
  for (const std::string& text : FindValues(attributes, "media-col-ready")) {
    const Fields fields = ParseFields(text);
    const std::string source = TextIn(fields, "media-source");
    const std::string type = TextIn(fields, "media-type");
    if (!source.empty() && !type.empty()) media.emplace(source, type);
  }
  return media;
}

[[nodiscard]] bool IsAutomatic(std::string_view name) {
  return KeywordOf(name) == kAutomaticSource;
}

// The keyword of each tray: its name in that form, or where no medium has it and there are as many
// keywords as trays, the one at its place.
[[nodiscard]] std::string SourceOf(const AttributeValues& attributes, const Fields& media,
                                   const std::vector<Fields>& trays, std::size_t i) {
  const std::string keyword = KeywordOf(TextIn(trays[i], "name"));
  Texts sources = FindValues(attributes, "media-source-supported");
  std::erase_if(sources, IsAutomatic);
  return !media.contains(keyword) && sources.size() == trays.size() ? sources[i] : keyword;
}

[[nodiscard]] Part PartOf(const std::string& type, const Fields& reported) {
  Part part;
  part.name = type + " \"" + TextIn(reported, "name") + "\"";
  for (const char* const field : {"name", "type"}) {
    const std::string text = TextIn(reported, field);
    if (!text.empty()) part.fields[field] = text;
  }
  const auto capacity = ParseCapacity(TextIn(reported, "maxcapacity"));
  if (capacity) part.fields["capacity"] = std::to_string(*capacity);
  return part;
}

[[nodiscard]] std::vector<Part> TraysOf(const AttributeValues& attributes) {
  std::vector<Fields> reported =
      FieldsOf(attributes, "printer-input-tray", "media-source-supported");
  std::erase_if(reported, [](const Fields& tray) { return IsAutomatic(TextIn(tray, "name")); });
  const Fields media = ReadyMedia(attributes);
  std::vector<Part> trays;
  for (std::size_t i = 0; i < reported.size(); ++i) {
    Part tray = PartOf("tray", reported[i]);
    const auto capacity = ParseCapacity(TextIn(reported[i], "maxcapacity"));
    if (capacity) tray.known["capacity"] = {.value = *capacity, .source = "printer-input-tray"};
    const auto medium = media.find(SourceOf(attributes, media, reported, i));
    if (medium != media.end()) tray.fields["media-type"] = medium->second;
    trays.push_back(std::move(tray));
  }
  return trays;
}

[[nodiscard]] std::vector<Part> BinsOf(const AttributeValues& attributes) {
  std::vector<Part> bins;
  for (const Fields& reported :
       FieldsOf(attributes, "printer-output-tray", "output-bin-supported")) {
    bins.push_back(PartOf("bin", reported));
  }
  return bins;
}

// Finishing functions ----------------------------------------------------------------------------

// What a finishing process of the device shows. All rows apply that match.
struct FinishingRow {
  const char* prefix;  // of the process's keyword; CUPS has its own, such as cups-punch-pair
  int first, last;     // numbers without a keyword; 0: none
  const char* function;
  const char* detail;  // how; "": any way; null: in a way that documents name differently
};

constexpr auto kFinishingRows = std::to_array<FinishingRow>({
    {"staple", 20, 49, "staple", ""},
    {"saddle-stitch", 0, 0, "staple", ""},
    {"edge-stitch", 0, 0, "staple", ""},
    {"booklet-maker", 0, 0, "staple", ""},
    {"punch", 0, 0, "punch", ""},
    {"", 70, 89, "punch", nullptr},
    {"punch-single", 0, 0, "punch", nullptr},
    {"punch-dual", 0, 0, "punch", "punching_2_holes"},
    {"punch-triple", 0, 0, "punch", "punching_3_holes"},
    {"punch-quad", 0, 0, "punch", nullptr},  // the French or the Swedish way
    {"punch-multiple", 0, 0, "punch", "punching_multiple_holes"},
    {"fold", 90, 109, "folding", ""},
    {"booklet-maker", 0, 0, "folding", ""},
    {"trim", 60, 69, "trimming", ""},
});

// Attributes that only devices with the function have.
struct EvidenceRow {
  const char* attribute;
  const char* function;
};

constexpr auto kEvidenceRows = std::to_array<EvidenceRow>({
    {"punching-reference-edge-supported", "punch"},
    {"folding-direction-supported", "folding"},
    {"trimming-type-supported", "trimming"},
});

// The functions of a finishing device by its type (RFC 3806, finDeviceType).
constexpr auto kDeviceTypes = std::to_array<std::pair<std::string_view, const char*>>({
    {"stitcher", "staple"},
    {"puncher", "punch"},
    {"folder", "folding"},
    {"trimmer", "trimming"},
    {"inserter", "inserter"},
});

// The order in which a unit's functions are written.
constexpr auto kFunctions =
    std::to_array<std::string_view>({"staple", "punch", "folding", "trimming", "inserter"});

// What the device can do to sheets, whichever unit does it.
struct Finishing {
  bool is_reported = false;
  std::string source;
  TextSet functions;
  TextSet details;
  bool has_other_details = false;  // that documents name differently

  // Whether the ways of punching are all known.
  [[nodiscard]] bool knows_holes() const { return !details.empty() && !has_other_details; }
};

// The keyword or number of a process without what vendors add to it: CUPS has cups-punch-...,
// and numbers from 0x40000000 on.
[[nodiscard]] std::string_view PlainProcess(std::string_view process) {
  constexpr std::string_view kOfCups = "cups-";
  return process.starts_with(kOfCups) ? process.substr(kOfCups.size()) : process;
}

[[nodiscard]] int NumberOf(std::string_view process) {
  constexpr int kFirstOfVendors = 0x40000000;
  const int number = ParseCapacity(process).value_or(0);
  return number >= kFirstOfVendors ? number - kFirstOfVendors : number;
}

[[nodiscard]] bool Matches(const FinishingRow& row, std::string_view process) {
  const int number = NumberOf(process);
  if (number > 0) return number >= row.first && number <= row.last;
  return *row.prefix != '\0' && process.starts_with(row.prefix);
}

void AddProcess(std::string_view process, Finishing& finishing) {
  for (const FinishingRow& row : kFinishingRows) {
    if (!Matches(row, process)) continue;
    finishing.functions.insert(row.function);
    if (row.detail == nullptr) {
      finishing.has_other_details = true;
    } else if (*row.detail != '\0') {
      finishing.details.insert(row.detail);
    }
  }
}

[[nodiscard]] Finishing FinishingOf(const AttributeValues& attributes) {
  Finishing finishing;
  for (const char* const attribute : {"finishings-supported", "finishing-template-supported"}) {
    for (const std::string& process : FindValues(attributes, attribute)) {
      if (finishing.source.empty()) finishing.source = attribute;
      AddProcess(PlainProcess(process), finishing);
    }
  }
  finishing.is_reported = !finishing.source.empty();
  for (const EvidenceRow& row : kEvidenceRows) {
    if (!FindValues(attributes, row.attribute).empty()) finishing.functions.insert(row.function);
  }
  return finishing;
}

// Finishing units --------------------------------------------------------------------------------

// A product, which may be several finishing devices: one that staples and one that punches.
struct Unit {
  Part part;
  TextSet types;
  TextSet functions;
  bool has_known_type = false;
};

[[nodiscard]] bool IsFitted(const Fields& device) {
  return LowerCase(TextIn(device, "presentonoff")) != "notpresent";
}

[[nodiscard]] bool IsKnownType(std::string_view type) {
  return !type.empty() && type != "other" && type != "unknown";
}

[[nodiscard]] Unit NewUnit(Fields reported, const std::string& description) {
  if (!description.empty()) reported["name"] = description;
  Unit unit;
  unit.part = PartOf("finishing unit", reported);
  if (!description.empty()) {
    unit.part.known["name"] = {.value = description, .source = "printer-finisher-description"};
  }
  return unit;
}

void AddDevice(const std::string& type, Unit& unit) {
  unit.types.insert(type);
  if (!IsKnownType(type)) return;
  unit.has_known_type = true;
  for (const auto& [name, function] : kDeviceTypes) {
    if (type == name) unit.functions.insert(function);
  }
}

// Consecutive finishing devices of one description are one unit, until one of their types repeats:
// two stackers in a row are two units.
[[nodiscard]] std::vector<Unit> UnitsOf(const AttributeValues& attributes) {
  const Texts& devices = FindValues(attributes, "printer-finisher");
  const Texts& descriptions = FindValues(attributes, "printer-finisher-description");
  std::vector<Unit> units;
  std::string previous;
  for (std::size_t i = 0; i < devices.size(); ++i) {
    const Fields fields = ParseFields(devices[i]);
    if (!IsFitted(fields)) continue;
    const std::string description = i < descriptions.size() ? descriptions[i] : "";
    const std::string type = LowerCase(TextIn(fields, "type"));
    const bool is_new = units.empty() || description.empty() || description != previous ||
                        units.back().types.contains(type);
    if (is_new) units.push_back(NewUnit(fields, description));
    AddDevice(type, units.back());
    previous = description;
  }
  return units;
}

[[nodiscard]] ordered_json InOrder(const TextSet& functions) {
  ordered_json ordered = ordered_json::array();
  for (const std::string_view function : kFunctions) {
    if (functions.contains(function)) ordered.push_back(function);
  }
  return ordered;
}

// The functions that the device has and no unit of a known type.
[[nodiscard]] TextSet FunctionsLeft(const Finishing& finishing, const std::vector<Unit>& units) {
  TextSet left = finishing.functions;
  for (const Unit& unit : units) {
    for (const std::string& function : unit.functions) left.erase(function);
  }
  return left;
}

// Gives each unit its functions. Those that are left belong to the only unit that can have them; if
// several can, the functions of these are not known.
void AssignFunctions(const Finishing& finishing, std::vector<Unit>& units) {
  const TextSet left = FunctionsLeft(finishing, units);
  const bool all_have_types = std::ranges::all_of(units, &Unit::has_known_type);
  const auto may_have_more = [&](const Unit& unit) {
    return !left.empty() && (all_have_types || !unit.has_known_type);
  };
  const auto candidates = std::ranges::count_if(units, may_have_more);
  for (Unit& unit : units) {
    const bool takes_left = may_have_more(unit);
    if (takes_left && candidates > 1) continue;
    if (!unit.has_known_type && !finishing.is_reported) continue;
    if (takes_left) unit.functions.insert(left.begin(), left.end());
    unit.part.known["func"] = {
        .value = InOrder(unit.functions),
        .source = unit.has_known_type ? "printer-finisher" : finishing.source};
  }
}

// Attributes give the number of holes that the device punches, but not which of several units
// punches them. They do not describe how a unit trims or inserts.
void AssignDetails(const Finishing& finishing, std::vector<Unit>& units) {
  const auto punches = [](const Unit& unit) { return unit.functions.contains("punch"); };
  const bool knows_holes = finishing.knows_holes() && std::ranges::count_if(units, punches) == 1;
  for (Unit& unit : units) {
    const bool is_open = !unit.part.known.contains("func") || unit.functions.contains("trimming") ||
                         unit.functions.contains("inserter") || (punches(unit) && !knows_holes);
    if (is_open) continue;
    const TextSet details = punches(unit) ? finishing.details : TextSet();
    unit.part.known["detail_func"] = {
        .value = ordered_json(details),
        .source = punches(unit) ? finishing.source : unit.part.known["func"].source};
  }
}

// Without a list of units, one that has all functions and no name, so that nobody takes the list
// for that of all units.
[[nodiscard]] std::vector<Part> FinishersOf(const AttributeValues& attributes,
                                            const Finishing& finishing) {
  std::vector<Unit> units = UnitsOf(attributes);
  if (FindValues(attributes, "printer-finisher").empty()) {
    units.emplace_back().part.name = "finishing unit";
  }
  AssignFunctions(finishing, units);
  AssignDetails(finishing, units);
  std::vector<Part> parts;
  std::ranges::transform(units, std::back_inserter(parts),
                         [](Unit& unit) { return std::move(unit.part); });
  return parts;
}

}  // namespace

bool IsList(std::int32_t document) {
  return std::ranges::find(kListDocuments, document) != kListDocuments.end();
}

DeviceFacts FindFacts(const AttributeValues& attributes) {
  DeviceFacts facts = {.device = DeviceOf(attributes), .lists = {}};
  std::vector<Part> trays = TraysOf(attributes);
  std::vector<Part> bins = BinsOf(attributes);
  const Finishing finishing = FinishingOf(attributes);
  const bool has_finishers =
      finishing.is_reported || !FindValues(attributes, "printer-finisher").empty();
  if (!trays.empty()) facts.lists[IA_DOCUMENT_TRAY_LIST] = std::move(trays);
  if (!bins.empty()) facts.lists[IA_DOCUMENT_BIN_LIST] = std::move(bins);
  if (has_finishers) {
    facts.lists[IA_DOCUMENT_FINISHER_LIST] = FinishersOf(attributes, finishing);
  }
  return facts;
}

}  // namespace ia::cli
