// The socket entry points and the process-wide clean-up. This communication library has no
// transport: no queue can be listed, and no connection made.
#include <cstdint>

#include "info_analyze/communication_library.h"

int32_t qvsktwrapQueueListNew(const char* /*driver_folder*/, intptr_t /*word1*/, intptr_t /*word2*/,
                              intptr_t /*word3*/, intptr_t /*word4*/) {
  return -1;
}

int32_t qvsktwrapQueueListDestroy(intptr_t /*word1*/, intptr_t /*word2*/, intptr_t /*word3*/,
                                  intptr_t /*word4*/) {
  return -1;
}

void* qvsktwrapNew(intptr_t /*word1*/, intptr_t /*word2*/, const char* /*driver_folder*/,
                   int32_t /*port*/) {
  return nullptr;
}

int32_t qvsktwrapControl(void* /*socket*/, intptr_t /*word1*/, intptr_t /*word2*/,
                         intptr_t /*word3*/, intptr_t /*word4*/, intptr_t /*word5*/) {
  return -1;
}

int32_t qvsktwrapDestroy(void* /*socket*/) { return 0; }

// Readers and writers share nothing, so there is nothing to release.
void qvxmlwrapCleanup(void) {}
