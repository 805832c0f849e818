// The tables for device URIs: endpoints and driver families.
#ifndef QUEUE_DRIVER_FAMILY_H_
#define QUEUE_DRIVER_FAMILY_H_

#include <cstdint>
#include <string_view>

namespace ia {

// Separates the printer's address from the driver family's key in a device URI.
inline constexpr char kPdlTypeMark[] = "/PDLType=";

// How a printer is reached.
struct Endpoint {
  std::string_view prefix;   // of the device URI; NUL-terminated
  std::string_view library;  // file name of the library that talks to it; empty: none
};

enum class Match { kPrefix, kExact };

// The folders and ports of one installed driver.
struct DriverFamily {
  std::string_view pdl_type;  // key after "/PDLType="; empty: no URI selects this family
  std::string_view folder;    // installation folder
  Match match;                // how the key and the folder are compared
  std::string_view suffix;    // of the cache folder; empty: no cache
  std::int32_t port;          // 0: no ports
  std::int32_t data_port;
};

// Each returns the first row that matches, or null.
[[nodiscard]] const Endpoint* FindEndpoint(std::string_view uri) noexcept;
[[nodiscard]] const DriverFamily* FindFamilyByPdlType(std::string_view pdl_type) noexcept;
[[nodiscard]] const DriverFamily* FindFamilyByFolder(std::string_view folder) noexcept;

}  // namespace ia

#endif  // QUEUE_DRIVER_FAMILY_H_
