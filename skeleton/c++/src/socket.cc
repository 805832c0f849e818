// Queries of options call none of these: they read documents. Give them what your own programs need
// to talk to printers.
#include <cstdint>

#include "info_analyze/communication_library.h"

std::int32_t qvsktwrapQueueListNew(const char*, std::intptr_t, std::intptr_t, std::intptr_t,
                                   std::intptr_t) {
  return -1;
}

std::int32_t qvsktwrapQueueListDestroy(std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t) {
  return -1;
}

void* qvsktwrapNew(std::intptr_t, std::intptr_t, const char*, std::int32_t) { return nullptr; }

std::int32_t qvsktwrapControl(void*, std::intptr_t, std::intptr_t, std::intptr_t, std::intptr_t,
                              std::intptr_t) {
  return -1;
}

std::int32_t qvsktwrapDestroy(void*) { return -1; }
