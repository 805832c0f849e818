/** @file
 *  Linkage of the library's functions; every other header includes this one. */
#ifndef INFO_ANALYZE_EXPORT_H_
#define INFO_ANALYZE_EXPORT_H_

#if defined(__GNUC__)
#define IA_EXPORT __attribute__((visibility("default")))
#define IA_PRINTF(format_index, first_argument) \
  __attribute__((format(printf, format_index, first_argument)))
#else
#define IA_EXPORT
#define IA_PRINTF(format_index, first_argument)
#endif

#ifdef __cplusplus
#define IA_NOEXCEPT noexcept
#define IA_BEGIN_DECLS extern "C" {
#define IA_END_DECLS }
#else
#define IA_NOEXCEPT
#define IA_BEGIN_DECLS
#define IA_END_DECLS
#endif

#endif /* INFO_ANALYZE_EXPORT_H_ */
