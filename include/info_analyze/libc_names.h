/** @file
 *  The three functions that the library exports under names of the C library: strlcpy, strlcat and
 *  strnstr. They behave differently from the usual functions of these names. So this header, which
 *  info_analyze.h does not include, declares them as info_strlcpy, info_strlcat and info_strnstr,
 *  bound to the exported symbols.
 *
 *  The exports carry the symbol version INFO_ANALYZE_1, so a library that was linked against
 *  versioned functions of these names keeps its own. A program's own calls of these names are bound
 *  to the first library on its link line. To use the functions of a different library, even those
 *  of the C library (-lc), name that library before libinfo_analyze. A library with its own
 *  unversioned strlcpy, strlcat or strnstr gets those of libinfo_analyze when a program links it
 *  after libinfo_analyze. To prevent this, hide that library's copy, link it with
 *  -Bsymbolic-functions, or dlopen() libinfo_analyze with RTLD_LOCAL. */
#ifndef INFO_ANALYZE_LIBC_NAMES_H_
#define INFO_ANALYZE_LIBC_NAMES_H_

#include <stddef.h>
#include <stdint.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** Copies a text into a buffer, cut to fit; exported as strlcpy.
 *
 *  Nothing is written, not even a NUL, when an argument is NULL, @p source is empty or @p size is
 *  0 or 1.
 *
 *  @param destination  buffer
 *  @param source       text
 *  @param size         bytes of the buffer
 *  @return bytes copied without the NUL (not the length of @p source when it was cut); for a size
 *          of 0 the length of @p source; 0 for a NULL argument or a size of 1 */
IA_EXPORT size_t info_strlcpy(char* destination, const char* source, size_t size) IA_NOEXCEPT
    __asm__("strlcpy");

/** Appends a text to the one in a buffer, cut to fit; exported as strlcat.
 *  @param destination  buffer that holds a text
 *  @param source       text to append
 *  @param size         bytes of the buffer; when no byte is free, nothing is written
 *  @return length of the text in the buffer afterwards (not the length that was wanted); 0 for a
 *          NULL argument */
IA_EXPORT size_t info_strlcat(char* destination, const char* source, size_t size) IA_NOEXCEPT
    __asm__("strlcat");

/** Finds a text within the first bytes of a buffer; exported as strnstr. NUL bytes in the buffer
 *  do not end the search: the buffer must have @p length bytes.
 *  @param haystack  buffer
 *  @param needle    text; the empty one is found at the start
 *  @param length    bytes of the buffer
 *  @return borrowed pointer to the first place, or NULL when there is none, the length is below 1
 *          or an argument is NULL */
IA_EXPORT char* info_strnstr(const char* haystack, const char* needle, int32_t length) IA_NOEXCEPT
    __asm__("strnstr");

IA_END_DECLS

#endif /* INFO_ANALYZE_LIBC_NAMES_H_ */
