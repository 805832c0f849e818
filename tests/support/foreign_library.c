/* A library that is not a communication library. */
int answer(void) { return 42; }
