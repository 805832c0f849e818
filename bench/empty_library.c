/* A library that holds nothing, to measure others beside it. */
typedef int nothing;
