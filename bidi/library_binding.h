// A loaded communication library: one list names the slots and the symbols, so none is forgotten.
#ifndef BIDI_LIBRARY_BINDING_H_
#define BIDI_LIBRARY_BINDING_H_

#include <type_traits>

#include "info_analyze/bidi.h"

struct BidiLibrary {
  void* handle;  // of dlopen()

#define IA_ENTRY_POINT(name) decltype(&::name) name;  // NOLINT(bugprone-macro-parentheses): a name
#include "bidi/entry_points.inc"
#undef IA_ENTRY_POINT
};
static_assert(std::is_standard_layout_v<BidiLibrary>);
static_assert(sizeof(BidiLibrary) == 37 * sizeof(void*));

#endif  // BIDI_LIBRARY_BINDING_H_
