#ifndef INFO_ANALYZE_CLI_SNAPSHOT_ADDRESSES_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_ADDRESSES_H_

#include <string>
#include <string_view>
#include <vector>

namespace ia::cli {

enum class AddressType { kIpv4, kIpv6, kMac };

struct Address {
  AddressType type;
  std::string text;   // as found
  std::string plain;  // the same for all spellings of one address
};

// The addresses in a text, without those that every machine has, such as 127.0.0.1 and ::1.
[[nodiscard]] std::vector<Address> FindAddresses(std::string_view text);

// Six bytes as twelve hexadecimal digits, between which there may be colons or hyphens.
[[nodiscard]] bool IsMac(std::string_view text);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_ADDRESSES_H_
