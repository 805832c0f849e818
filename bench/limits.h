// What a benchmark found too slow, so that the whole run can tell.
#ifndef BENCH_LIMITS_H_
#define BENCH_LIMITS_H_

namespace ia_bench {

inline bool g_is_limit_exceeded = false;

}  // namespace ia_bench

#endif  // BENCH_LIMITS_H_
