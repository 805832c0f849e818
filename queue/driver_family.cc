#include "queue/driver_family.h"

#include <algorithm>
#include <array>
#include <span>

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
constexpr auto kFamilies = std::to_array<DriverFamily>({
    {"zeta6", "/Library/Printers/Vorel/CUPSZETA6", Match::kPrefix, "/Vorel/CUPSZETA6", 59788,
     59688},
    {"tau2", "/Library/Printers/Vorel/CUPSTAU2", Match::kPrefix, "/Vorel/CUPSTAU2", 59789, 59689},
    {"kappa2", "/Library/Printers/Vorel/CUPSKAPPA2", Match::kPrefix, "/Vorel/CUPSKAPPA2", 59790,
     59690},
    {"ps", "/Library/Printers/Vorel/CUPSPS", Match::kExact, "/Vorel/CUPSPS", 59791, 59691},
    {"ps2", "/Library/Printers/Vorel/CUPSPS2", Match::kExact, "/Vorel/CUPSPS2", 59794, 59694},
    {"psmf", "/Library/Printers/Vorel/CUPSPSMF", Match::kExact, "/Vorel/CUPSPSMF", 0, 0},
    {"fax", "/Library/Printers/Vorel/CUPSFAX", Match::kPrefix, "/Vorel/CUPSFAX", 59792, 59692},
    {"delta", "/Library/Printers/Vorel/CUPSDELTA", Match::kPrefix, "/Vorel/CUPSDELTA", 59793,
     59693},
    {"", "/Library/Printers/Vorel/CUPSSIGMA", Match::kPrefix, "/Vorel/CUPSSIGMA", 59787, 59687},
    {"omega", "/Library/Printers/Vorel/CUPSOMEGA", Match::kPrefix, "/Vorel/CUPSOMEGA", 0, 0},
    {"mf_printer", "/Library/Printers/Vorel/CUPS_MF_Printer", Match::kPrefix,
     "/Vorel/CUPS_MF_Printer", 0, 0},
    {"printer", "/Library/Printers/Vorel/CUPS_Printer", Match::kPrefix, "/Vorel/CUPS_Printer", 0,
     0},
    {"sfp", "/usr/lib/Vorel/CUPS_SFP", Match::kPrefix, "", 0, 0},
});
static_assert(kEndpoints.size() == 6 && kFamilies.size() == 13);

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
