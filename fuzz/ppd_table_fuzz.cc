// Any bytes as a PPD.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "info_common/ppd_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const int descriptor = memfd_create("ppd", 0);
  if (write(descriptor, data, size) != static_cast<ssize_t>(size)) std::abort();
  lseek(descriptor, 0, SEEK_SET);
  cups_file_t* const file = cupsFileOpenFd(descriptor, "r");
  info_common_optlist_destroy(ia::ReadPpd(file));
  cupsFileClose(file);
  return 0;
}
