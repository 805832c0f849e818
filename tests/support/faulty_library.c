/* Communication libraries with all entry points, which the build gives one fault each. Each call
 * returns 0, as in a stub. */
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void crash(void) {
  signal(SIGSEGV, SIG_DFL);
  raise(SIGSEGV);
}

static void hang(void) {
  for (;;) pause();
}

static void leave(void) { exit(0); }

/* As a library that leaks without end. */
static void grab(void) {
  for (;;) {
    char* memory = malloc(1 << 20);
    if (!memory) abort();
    memset(memory, 1, 1 << 20);
  }
}

static void nothing(void) {}

#define X(name)    \
  int name(void) { \
    WHEN_CALLED(); \
    return 0;      \
  }
#include "tests/support/entry_points.inc"
#undef X

__attribute__((constructor)) static void load(void) { WHEN_LOADED(); }

__attribute__((destructor)) static void unload(void) { WHEN_UNLOADED(); }

void (*const unused[])(void) = {crash, hang, leave, grab, nothing};
