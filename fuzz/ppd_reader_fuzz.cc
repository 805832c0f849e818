// Any lines as those of a PPD, UI blocks included, without the file around them.
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/input.h"
#include "info_common/ppd_reader.h"
#include "tests/info_common/ppd_model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string lines(reinterpret_cast<const char*>(data), size);
  std::erase(lines, '\r');  // ends a line too, which is for the file's reader to know

  ia::PpdReader reader;
  char buffer[ia::kPpdLineSize] = {};
  for (std::string_view rest = lines; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n')).substr(0, sizeof buffer - 1);
    rest.remove_prefix(line.size());
    if (line.size() < sizeof buffer - 1 && !rest.empty()) rest.remove_prefix(1);
    // After a shorter line, the buffer still holds bytes of the previous one.
    std::memset(buffer, 0, ia::kPpdLineHead);
    std::memcpy(buffer, line.data(), line.size());
    buffer[line.size()] = '\0';
    reader.TakeLine(buffer);
  }
  const ia_test::Table table(reader.TakeTable());
  ia_fuzz::Require(ia_test::EntriesOf(table.get()) == ia_test::EntriesOfPpd(lines));
  return 0;
}
