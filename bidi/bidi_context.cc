#include <cstddef>
#include <cstdlib>
#include <memory>

#include "info_analyze/bidi.h"
#include "info_analyze/device_uri.h"
#include "info_common/owned.h"
#include "queue/driver_paths.h"

namespace ia {
namespace {

static_assert(offsetof(BidiContext, library) == 0);
static_assert(offsetof(BidiContext, socket) == sizeof(void*));
static_assert(offsetof(BidiContext, driver_folder) == 2 * sizeof(void*));
static_assert(offsetof(BidiContext, port) == 3 * sizeof(void*));

struct BidiDeleter {
  void operator()(BidiContext* context) const noexcept { Bidi_Destroy(context); }
};

BidiLibrary* LoadLibraryOfFolder(const char* driver_folder) noexcept {
  const CString path = CommunicationLibraryPath(driver_folder);
  return z_LoadBidiLibrary(path.get());  // null for a null path
}

}  // namespace
}  // namespace ia

BidiContext* Bidi_Create(const char* driver_folder) noexcept {
  if (driver_folder == nullptr) return nullptr;
  std::unique_ptr<BidiContext, ia::BidiDeleter> context(ia::NewZeroed<BidiContext>().release());
  if (!context) return nullptr;
  context->driver_folder = ia::Duplicate(driver_folder).release();
  if (context->driver_folder == nullptr) return nullptr;
  context->port = FolderPathToPortNumber(context->driver_folder);
  context->library = ia::LoadLibraryOfFolder(context->driver_folder);
  if (context->library == nullptr) return nullptr;
  return context.release();
}

void Bidi_Destroy(BidiContext* context) noexcept {
  if (context == nullptr) return;
  std::free(context->driver_folder);
  z_FreeBidiLibrary(context->library);
  std::free(context);
}
