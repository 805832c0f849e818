// The queue's PPD: fetched from the CUPS server into a temporary file, read, and deleted.
#include "info_common/ppd_file.h"

#include <cups/ppd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "info_common/owned.h"
#include "info_common/ppd_reader.h"

namespace ia {
namespace {

constexpr int kOpenRetries = 60;
constexpr unsigned kRetrySeconds = 1;

// Keeps errno, by which the caller decides whether to retry.
void DiscardTemporaryFile(cups_file_t* file, const char* path) noexcept {
  const int reason = errno;
  if (file != nullptr) cupsFileClose(file);
  unlink(path);
  errno = reason;
}

// Retries only for a lack of file descriptors, which may pass.
cups_file_t* OpenPpd(const char* queue_name, CString& path) noexcept {
  for (int retries = 0;; ++retries) {
    char* temporary_path = nullptr;
    errno = 0;  // libcups leaves it alone on some failures, and a stale EMFILE would make us wait
    cups_file_t* const file = wrapCupsFileOpen2(queue_name, "r", &temporary_path);
    path.reset(temporary_path);
    if (file != nullptr || errno != EMFILE || retries == kOpenRetries) return file;
    sleep(kRetrySeconds);
  }
}

}  // namespace

OptTable* ReadPpd(cups_file_t* file) noexcept {
  PpdReader reader;
  char line[kPpdLineSize];
  for (;;) {
    std::memset(line, 0, kPpdLineHead);
    if (cupsFileGets(file, line, sizeof line) == nullptr) break;
    reader.TakeLine(line);
  }
  return reader.TakeTable();
}

}  // namespace ia

struct _cups_file_s* wrapCupsFileOpen2(const char* queue_name, const char* mode,
                                       char** temporary_path) noexcept {
  if (queue_name == nullptr || mode == nullptr || temporary_path == nullptr) return nullptr;
// libcups 2 deprecates the call without offering another way to a queue's whole PPD.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  const char* const path = cupsGetPPD(queue_name);
#pragma GCC diagnostic pop
  if (path == nullptr) return nullptr;
  cups_file_t* const file = cupsFileOpen(path, mode);
  ia::CString copy = file != nullptr ? ia::Duplicate(path) : nullptr;
  if (!copy) {
    ia::DiscardTemporaryFile(file, path);
    return nullptr;
  }
  *temporary_path = copy.release();
  return file;
}

int32_t wrapCupsFileClose2(struct _cups_file_s* file, const char* path) noexcept {
  if (file == nullptr || path == nullptr) return -1;
  unlink(path);
  return cupsFileClose(file);
}

OptTable* info_common_optlist_create(const char* queue_name) noexcept {
  if (queue_name == nullptr) return nullptr;
  ia::CString path;
  cups_file_t* const file = ia::OpenPpd(queue_name, path);
  if (file == nullptr) return nullptr;
  OptTable* const table = ia::ReadPpd(file);
  wrapCupsFileClose2(file, path.get());
  return table;
}
