#include "queue/driver_family.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "info_analyze/device_uri.h"

namespace ia {
namespace {

// The network library is installed under its ".dylib" name on every system.
constexpr auto kEndpoints = std::to_array<Endpoint>({
    {"net:", "vxio_tcpip.dylib"},
    {"net6:", "vxio_tcpip.dylib"},
    {"mdns:", "vxio_tcpip.dylib"},
    {"usb://", "libvxio_usb.so"},
    {"ncap_usb_cdc://", "libvxio_usb_cdc.so"},
    {"notuse:", ""},
});

// "ps" begins "ps2" and "psmf", as their folders do, so these three rows want the whole text.
// clang-format off
constexpr auto kFamilies = std::to_array<DriverFamily>({
    {.pdl_type = "zeta6", .folder = "/Library/Printers/Vorel/CUPSZETA6", .match = Match::kPrefix, .suffix = "/Vorel/CUPSZETA6", .port = 59788, .data_port = 59688},
    {.pdl_type = "tau2", .folder = "/Library/Printers/Vorel/CUPSTAU2", .match = Match::kPrefix, .suffix = "/Vorel/CUPSTAU2", .port = 59789, .data_port = 59689},
    {.pdl_type = "kappa2", .folder = "/Library/Printers/Vorel/CUPSKAPPA2", .match = Match::kPrefix, .suffix = "/Vorel/CUPSKAPPA2", .port = 59790, .data_port = 59690},
    {.pdl_type = "ps", .folder = "/Library/Printers/Vorel/CUPSPS", .match = Match::kExact, .suffix = "/Vorel/CUPSPS", .port = 59791, .data_port = 59691},
    {.pdl_type = "ps2", .folder = "/Library/Printers/Vorel/CUPSPS2", .match = Match::kExact, .suffix = "/Vorel/CUPSPS2", .port = 59794, .data_port = 59694},
    {.pdl_type = "psmf", .folder = "/Library/Printers/Vorel/CUPSPSMF", .match = Match::kExact, .suffix = "/Vorel/CUPSPSMF", .port = 0, .data_port = 0},
    {.pdl_type = "fax", .folder = "/Library/Printers/Vorel/CUPSFAX", .match = Match::kPrefix, .suffix = "/Vorel/CUPSFAX", .port = 59792, .data_port = 59692},
    {.pdl_type = "delta", .folder = "/Library/Printers/Vorel/CUPSDELTA", .match = Match::kPrefix, .suffix = "/Vorel/CUPSDELTA", .port = 59793, .data_port = 59693},
    {.pdl_type = "", .folder = "/Library/Printers/Vorel/CUPSSIGMA", .match = Match::kPrefix, .suffix = "/Vorel/CUPSSIGMA", .port = 59787, .data_port = 59687},
    {.pdl_type = "omega", .folder = "/Library/Printers/Vorel/CUPSOMEGA", .match = Match::kPrefix, .suffix = "/Vorel/CUPSOMEGA", .port = 0, .data_port = 0},
    {.pdl_type = "mf_printer", .folder = "/Library/Printers/Vorel/CUPS_MF_Printer", .match = Match::kPrefix, .suffix = "/Vorel/CUPS_MF_Printer", .port = 0, .data_port = 0},
    {.pdl_type = "printer", .folder = "/Library/Printers/Vorel/CUPS_Printer", .match = Match::kPrefix, .suffix = "/Vorel/CUPS_Printer", .port = 0, .data_port = 0},
    {.pdl_type = "sfp", .folder = "/usr/lib/Vorel/CUPS_SFP", .match = Match::kPrefix, .suffix = "", .port = 0, .data_port = 0},
});
// clang-format on

bool Matches(std::string_view text, std::string_view entry, Match match) noexcept {
  return match == Match::kExact ? text == entry : text.starts_with(entry);
}

template <class Row>
const Row* FirstOf(std::span<const Row> rows, auto fits) noexcept {
  const auto hit = std::ranges::find_if(rows, fits);
  return hit != rows.end() ? &*hit : nullptr;
}

}  // namespace

const Endpoint* FindEndpoint(std::string_view uri) noexcept {
  return FirstOf<Endpoint>(
      kEndpoints, [&](const Endpoint& endpoint) { return uri.starts_with(endpoint.prefix); });
}

const DriverFamily* FindFamilyByPdlType(std::string_view pdl_type) noexcept {
  return FirstOf<DriverFamily>(kFamilies, [&](const DriverFamily& family) {
    return !family.pdl_type.empty() && Matches(pdl_type, family.pdl_type, family.match);
  });
}

const DriverFamily* FindFamilyByFolder(std::string_view folder) noexcept {
  return FirstOf<DriverFamily>(kFamilies, [&](const DriverFamily& family) {
    return Matches(folder, family.folder, family.match);
  });
}

}  // namespace ia

const char* DriverFamily_GetFolderPath(int32_t family) noexcept {
  if (family < 0 || family >= std::ssize(ia::kFamilies)) return nullptr;
  return ia::kFamilies[static_cast<std::size_t>(family)].folder.data();
}
