// The attributes of a printer, as it answers a Get-Printer-Attributes request (RFC 8011, section
// 4.2.5), in the form of texts.
#ifndef INFO_ANALYZE_CLI_ACQUIRE_PRINTER_ATTRIBUTES_H_
#define INFO_ANALYZE_CLI_ACQUIRE_PRINTER_ATTRIBUTES_H_

#include <cups/ipp.h>

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "cli/printer/connection.h"

namespace ia::cli {

// The attributes that a device is asked for, all that documents and profiles can depend on. They
// are asked for by name, because devices leave some out of "all".
inline constexpr auto kRequestedAttributes = std::to_array<const char*>({
    "destination-uri-schemes-supported",
    "finishing-template-supported",
    "finishings-supported",
    "folding-direction-supported",
    "ipp-features-supported",
    "job-account-id-supported",
    "job-password-supported",
    "media-col-ready",
    "media-source-supported",
    "media-type-supported",
    "output-bin-supported",
    "printer-device-id",
    "printer-dns-sd-name",
    "printer-finisher",
    "printer-finisher-description",
    "printer-firmware-string-version",
    "printer-info",
    "printer-input-tray",
    "printer-kind",
    "printer-make-and-model",
    "printer-mandatory-job-attributes",
    "printer-name",
    "printer-output-tray",
    "printer-resolution-supported",
    "printer-state-reasons",
    "printer-uuid",
    "punching-reference-edge-supported",
    "sides-supported",
    "trimming-type-supported",
});

// What a message may have at most. The largest answers of devices have about 400 attributes, 4,000
// values and 100 KiB.
inline constexpr std::size_t kMaxMessageSize = std::size_t{1} << 20;
inline constexpr std::size_t kMaxAttributes = 4096;
inline constexpr std::size_t kMaxValues = 65536;
inline constexpr std::size_t kMaxNesting = 8;

class MessageFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Reads an IPP message (RFC 8010, section 3); throws a MessageFault for what is none or too large.
[[nodiscard]] IppPtr ReadMessage(std::string_view bytes);

// By name, each in the device's order:
// - texts as CleanText() makes them, keywords and URIs;
// - numbers in decimal, "true" and "false", resolutions such as "600dpi" or "600x1200dpi";
// - enumerated values by their keyword, those without one in decimal;
// - octet strings byte by byte;
// - of collections the fields that are texts or numbers, as ParseFields() reads them.
// Attributes without a value (out-of-band ones, RFC 8011, section 5.1) and dates are left out.
using AttributeValues = std::map<std::string, std::vector<std::string>, std::less<>>;

[[nodiscard]] AttributeValues ValuesOf(ipp_t& message);

// Whether values of the type are texts, names, keywords, URIs and the like.
[[nodiscard]] bool IsText(ipp_tag_t tag);

// "600dpi" or "600x1200dpi"; the units are an ipp_res_t or what a device sends in its place.
[[nodiscard]] std::string ResolutionText(int cross_feed, int feed, int units);

// The values of an attribute; none when it is missing.
[[nodiscard]] const std::vector<std::string>& FindValues(const AttributeValues& attributes,
                                                         std::string_view name);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_PRINTER_ATTRIBUTES_H_
