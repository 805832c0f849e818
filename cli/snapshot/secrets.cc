#include "cli/snapshot/secrets.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/snapshot/addresses.h"
#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

struct CategoryRow {
  Category category;
  const char* name;
  const char* word;  // before the number of a replacement
};

constexpr auto kCategories = std::to_array<CategoryRow>({
    {Category::kQueue, "queue name", "queue-"},
    {Category::kDescription, "queue description", "description-"},
    {Category::kLocation, "location", "location-"},
    {Category::kContact, "contact", "contact-"},
    {Category::kSerial, "serial number", "serial-"},
    {Category::kHost, "host name", "host-"},
    {Category::kIpv4, "IPv4 address", ""},
    {Category::kIpv6, "IPv6 address", "2001:db8::"},
    {Category::kMac, "MAC address", ""},
    {Category::kNickName, "nickname", "nickname-"},
    {Category::kDeviceName, "device name", "device-"},
    {Category::kFaxLine, "fax line id", ""},
    {Category::kBinary, "binary value", ""},
});
static_assert(kCategories.size() == kCategoryCount);

// Shorter ones are parts of many words.
constexpr std::size_t kMinSize = 2;
constexpr std::size_t kMinSizeInWords = 4;

[[nodiscard]] const CategoryRow& RowOf(Category category) {
  return kCategories[static_cast<std::size_t>(category)];
}

[[nodiscard]] bool IsWordByte(char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z');
}

[[nodiscard]] bool IsWord(std::string_view lower_case, std::size_t at, std::size_t size) {
  return (at == 0 || !IsWordByte(lower_case[at - 1])) &&
         (at + size == lower_case.size() || !IsWordByte(lower_case[at + size]));
}

[[nodiscard]] std::string PercentEncoded(std::string_view text) {
  std::string encoded;
  for (const char byte : text) {
    const char lower = LowerCase({&byte, 1}).front();
    if (IsWordByte(lower) || std::string_view("-._~").find(byte) != std::string_view::npos) {
      encoded += byte;
      continue;
    }
    std::array<char, 4> code{};
    std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned char>(byte));
    encoded += code.data();
  }
  return encoded;
}

// Addresses that RFC 5737, 2544 and 7042 keep for documents and tests.
[[nodiscard]] std::string ReplacementOf(Category category, std::size_t number) {
  std::array<char, 32> text{};
  const unsigned high = static_cast<unsigned>(number >> 8 & 0xff);
  const unsigned low = static_cast<unsigned>(number & 0xff);
  switch (category) {
    case Category::kIpv4:
      if (number < 255) return "192.0.2." + std::to_string(number);
      std::snprintf(text.data(), text.size(), "198.18.%u.%u", high, low);
      return text.data();
    case Category::kMac:
      std::snprintf(text.data(), text.size(), "00:00:5e:00:%02x:%02x", 0x53 + high, low);
      return text.data();
    case Category::kHost:
      return RowOf(category).word + std::to_string(number) + ".invalid";
    default:
      return RowOf(category).word + std::to_string(number);
  }
}

[[nodiscard]] Category CategoryOf(AddressType type) {
  switch (type) {
    case AddressType::kIpv4:
      return Category::kIpv4;
    case AddressType::kIpv6:
      return Category::kIpv6;
    default:
      return Category::kMac;
  }
}

// The digits of a MAC address with this separator between the bytes.
[[nodiscard]] std::string Separated(std::string_view digits, std::string_view separator) {
  std::string mac;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    mac += (i == 0 ? std::string_view() : separator);
    mac += digits.substr(i, 2);
  }
  return mac;
}

[[nodiscard]] std::string DigitsOf(std::string_view mac) {
  std::string digits = LowerCase(mac);
  std::erase_if(digits, [](char byte) { return byte == ':' || byte == '-'; });
  return digits;
}

}  // namespace

const char* NameOf(Category category) { return RowOf(category).name; }

Secrets::Secrets(std::string_view texts) : texts_(LowerCase(texts)) {}

void Secrets::Add(Category category, std::string_view secret) {
  if (secret.size() < kMinSize) return;
  if (IsMac(secret)) return AddMac(secret);
  std::string& replacement = replacements_[LowerCase(secret)];
  if (replacement.empty()) replacement = NewReplacement(category);
  Remember(category, secret, replacement);
  Remember(category, PercentEncoded(secret), replacement);
}

void Secrets::AddHost(std::string_view host) {
  const auto addresses = FindAddresses(host);
  AddAddresses(host);
  if (!addresses.empty() || host.empty() || LowerCase(host) == "localhost") return;
  Add(Category::kHost, host);
  const std::size_t dot = std::min(host.find('.'), host.size());
  if (dot == host.size()) return;
  Add(Category::kHost, host.substr(0, dot));
  const std::string_view domain = host.substr(dot + 1);
  if (domain.find('.') != std::string_view::npos) Add(Category::kHost, domain);
}

void Secrets::AddAddresses(std::string_view text) {
  for (const Address& address : FindAddresses(text)) {
    if (address.type == AddressType::kMac) {
      AddMac(address.text);
      continue;
    }
    const Category category = CategoryOf(address.type);
    std::string& replacement = replacements_[address.plain];
    if (replacement.empty()) replacement = NewReplacement(category);
    Remember(category, address.text, replacement);
  }
}

void Secrets::AddMac(std::string_view mac) {
  const std::string digits = DigitsOf(mac);
  std::string& replacement = replacements_[digits];
  if (replacement.empty()) replacement = NewReplacement(Category::kMac);
  const std::string new_digits = DigitsOf(replacement);
  for (const char* const separator : {"", ":", "-"}) {
    Remember(Category::kMac, Separated(digits, separator), Separated(new_digits, separator));
  }
}

std::string Secrets::NewReplacement(Category category) {
  std::size_t& number = numbers_[static_cast<std::size_t>(category)];
  for (;;) {
    std::string replacement = ReplacementOf(category, ++number);
    if (texts_.find(replacement) == std::string::npos) return replacement;
  }
}

void Secrets::Remember(Category category, std::string_view secret, const std::string& replacement) {
  Secret added = {category, LowerCase(secret), replacement};
  if (std::ranges::count(secrets_, added.text, &Secret::text) > 0) return;
  const auto shorter = std::ranges::find_if(
      secrets_, [&](const Secret& known) { return known.text.size() < added.text.size(); });
  secrets_.insert(shorter, std::move(added));
}

const Secrets::Secret* Secrets::FindAt(std::string_view lower_case, std::size_t at) const {
  const auto found = std::ranges::find_if(secrets_, [&](const Secret& secret) {
    const std::size_t size = secret.text.size();
    return lower_case.substr(at).starts_with(secret.text) &&
           (size >= kMinSizeInWords || IsWord(lower_case, at, size));
  });
  return found != secrets_.end() ? &*found : nullptr;
}

std::string Secrets::Replaced(std::string_view text) {
  const std::string lower_case = LowerCase(text);
  std::string replaced;
  for (std::size_t at = 0; at < text.size();) {
    const Secret* const secret = FindAt(lower_case, at);
    if (secret == nullptr) {
      replaced += text[at++];
      continue;
    }
    Count(secret->category);
    replaced += secret->replacement;
    at += secret->text.size();
  }
  return replaced;
}

std::vector<Category> Secrets::RemainingIn(std::string_view text) const {
  const std::string lower_case = LowerCase(text);
  std::set<Category> categories;
  for (std::size_t at = 0; at < lower_case.size(); ++at) {
    const Secret* const secret = FindAt(lower_case, at);
    if (secret != nullptr) categories.insert(secret->category);
  }
  return {categories.begin(), categories.end()};
}

}  // namespace ia::cli
