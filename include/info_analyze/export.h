/** @file
 *  Linkage of the library's functions; every other header includes this one. */
#ifndef INFO_ANALYZE_EXPORT_H_
#define INFO_ANALYZE_EXPORT_H_

#if defined(__GNUC__)
/** Marks the tables that the library exports. */
#define IA_EXPORT_DATA __attribute__((visibility("default")))
/** Has the compiler check the arguments of a function by its format, as those of printf(). */
#define IA_PRINTF(format_index, first_argument) \
  __attribute__((format(printf, format_index, first_argument)))
#else
#define IA_EXPORT_DATA
#define IA_PRINTF(format_index, first_argument)
#endif

#if defined(__GNUC__) && !defined(__clang__)
/** Marks the functions that the library exports. Two with the same body stay apart, so that
 *  debuggers, profilers and backtraces show each under its own name. */
#define IA_EXPORT __attribute__((visibility("default"), no_icf))
#else
#define IA_EXPORT IA_EXPORT_DATA
#endif

#ifdef __cplusplus
/** Declares in C++ that a function does not throw. */
#define IA_NOEXCEPT noexcept
/** Begins declarations with C linkage. */
#define IA_BEGIN_DECLS extern "C" {
/** Ends declarations with C linkage. */
#define IA_END_DECLS }
#else
#define IA_NOEXCEPT
#define IA_BEGIN_DECLS
#define IA_END_DECLS
#endif

#endif /* INFO_ANALYZE_EXPORT_H_ */
