/* Queries of options call none of these: they read documents. Give them what your own programs need
 * to talk to printers. */
#include <stddef.h>

#include "info_analyze/communication_library.h"

int32_t qvsktwrapQueueListNew(const char* driver_folder, intptr_t word1, intptr_t word2,
                              intptr_t word3, intptr_t word4) {
  (void)driver_folder;
  (void)word1;
  (void)word2;
  (void)word3;
  (void)word4;
  return -1;
}

int32_t qvsktwrapQueueListDestroy(intptr_t word1, intptr_t word2, intptr_t word3, intptr_t word4) {
  (void)word1;
  (void)word2;
  (void)word3;
  (void)word4;
  return -1;
}

void* qvsktwrapNew(intptr_t word1, intptr_t word2, const char* driver_folder, int32_t port) {
  (void)word1;
  (void)word2;
  (void)driver_folder;
  (void)port;
  return NULL;
}

int32_t qvsktwrapControl(void* socket, intptr_t word1, intptr_t word2, intptr_t word3,
                         intptr_t word4, intptr_t word5) {
  (void)socket;
  (void)word1;
  (void)word2;
  (void)word3;
  (void)word4;
  (void)word5;
  return -1;
}

int32_t qvsktwrapDestroy(void* socket) {
  (void)socket;
  return -1;
}
