#include "cli/snapshot/redacted_ppd.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "cli/printer/ppd.h"

namespace ia::cli {
namespace {

struct NamedCategory {
  std::string_view name;
  Category category;
};

constexpr auto kKeywords = std::to_array<NamedCategory>({
    {"NickName", Category::kNickName},
    {"Serial", Category::kSerial},
    {"Location", Category::kLocation},
    {"Contact", Category::kContact},
});

// Of an IEEE 1284 device ID.
constexpr auto kDeviceIdFields = std::to_array<NamedCategory>({
    {"SN", Category::kSerial},
    {"SERN", Category::kSerial},
    {"SERIALNUMBER", Category::kSerial},
});

[[nodiscard]] std::string_view UpTo(std::string_view text, std::string_view stops) {
  return text.substr(0, text.find_first_of(stops));
}

[[nodiscard]] std::string_view After(std::string_view text, std::string_view before) {
  return text.substr(std::min(before.size(), text.size()));
}

[[nodiscard]] std::string_view QuotedIn(std::string_view line) {
  const std::string_view before = UpTo(line, "\"");
  return UpTo(After(After(line, before), "\""), "\"");
}

void AddSecretsOfDeviceId(std::string_view id, Secrets& secrets) {
  while (!id.empty()) {
    const std::string_view field = UpTo(id, ";");
    const std::string_view name = UpTo(field, ":");
    for (const NamedCategory& row : kDeviceIdFields) {
      if (name == row.name) secrets.Add(row.category, After(After(field, name), ":"));
    }
    id = After(After(id, field), ";");
  }
}

[[nodiscard]] bool IsOption(std::string_view line) { return line.substr(1).starts_with("QV"); }

void AddSecretsOfLine(std::string_view line, Secrets& secrets) {
  if (!line.starts_with('*') || line.starts_with("*%") || IsOption(line)) return;
  const std::string_view keyword = UpTo(line, ": \t");
  if (keyword == "*1284DeviceID") AddSecretsOfDeviceId(QuotedIn(line), secrets);
  for (const NamedCategory& row : kKeywords) {
    if (keyword.find(row.name) == std::string_view::npos) continue;
    secrets.Add(row.category, QuotedIn(line));
  }
}

// Follows the lines as the library's reader of PPDs does.
class PpdRedactor {
 public:
  explicit PpdRedactor(Secrets& secrets) : secrets_(secrets) {}

  [[nodiscard]] std::string Redacted(std::string_view line) {
    const bool is_read = !in_block_ && (IsOption(line) || line.starts_with("*%QVUIValue:"));
    if (is_read) return std::string(line);
    if (line.substr(std::min<std::size_t>(1, line.size())).starts_with("OpenUI")) Open(line);
    if (line.starts_with("*CloseUI")) in_block_ = is_list_ = false;
    if (is_list_) return RedactedAfter(line, "/");
    const bool is_statement = line.starts_with('*') && !line.starts_with("*%");
    return is_statement ? RedactedStatement(line) : secrets_.Replaced(line);
  }

 private:
  void Open(std::string_view line) {
    in_block_ = true;
    is_list_ = is_list_ || line.find("QVSpecID") != std::string_view::npos ||
               line.find("QVPlatformVersion") != std::string_view::npos;
  }

  [[nodiscard]] std::string RedactedAfter(std::string_view text, std::string_view stop) {
    const std::string_view kept = UpTo(text, stop);
    return std::string(kept) + secrets_.Replaced(After(text, kept));
  }

  // "*Keyword choice/Text: value", whose value is quoted or "choice/Text".
  [[nodiscard]] std::string RedactedStatement(std::string_view line) {
    const std::string_view head = UpTo(line, ":");
    const std::string_view value = After(line, head);
    const std::size_t start = value.find_first_not_of(": \t");
    const bool is_quoted = start != std::string_view::npos && value[start] == '"';
    return RedactedAfter(head, "/") +
           (is_quoted ? secrets_.Replaced(value) : RedactedAfter(value, "/"));
  }

  Secrets& secrets_;
  bool in_block_ = false;
  bool is_list_ = false;  // the block is one whose choices the library reads
};

}  // namespace

void AddSecretsOfPpd(std::string_view ppd, Secrets& secrets) {
  secrets.AddAddresses(ppd);
  ForEachLine(ppd, [&](std::string_view line) { AddSecretsOfLine(line, secrets); });
}

std::string RedactedPpd(std::string_view ppd, Secrets& secrets) {
  PpdRedactor redactor(secrets);
  std::string redacted;
  while (!ppd.empty()) {
    const std::string_view line = UpTo(ppd, "\r\n");
    redacted += line.empty() ? "" : redactor.Redacted(line);
    ppd = After(ppd, line);
    if (ppd.empty()) break;
    redacted += ppd.front();
    ppd.remove_prefix(1);
  }
  return redacted;
}

}  // namespace ia::cli
