#ifndef TESTS_INFO_COMMON_PPD_MODEL_H_
#define TESTS_INFO_COMMON_PPD_MODEL_H_

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "tests/info_common/table_model.h"

namespace ia_test {

// What a line parser answers; key and value count only when the result is positive.
struct ParsedLine {
  std::int32_t result;
  std::string key;
  std::string value;
  bool operator==(const ParsedLine&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const ParsedLine& line) {
  return out << line.result << " [" << line.key << "] [" << line.value << "]";
}

// Plain readings of the line, block and insertion rules, the measure for the fast ones. Texts are
// taken up to their first NUL.
ParsedLine ParseOptionLine(std::string_view text, std::int64_t size);
ParsedLine ParseUiValueLine(std::string_view text);
Entries EntriesOfPpd(std::string_view bytes);

}  // namespace ia_test

#endif  // TESTS_INFO_COMMON_PPD_MODEL_H_
