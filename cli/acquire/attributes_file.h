// Printer attributes in a file, in the form that ippeveprinter(1) plays and ipptoolfile(5)
// describes: lines such as
//
//   ATTR keyword sides-supported "one-sided","two-sided-long-edge"
#ifndef INFO_ANALYZE_CLI_ACQUIRE_ATTRIBUTES_FILE_H_
#define INFO_ANALYZE_CLI_ACQUIRE_ATTRIBUTES_FILE_H_

#include <cups/ipp.h>

#include <string>
#include <string_view>

#include "cli/acquire/printer_attributes.h"

namespace ia::cli {

// The text of a file with the attributes that the message has of the printer, dates excepted.
[[nodiscard]] std::string FormatAttributes(ipp_t& message);

// The attributes in the text of a file, as ValuesOf() has them; throws a Failure that names the
// line.
[[nodiscard]] AttributeValues ParseAttributes(std::string_view text, const std::string& file);

// The attributes in a file; throws a Failure.
[[nodiscard]] AttributeValues ReadAttributesFile(const std::string& file);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_ATTRIBUTES_FILE_H_
