#include "cli/acquire/profile.h"

#include <fnmatch.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/acquire/fields.h"
#include "cli/printer/regular_file.h"
#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

using nlohmann::ordered_json;

constexpr std::size_t kMaxSize = std::size_t{1} << 20;
constexpr std::int32_t kDevice = -1;  // in place of the document of a list

// A section of a profile: the document whose keys its rules give, and the fields of its parts,
// which they can match beside the attributes of the device.
struct Section {
  const char* name;
  std::int32_t document;
  std::array<const char*, 4> fields;
};

constexpr auto kSections = std::to_array<Section>({
    {"device", kDevice, {}},
    {"trays", IA_DOCUMENT_TRAY_LIST, {"name", "type", "capacity", "media-type"}},
    {"bins", IA_DOCUMENT_BIN_LIST, {"name", "type", "capacity"}},
    {"finishers", IA_DOCUMENT_FINISHER_LIST, {"name", "type", "capacity"}},
    {"fax_lines", IA_DOCUMENT_FAX_LINE_LIST, {}},
});

// Reading ----------------------------------------------------------------------------------------

// A value of the profile and its place, such as "trays[2].if.name".
class Place {
 public:
  Place(const std::string& file, const ordered_json& value, std::string name)
      : file_(file), value_(value), name_(std::move(name)) {}

  [[nodiscard]] const ordered_json& value() const { return value_; }
  [[nodiscard]] const std::string& name() const { return name_; }

  [[noreturn]] void Refuse(const std::string& cause) const {
    throw Failure(ExitStatus::kUsage, {.object = "profile " + file_,
                                       .cause = (name_.empty() ? "" : name_ + " ") + cause,
                                       .hint = "see info-analyze-profile(5)"});
  }

  // The members of an object whose names are allowed.
  [[nodiscard]] std::vector<Place> Members(std::span<const std::string> allowed) const {
    if (!value_.is_object()) Refuse("is not an object");
    std::vector<Place> members;
    for (const auto& [key, value] : value_.items()) {
      members.emplace_back(file_, value, name_.empty() ? key : name_ + "." + key);
      if (std::ranges::find(allowed, key) == allowed.end()) members.back().Refuse("is unknown");
    }
    return members;
  }

  [[nodiscard]] std::vector<Place> Elements() const {
    if (!value_.is_array()) Refuse("is not an array");
    std::vector<Place> elements;
    elements.reserve(value_.size());
    for (std::size_t i = 0; i < value_.size(); ++i) {
      elements.emplace_back(file_, value_[i], name_ + "[" + std::to_string(i) + "]");
    }
    return elements;
  }

  [[nodiscard]] std::string Text() const {
    if (!value_.is_string()) Refuse("is not a text");
    auto text = value_.get<std::string>();
    if (text.find('\0') != std::string::npos) Refuse("contains a NUL");
    return text;
  }

  [[nodiscard]] std::int32_t Number() const {
    using Limits = std::numeric_limits<std::int32_t>;
    const bool is_number =
        value_.is_number_integer() && value_ >= Limits::min() && value_ <= Limits::max();
    if (!is_number) Refuse("is not a whole number of 32 bits");
    return value_.get<std::int32_t>();
  }

  // The last part of the name.
  [[nodiscard]] std::string Key() const { return name_.substr(name_.rfind('.') + 1); }

 private:
  const std::string& file_;
  const ordered_json& value_;
  std::string name_;
};

[[nodiscard]] std::vector<std::string> AllowedFields(const Section& section) {
  std::vector<std::string> allowed(kRequestedAttributes.begin(), kRequestedAttributes.end());
  for (const char* const field : section.fields) {
    if (field != nullptr) allowed.emplace_back(field);
  }
  return allowed;
}

[[nodiscard]] bool IsKeyOf(const Section& section, const DocumentKey& key) {
  return section.document == kDevice ? !IsList(key.document) : key.document == section.document;
}

[[nodiscard]] std::vector<std::string> AllowedKeys(const Section& section) {
  std::vector<std::string> allowed;
  for (const DocumentKey& key : kDocumentKeys) {
    if (IsKeyOf(section, key)) allowed.emplace_back(key.name);
  }
  return allowed;
}

[[nodiscard]] const DocumentKey& FindKey(const Section& section, const std::string& name) {
  return *std::ranges::find_if(kDocumentKeys, [&](const DocumentKey& key) {
    return IsKeyOf(section, key) && name == key.name;
  });
}

void CheckType(const DocumentKey& key, const Place& place) {
  switch (key.type) {
    case IA_KEY_LONG:
      return (void)place.Number();
    case IA_KEY_STRING:
      return (void)place.Text();
    case IA_KEY_LONG_ELEMENTS:
      for (const Place& element : place.Elements()) (void)element.Number();
      return;
    default:
      for (const Place& element : place.Elements()) (void)element.Text();
      return;
  }
}

[[nodiscard]] KeyValues ReadValues(const Section& section, const Place& place) {
  KeyValues values;
  for (const Place& member : place.Members(AllowedKeys(section))) {
    CheckType(FindKey(section, member.Key()), member);
    values[member.Key()] = member.value();
  }
  return values;
}

[[nodiscard]] Condition ReadRange(const Place& place) {
  Condition condition;
  const std::array<std::string, 2> limits = {"min", "max"};
  for (const Place& limit : place.Members(limits)) {
    (limit.Key() == "min" ? condition.min : condition.max) = limit.Number();
  }
  if (!condition.min && !condition.max) place.Refuse("has neither min nor max");
  return condition;
}

[[nodiscard]] Condition ReadCondition(const Place& place) {
  Condition condition;
  if (place.value().is_object()) {
    condition = ReadRange(place);
  } else if (place.value().is_number()) {
    condition.min = condition.max = place.Number();
  } else if (place.value().is_array()) {
    for (const Place& element : place.Elements()) condition.patterns.push_back(element.Text());
    if (condition.patterns.empty()) place.Refuse("is empty");
  } else {
    condition.patterns = {place.Text()};
  }
  condition.field = place.Key();
  return condition;
}

[[nodiscard]] std::vector<Condition> ReadConditions(const Section& section, const Place& place) {
  std::vector<Condition> conditions;
  std::ranges::transform(place.Members(AllowedFields(section)), std::back_inserter(conditions),
                         ReadCondition);
  return conditions;
}

// One set of values, or of fax lines any number.
[[nodiscard]] std::vector<KeyValues> ReadAllValues(const Section& section, const Place& place) {
  if (section.document != IA_DOCUMENT_FAX_LINE_LIST) return {ReadValues(section, place)};
  std::vector<KeyValues> lines;
  std::ranges::transform(place.Elements(), std::back_inserter(lines),
                         [&](const Place& line) { return ReadValues(section, line); });
  return lines;
}

[[nodiscard]] Rule ReadRule(const Section& section, const Place& place) {
  Rule rule = {.place = place.name(), .conditions = {}, .values = {}};
  const std::array<std::string, 2> parts = {"if", "then"};
  bool has_values = false;
  for (const Place& part : place.Members(parts)) {
    if (part.Key() == "if") {
      rule.conditions = ReadConditions(section, part);
    } else {
      rule.values = ReadAllValues(section, part);
      has_values = true;
    }
  }
  if (!has_values) place.Refuse("has no \"then\"");
  return rule;
}

[[nodiscard]] Profile ReadMembers(const Place& place, const std::string& file) {
  Profile profile = {.file = file, .name = "", .device = {}, .lists = {}};
  std::vector<std::string> allowed = {"$schema", "profile_version", "name"};
  for (const Section& section : kSections) allowed.emplace_back(section.name);
  bool has_version = false;
  for (const Place& member : place.Members(allowed)) {
    const std::string key = member.Key();
    if (key == "profile_version") {
      if (member.value() != 1) member.Refuse("is not 1, the version that this tool reads");
      has_version = true;
    }
    if (key == "name") profile.name = member.Text();
    const auto section = std::ranges::find(kSections, key, &Section::name);
    if (section == kSections.end()) continue;
    for (const Place& rule : member.Elements()) {
      auto& rules =
          section->document == kDevice ? profile.device : profile.lists[section->document];
      rules.push_back(ReadRule(*section, rule));
    }
  }
  if (!has_version) place.Refuse("has no profile_version");
  return profile;
}

// Matching ---------------------------------------------------------------------------------------

[[nodiscard]] bool Matches(const Condition& condition, const std::string& text) {
  if (condition.patterns.empty()) {
    const auto number = ParseCapacity(text);
    return number && *number >= condition.min.value_or(0) &&
           *number <= condition.max.value_or(*number);
  }
  return std::ranges::any_of(condition.patterns, [&](const std::string& pattern) {
    return fnmatch(pattern.c_str(), text.c_str(), FNM_CASEFOLD | FNM_NOESCAPE) == 0;
  });
}

[[nodiscard]] bool Matches(const Condition& condition, const AttributeValues& attributes,
                           const Fields& fields) {
  const auto field = fields.find(condition.field);
  if (field != fields.end()) return Matches(condition, field->second);
  return std::ranges::any_of(FindValues(attributes, condition.field),
                             [&](const std::string& text) { return Matches(condition, text); });
}

[[nodiscard]] bool Matches(const Rule& rule, const AttributeValues& attributes,
                           const Fields& fields) {
  return std::ranges::all_of(rule.conditions, [&](const Condition& condition) {
    return Matches(condition, attributes, fields);
  });
}

[[nodiscard]] std::string SourceOf(const Rule& rule) { return "profile " + rule.place; }

void Apply(const std::vector<Rule>& rules, const AttributeValues& attributes, Part& part) {
  std::map<std::string, KnownValue, std::less<>> given;
  for (const Rule& rule : rules) {
    if (!Matches(rule, attributes, part.fields)) continue;
    for (const auto& [key, value] : rule.values.front()) {
      given.emplace(key, KnownValue{.value = value, .source = SourceOf(rule)});
    }
  }
  given.merge(part.known);
  part.known = std::move(given);
}

[[nodiscard]] std::vector<Part> LinesOf(const Rule& rule) {
  std::vector<Part> lines;
  for (const KeyValues& values : rule.values) {
    Part& line = lines.emplace_back();
    line.name = "fax line " + std::to_string(lines.size());
    for (const auto& [key, value] : values) {
      line.known[key] = {.value = value, .source = SourceOf(rule)};
    }
  }
  return lines;
}

void ApplyToLines(const std::vector<Rule>& rules, const AttributeValues& attributes,
                  DeviceFacts& facts) {
  const auto rule = std::ranges::find_if(
      rules, [&](const Rule& candidate) { return Matches(candidate, attributes, {}); });
  if (rule != rules.end()) facts.lists[IA_DOCUMENT_FAX_LINE_LIST] = LinesOf(*rule);
}

}  // namespace

Profile ParseProfile(std::string_view text, const std::string& file) {
  ordered_json root;
  try {
    root = ordered_json::parse(text);
  } catch (const ordered_json::parse_error& error) {
    const auto line = 1 + std::ranges::count(text.substr(0, error.byte - 1), '\n');
    Place(file, root, "").Refuse("is not JSON: an error in line " + std::to_string(line));
  }
  return ReadMembers(Place(file, root, ""), file);
}

Profile ReadProfile(const std::string& file) {
  try {
    return ParseProfile(ReadRegularFile(file, kMaxSize), file);
  } catch (const FileFault& fault) {
    throw Failure(ExitStatus::kUsage, {.object = "profile " + file, .cause = fault.what()});
  }
}

void ApplyProfile(const Profile& profile, const AttributeValues& attributes, DeviceFacts& facts) {
  Apply(profile.device, attributes, facts.device);
  for (const auto& [document, rules] : profile.lists) {
    if (document == IA_DOCUMENT_FAX_LINE_LIST) {
      ApplyToLines(rules, attributes, facts);
    } else if (const auto list = facts.lists.find(document); list != facts.lists.end()) {
      for (Part& part : list->second) Apply(rules, attributes, part);
    }
  }
}

}  // namespace ia::cli
