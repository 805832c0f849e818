// Any bytes as a PPD.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "fuzz/input.h"
#include "info_common/ppd_file.h"
#include "tests/info_common/ppd_model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const int descriptor = memfd_create("ppd", 0);
  ia_fuzz::Require(write(descriptor, data, size) == static_cast<ssize_t>(size));
  lseek(descriptor, 0, SEEK_SET);
  cups_file_t* const file = cupsFileOpenFd(descriptor, "r");
  const ia_test::Table table(ia::ReadPpd(file));
  cupsFileClose(file);

  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const bool is_unpacked_by_libcups = bytes.starts_with("\x1f\x8b");
  ia_fuzz::Require(is_unpacked_by_libcups ||
                   ia_test::EntriesOf(table.get()) == ia_test::EntriesOfPpd(bytes));
  return 0;
}
