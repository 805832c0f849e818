#include "cli/snapshot/addresses.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexadecimal = "0123456789abcdefABCDEF";
constexpr std::size_t kMacLength = 17;
constexpr std::size_t kMacDigits = 12;

[[nodiscard]] bool IsOneOf(char byte, std::string_view bytes) {
  return bytes.find(byte) != std::string_view::npos;
}

[[nodiscard]] bool IsWordByte(char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
         (byte >= 'A' && byte <= 'Z');
}

// The longest prefix of those bytes.
[[nodiscard]] std::string_view RunOf(std::string_view text, const std::string& bytes) {
  return text.substr(0, text.find_first_not_of(bytes));
}

[[nodiscard]] std::string MacDigits(std::string_view mac) {
  std::string digits;
  for (const char byte : mac) {
    if (IsOneOf(byte, kHexadecimal)) digits += byte;
  }
  return LowerCase(digits);
}

[[nodiscard]] bool HasSeparators(std::string_view text) {
  return text.size() == kMacLength && (text[2] == ':' || text[2] == '-');
}

[[nodiscard]] std::optional<Address> MacAt(std::string_view text) {
  const std::string_view mac = text.substr(0, kMacLength);
  if (!HasSeparators(mac) || !IsMac(mac)) return std::nullopt;
  if (text.size() > kMacLength && IsOneOf(text[kMacLength], "0123456789abcdefABCDEF:-")) {
    return std::nullopt;
  }
  return Address{AddressType::kMac, std::string(mac), MacDigits(mac)};
}

template <class Bytes>
[[nodiscard]] std::optional<std::string> PlainIp(int family, const std::string& text) {
  Bytes bytes{};
  if (inet_pton(family, text.c_str(), &bytes) != 1) return std::nullopt;
  std::array<char, INET6_ADDRSTRLEN> plain{};
  inet_ntop(family, &bytes, plain.data(), plain.size());
  return plain.data();
}

[[nodiscard]] std::optional<Address> Ipv6At(std::string_view text) {
  std::string run(RunOf(text, std::string(kHexadecimal) + ":."));
  if (run.size() >= INET6_ADDRSTRLEN || std::ranges::count(run, ':') < 2) return std::nullopt;
  const bool ends_in_word = run.size() < text.size() && IsWordByte(text[run.size()]);
  if (ends_in_word) return std::nullopt;
  for (; !run.empty(); run.pop_back()) {
    if (auto plain = PlainIp<in6_addr>(AF_INET6, run)) {
      return Address{AddressType::kIpv6, run, *plain};
    }
    if (run.back() != ':' && run.back() != '.') return std::nullopt;
  }
  return std::nullopt;
}

[[nodiscard]] std::optional<Address> Ipv4At(std::string_view text) {
  std::string run(RunOf(text, std::string(kDigits) + "."));
  if (run.ends_with('.')) run.pop_back();
  if (run.size() < text.size() && IsWordByte(text[run.size()])) return std::nullopt;
  if (auto plain = PlainIp<in_addr>(AF_INET, run)) {
    return Address{AddressType::kIpv4, run, *plain};
  }
  return std::nullopt;
}

[[nodiscard]] std::optional<Address> AddressAt(std::string_view text) {
  if (auto mac = MacAt(text)) return mac;
  if (auto ipv6 = Ipv6At(text)) return ipv6;
  return Ipv4At(text);
}

[[nodiscard]] bool IsOfEveryMachine(const Address& address) {
  return address.plain == "::" || address.plain == "::1" || address.plain == "0.0.0.0" ||
         address.plain == "255.255.255.255" || address.plain == "000000000000" ||
         address.plain == "ffffffffffff" ||
         (address.type == AddressType::kIpv4 && address.plain.starts_with("127."));
}

[[nodiscard]] bool CanStartAt(std::string_view text, std::size_t at) {
  if (!IsOneOf(text[at], kHexadecimal) && text[at] != ':') return false;
  if (at == 0) return true;
  const char before = text[at - 1];
  const bool continues_number = before == '.' && at > 1 && IsOneOf(text[at - 2], kDigits);
  return !IsWordByte(before) && !continues_number;
}

}  // namespace

std::vector<Address> FindAddresses(std::string_view text) {
  std::vector<Address> addresses;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!CanStartAt(text, at)) continue;
    const auto address = AddressAt(text.substr(at));
    if (!address) continue;
    if (!IsOfEveryMachine(*address)) addresses.push_back(*address);
    at += address->text.size() - 1;
  }
  return addresses;
}

bool IsMac(std::string_view text) {
  if (text.size() == kMacDigits) return RunOf(text, std::string(kHexadecimal)) == text;
  if (!HasSeparators(text)) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_separator = i % 3 == 2;
    if (is_separator ? text[i] != text[2] : !IsOneOf(text[i], kHexadecimal)) return false;
  }
  return true;
}

}  // namespace ia::cli
