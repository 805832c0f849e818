// The lying library, loaded as a driver's communication library is.
#ifndef FUZZ_LYING_BIDI_H_
#define FUZZ_LYING_BIDI_H_

#include <dlfcn.h>

#include <cstdint>
#include <string_view>

#include "fuzz/input.h"
#include "fuzz/lying_library.h"
#include "info_analyze/bidi.h"

namespace ia_fuzz {

// Loaded once and for the whole process.
inline BidiContext* LyingBidi() {
  static BidiContext* const context = Bidi_Create(IA_LYING_DRIVER_FOLDER);
  Require(context != nullptr);
  return context;
}

inline void AttachScript(std::string_view script, std::int32_t max_items) {
  static const auto attach = [] {
    LyingBidi();
    constexpr char kPath[] = IA_LYING_DRIVER_FOLDER "/Bidi/libmqpd_util.so";
    void* const handle = dlopen(kPath, RTLD_NOW | RTLD_NOLOAD);
    Require(handle != nullptr);
    return reinterpret_cast<decltype(&lying_attach)>(dlsym(handle, "lying_attach"));
  }();
  attach(script.data(), script.size(), max_items);
}

}  // namespace ia_fuzz

#endif  // FUZZ_LYING_BIDI_H_
