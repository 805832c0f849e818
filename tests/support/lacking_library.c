/* A communication library that does nothing. The build defines the name of one entry point as
 * something else, so that the library lacks it; how often each was called is still counted under
 * its own name, because ## does not see that definition. */
#define X(name)     \
  int calls_##name; \
  int name(void) {  \
    ++calls_##name; \
    return 0;       \
  }
#include "tests/support/entry_points.inc"
#undef X

#ifdef WITH_UNRESOLVED_CALL
int defined_nowhere(void);
int calls_into_the_void(void) { return defined_nowhere(); }
#endif
