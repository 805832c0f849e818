/* A warning in a source of the parent is none of the library's business. */
static int unused;
