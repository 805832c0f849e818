// Between C++ and the C interface: no exception may leave an entry point.
#ifndef BOUNDARY_H_
#define BOUNDARY_H_

#include <new>

// The result of the call; that of a failure when there is no memory.
template <class Result, class Call>
Result Guarded(Result of_failure, Call call) noexcept {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return of_failure;
  }
}

#endif
