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

// What attributes alone say. The table of finishing functions follows PWG 5100.1-2022, sections 5.2
// (finishings) and 7.1 (printer-finisher); trays and bins follow PWG 5100.13, sections 5.6.2 and
// 5.6.3; all others RFC 8011, section 5.4, and PWG 5100.11, section 4.
[[nodiscard]] DeviceFacts FindFacts(const AttributeValues& attributes);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_DEVICE_FACTS_H_
