#include "bidi/library_binding.h"

#include <dlfcn.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "info_common/owned.h"

namespace ia {
namespace {

struct Symbol {
  const char* name;
  std::size_t slot;  // offset in BidiLibrary
};

constexpr auto kSymbols = std::to_array<Symbol>({
#define IA_ENTRY_POINT(name) {#name, offsetof(BidiLibrary, name)},
#include "bidi/entry_points.inc"
#undef IA_ENTRY_POINT
});
static_assert(kSymbols.size() == 36);

bool Bind(BidiLibrary& library, const Symbol& symbol) noexcept {
  void* const address = dlsym(library.handle, symbol.name);
  std::memcpy(reinterpret_cast<char*>(&library) + symbol.slot, &address, sizeof address);
  return address != nullptr;
}

}  // namespace
}  // namespace ia

BidiLibrary* z_LoadBidiLibrary(const char* library_path) noexcept {
  if (library_path == nullptr) return nullptr;
  ia::CPtr<BidiLibrary> library = ia::NewZeroed<BidiLibrary>();
  if (!library) return nullptr;
  library->handle = dlopen(library_path, RTLD_NOW);
  if (library->handle == nullptr) return nullptr;
  for (const ia::Symbol& symbol : ia::kSymbols) {
    if (!ia::Bind(*library, symbol)) {
      z_FreeBidiLibrary(library.release());
      return nullptr;
    }
  }
  return library.release();
}

void z_FreeBidiLibrary(BidiLibrary* library) noexcept {
  if (library == nullptr) return;
  if (library->qvxmlwrapCleanup != nullptr) library->qvxmlwrapCleanup();
  if (library->handle != nullptr) dlclose(library->handle);
  std::free(library);
}

const char* Bidi_GetEntryPointName(int32_t index) noexcept {
  if (index < 0 || index >= static_cast<int32_t>(ia::kSymbols.size())) return nullptr;
  return ia::kSymbols[static_cast<std::size_t>(index)].name;
}
