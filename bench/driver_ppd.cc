#include "bench/driver_ppd.h"

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace ia_bench {
namespace {

constexpr auto kAreas = std::to_array<const char*>(
    {"Anlz_", "Tray", "Finisher", "Staple", "Punch", "Booklet", "Duplex", "Colour", "Halftone",
     "Watermark", "Toner", "Secure", "Account", "Fax", "Media", "Page"});
constexpr auto kSubjects = std::to_array<const char*>(
    {"Mode", "Type", "Size", "Position", "Order", "Level", "Range", "Group", "Default", "Allowed",
     "Constraint", "Index", "Width", "Height", "Name", "Set"});

constexpr std::size_t kLongestLine = 255;  // libcups refuses a PPD with a longer one

// Of a hundred lines; the rest have new keys.
constexpr int kRepeats = 1;
constexpr int kCaseVariants = 1;
constexpr int kPrefixes = 1;
constexpr int kUiValues = 10;
constexpr int kLongLines = 1;

class Writer {
 public:
  [[nodiscard]] std::string Line() {
    const std::string key = NextKey();
    const std::string value = "value " + std::to_string(++lines_);
    if (Chance(kUiValues)) return "*%QVUIValue: *" + key + "(" + value + ")\n";
    const std::string line = "*" + key + ": \"" + value;
    return line + (Chance(kLongLines) ? std::string(kLongestLine - 1 - line.size(), 'x') : "") +
           "\"\n";
  }

 private:
  [[nodiscard]] std::size_t Below(std::size_t limit) { return random_() % limit; }
  [[nodiscard]] bool Chance(int percent) { return Below(100) < static_cast<std::size_t>(percent); }

  [[nodiscard]] std::string NextKey() {
    const std::size_t roll = Below(100);
    if (keys_.empty() || roll >= kRepeats + kCaseVariants + kPrefixes) return NewKey();
    std::string key = keys_[Below(keys_.size())];
    if (roll < kRepeats) return key;
    if (roll < kRepeats + kCaseVariants) return CaseVariant(key);
    key.pop_back();
    return key;
  }

  // The numbers have different widths, so that keys begin later ones ("QVTray1", "QVTray12").
  [[nodiscard]] std::string NewKey() {
    keys_.push_back("QV" + std::string(kAreas[Below(kAreas.size())]) +
                    kSubjects[Below(kSubjects.size())] + std::to_string(keys_.size()));
    return keys_.back();
  }

  [[nodiscard]] std::string CaseVariant(std::string key) {
    char& letter = key[2 + Below(4)];
    letter = static_cast<char>(letter ^ ('a' - 'A'));
    keys_.push_back(key);
    return key;
  }

  std::minstd_rand random_;
  std::vector<std::string> keys_;
  std::int64_t lines_ = 0;
};

struct FlagLine {
  const char* source;
  const char* name;
};

constexpr auto kFlagLines = std::to_array<FlagLine>({
    {"CommonFlag", "Common"},
    {"JobScriptFlag", "Job"},
    {"BinderScriptFlag", "Binder"},
    {"DocumentScriptFlag", "Document"},
    {"CJLScriptFlag", "Command"},
});
constexpr auto kVersions =
    std::to_array<const char*>({"100", "110", "120", "200", "210", "300", "310", "400"});

// Two or three flags.
std::string Flags(const std::string& name, std::size_t version, const char* value) {
  std::string flags = name + "A" + value + "," + name + "B" + value;
  if (version % 3 == 0) flags += "," + name + "C" + value;
  return flags;
}

}  // namespace

std::string DriverEntries(std::int64_t count) {
  Writer writer;
  std::string lines;
  for (std::int64_t i = 0; i < count; ++i) lines += writer.Line();
  return lines;
}

std::string FunctionVersionFlags() {
  std::string lines;
  for (std::size_t i = 0; i < kVersions.size(); ++i) {
    const std::string version = kVersions[i];
    lines += "*QVAnlz_FuncVer_UI_" + version + ": \"" +
             Flags("QVEnableFeature" + version, i, ":True") + "\"\n";
    for (const FlagLine& line : kFlagLines) {
      lines += "*QVAnlz_FuncVer_" + std::string(line.source) + "_" + version + ": \"" +
               Flags(line.name + version, i, "") + "\"\n";
    }
  }
  for (const FlagLine& line : kFlagLines) {
    lines += "*QV_Prot_" + std::string(line.source) + ": \"" + line.name + "\"\n";
  }
  return lines;
}

}  // namespace ia_bench
