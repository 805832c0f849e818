// What a driver package knows of its devices and no standard does: rules that translate what a
// device reports into the driver's own codes, names and numbers.
#ifndef INFO_ANALYZE_CLI_ACQUIRE_PROFILE_H_
#define INFO_ANALYZE_CLI_ACQUIRE_PROFILE_H_

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/acquire/device_facts.h"
#include "cli/acquire/printer_attributes.h"

namespace ia::cli {

// The file that a driver folder may have.
inline constexpr const char* kProfileName = "device-profile.json";

// What a field of a part, or an attribute of the device, must be.
struct Condition {
  std::string field;
  std::vector<std::string> patterns;  // one of them, in which "*" is any text and "?" any character
  std::optional<std::int32_t> min;    // a number instead
  std::optional<std::int32_t> max;
};

using KeyValues = std::map<std::string, nlohmann::ordered_json>;

struct Rule {
  std::string place;  // "trays[2]"
  std::vector<Condition> conditions;
  std::vector<KeyValues> values;  // one; of fax lines any number
};

struct Profile {
  std::string file;
  std::string name;
  std::vector<Rule> device;
  std::map<std::int32_t, std::vector<Rule>> lists;  // by document
};

// Throws a Failure for a file that cannot be read or does not follow
// docs/info-analyze-profile.schema.json.
[[nodiscard]] Profile ReadProfile(const std::string& file);

// The same for the text of a file.
[[nodiscard]] Profile ParseProfile(std::string_view text, const std::string& file);

// Adds what the rules give. Of the rules that match a part, the first that has a key gives its
// value, and it replaces that of an attribute. Of the rules for fax lines, the first that matches
// gives all.
void ApplyProfile(const Profile& profile, const AttributeValues& attributes, DeviceFacts& facts);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_PROFILE_H_
