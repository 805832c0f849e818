/** @file
 *  Text helpers for the components of the driver package. The tb_util_ functions do what their
 *  util_ namesakes do. None of them knows the size of its destination: that is the caller's care.
 */
#ifndef INFO_ANALYZE_STRING_HELPERS_H_
#define INFO_ANALYZE_STRING_HELPERS_H_

#include <stdint.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** Formats as printf() does, into a buffer of its own first: an argument may be the destination.
 *  @param destination  receives the text and its NUL and must have room for them; NULL is refused
 *  @param format       format of printf(); NULL is refused
 *  @return length of the text; -1 for a NULL argument, a text that cannot be formatted or exhausted
 *          memory, and then the destination is untouched */
IA_EXPORT int32_t util_sprintf(char* destination, const char* format, ...) IA_NOEXCEPT
    IA_PRINTF(2, 3);

/** util_sprintf() for the queue and path families.
 *  @param destination  as in util_sprintf()
 *  @param format       as in util_sprintf()
 *  @return as util_sprintf() */
IA_EXPORT int32_t tb_util_sprintf(char* destination, const char* format, ...) IA_NOEXCEPT
    IA_PRINTF(2, 3);

/** Copies a text; the two may overlap.
 *  @param destination  receives the text and its NUL and must have room for them
 *  @param source       text
 *  @return @p destination, unchanged when an argument is NULL */
IA_EXPORT char* util_strcpy(char* destination, const char* source) IA_NOEXCEPT;

/** util_strcpy() for the queue and path families.
 *  @param destination  as in util_strcpy()
 *  @param source       as in util_strcpy()
 *  @return as util_strcpy() */
IA_EXPORT char* tb_util_strcpy(char* destination, const char* source) IA_NOEXCEPT;

/** Appends a text; the two may overlap.
 *  @param destination  text that is extended; must have room for the whole
 *  @param source       text
 *  @return @p destination, unchanged when an argument is NULL */
IA_EXPORT char* util_strcat(char* destination, const char* source) IA_NOEXCEPT;

/** util_strcat() for the queue and path families.
 *  @param destination  as in util_strcat()
 *  @param source       as in util_strcat()
 *  @return as util_strcat() */
IA_EXPORT char* tb_util_strcat(char* destination, const char* source) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_STRING_HELPERS_H_ */
