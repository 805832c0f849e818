// What a device reports, in the terms of the nine documents.
#ifndef INFO_ANALYZE_CLI_ACQUIRE_DEVICE_FACTS_H_
#define INFO_ANALYZE_CLI_ACQUIRE_DEVICE_FACTS_H_

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/acquire/fields.h"
#include "cli/acquire/printer_attributes.h"
#include "info_analyze/device_documents.h"

namespace ia::cli {

// A key of a document, or of each item of a document's list.
struct DocumentKey {
  std::int32_t document;
  const char* name;
  std::int32_t type;  // IA_KEY_LONG, IA_KEY_STRING, IA_KEY_LONG_ELEMENTS or IA_KEY_STRING_ELEMENTS
};

// The keys of all documents, in the order in which they are written.
inline constexpr auto kDocumentKeys = std::to_array<DocumentKey>({
    {IA_DOCUMENT_ACCESSORIES, "hd", IA_KEY_LONG},
    {IA_DOCUMENT_ACCESSORIES, "memory", IA_KEY_LONG},
    {IA_DOCUMENT_FUNCTIONS, "duplex", IA_KEY_LONG},
    {IA_DOCUMENT_FUNCTIONS, "management", IA_KEY_LONG},
    {IA_DOCUMENT_FUNCTIONS, "trustprint", IA_KEY_LONG},
    {IA_DOCUMENT_FUNCTIONS, "securedprint", IA_KEY_LONG},
    {IA_DOCUMENT_FUNCTIONS, "authentication_user", IA_KEY_STRING},
    {IA_DOCUMENT_FUNCTIONS, "authentication_job_password", IA_KEY_STRING},
    {IA_DOCUMENT_FUNCTIONS, "authentication_f_code", IA_KEY_STRING},
    {IA_DOCUMENT_FUNCTIONS, "must_authentication", IA_KEY_LONG},
    {IA_DOCUMENT_SPECID, "version", IA_KEY_LONG},
    {IA_DOCUMENT_SPECID, "platform_name", IA_KEY_STRING},
    {IA_DOCUMENT_SPECID, "platform_version", IA_KEY_LONG},
    {IA_DOCUMENT_FINISHER_LIST, "type", IA_KEY_LONG},
    {IA_DOCUMENT_FINISHER_LIST, "name", IA_KEY_STRING},
    {IA_DOCUMENT_FINISHER_LIST, "binnum", IA_KEY_LONG},
    {IA_DOCUMENT_FINISHER_LIST, "func", IA_KEY_STRING_ELEMENTS},
    {IA_DOCUMENT_FINISHER_LIST, "detail_func", IA_KEY_STRING_ELEMENTS},
    {IA_DOCUMENT_BIN_LIST, "number", IA_KEY_LONG},
    {IA_DOCUMENT_BIN_LIST, "alias", IA_KEY_LONG_ELEMENTS},
    {IA_DOCUMENT_TRAY_LIST, "type", IA_KEY_LONG},
    {IA_DOCUMENT_TRAY_LIST, "alias", IA_KEY_LONG_ELEMENTS},
    {IA_DOCUMENT_TRAY_LIST, "capacity", IA_KEY_LONG},
    {IA_DOCUMENT_TRAY_LIST, "medium_type", IA_KEY_LONG},
    {IA_DOCUMENT_RESOLUTIONS, "resolution_300", IA_KEY_LONG},
    {IA_DOCUMENT_RESOLUTIONS, "resolution_600", IA_KEY_LONG},
    {IA_DOCUMENT_RESOLUTIONS, "resolution_1200", IA_KEY_LONG},
    {IA_DOCUMENT_FAX_LINE_LIST, "id", IA_KEY_LONG},
    {IA_DOCUMENT_FAX_LINE_LIST, "type", IA_KEY_LONG},
    {IA_DOCUMENT_FAX_LINE_LIST, "id_support", IA_KEY_LONG},
    {IA_DOCUMENT_FAX_LINE_LIST, "communication_mode", IA_KEY_LONG_ELEMENTS},
    {IA_DOCUMENT_DEVICENAME, "devicename", IA_KEY_STRING},
});

// The documents whose keys are those of the items of a list.
inline constexpr auto kListDocuments =
    std::to_array<std::int32_t>({IA_DOCUMENT_TRAY_LIST, IA_DOCUMENT_BIN_LIST,
                                 IA_DOCUMENT_FINISHER_LIST, IA_DOCUMENT_FAX_LINE_LIST});

[[nodiscard]] bool IsList(std::int32_t document);

// A number, a text or an array of one of them, and where it comes from: the name of an attribute,
// or the place of a rule in the profile.
struct KnownValue {
  nlohmann::ordered_json value;
  std::string source;
};

// The device itself, or one of its trays, output bins, finishing units and fax lines.
struct Part {
  std::string name;  // for people: "tray Cassette 1"
  Fields fields;     // what rules of a profile can match, beside the attributes of the device
  std::map<std::string, KnownValue, std::less<>> known;  // by key of its document
};

struct DeviceFacts {
  Part device;
  std::map<std::int32_t, std::vector<Part>> lists;  // by document; only those that are known
};

// What attributes alone say. A key whose attribute is missing is not known.
//
//   Key                    Attribute (standard): value
//
//   duplex                 sides-supported (RFC 8011, 5.2.8): 1 if a value begins with "two-sided-"
//   management             job-account-id-supported (PWG 5100.3): 1 if true
//   securedprint           job-password-supported (PWG 5100.11): 1 if above 0
//   resolution_300         printer-resolution-supported (RFC 8011, 5.2.12): 1 if it has 300dpi
//   resolution_600         the same with 600dpi
//   resolution_1200        the same with 1200dpi
//   devicename             printer-make-and-model (RFC 8011, 5.4.9): its text
//
// Trays are the values of printer-input-tray (PWG 5100.13), else those of media-source-supported
// (PWG 5100.7), except "auto". Bins are those of printer-output-tray (PWG 5100.13), else those of
// output-bin-supported (PWG 5100.2).
//
//   capacity of a tray     maxcapacity in printer-input-tray: its number, from 0 on
//
// Finishing units are the values of printer-finisher (PWG 5100.1). Values that follow each other
// with one description and different types are one unit. Without that attribute a device that
// reports finishing processes has one unit.
//
//   name                   printer-finisher-description (PWG 5100.1): its text
//   func                   by the unit's types in printer-finisher (finDeviceType, RFC 3806):
//     staple               stitcher
//     punch                puncher
//     folding              folder
//     trimming             trimmer
//     inserter             inserter
//   func                   what no unit has by its type, from finishings-supported (RFC 8011,
//                          5.2.6) and finishing-template-supported (PWG 5100.1), by keyword, or by
//                          number if it has none; for the only unit that can have it:
//     staple               staple*, saddle-stitch*, edge-stitch*, booklet-maker*, 20 to 49
//     punch                punch*, 70 to 89
//     folding              fold*, booklet-maker*, 90 to 109
//     trimming             trim*, 60 to 69
//   func                   also if the device has an attribute (PWG 5100.1) that only devices with
//                          the function have:
//     punch                punching-reference-edge-supported
//     folding              folding-direction-supported
//     trimming             trimming-type-supported
//   detail_func            the ways of punching, if only one unit punches and all ways are known;
//                          none if the unit does not punch; not known if it trims or inserts:
//     punching_2_holes     punch-dual*
//     punching_3_holes     punch-triple*
//     punching_multiple_holes  punch-multiple*
//     not known            punch-single*, punch-quad*, 70 to 89
//
// Keywords of CUPS, such as cups-punch-pair, count without "cups-", and numbers of vendors from
// 0x40000000 on without that.
[[nodiscard]] DeviceFacts FindFacts(const AttributeValues& attributes);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_DEVICE_FACTS_H_
