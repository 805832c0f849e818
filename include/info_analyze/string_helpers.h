/** @file
 *  Text helpers for the components of the driver package. A tb_util_ function does what the
 *  util_ function of the same name does. The functions do not know the size of the destination; the
 *  caller must ensure that it is large enough. */
#ifndef INFO_ANALYZE_STRING_HELPERS_H_
#define INFO_ANALYZE_STRING_HELPERS_H_

#include <stdint.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** Formats as printf() does. An argument may be the destination, because the text is formatted into
 *  a temporary buffer first.
 *  @param destination  buffer for the text and its NUL, large enough for both; NULL is refused
 *  @param format       format of printf(); NULL is refused
 *  @return length of the text; -1 for a NULL argument, a text that cannot be formatted or a failed
 *          allocation, and then the destination is unchanged */
IA_EXPORT int32_t util_sprintf(char* destination, const char* format, ...) IA_NOEXCEPT
    IA_PRINTF(2, 3);

/** util_sprintf() for the queue and path families.
 *  @param destination  as in util_sprintf()
 *  @param format       as in util_sprintf()
 *  @return as util_sprintf() */
IA_EXPORT int32_t tb_util_sprintf(char* destination, const char* format, ...) IA_NOEXCEPT
    IA_PRINTF(2, 3);

/** Copies a text; the two may overlap.
 *  @param destination  buffer for the text and its NUL, large enough for both
 *  @param source       text
 *  @return @p destination, unchanged when an argument is NULL */
IA_EXPORT char* util_strcpy(char* destination, const char* source) IA_NOEXCEPT;

/** util_strcpy() for the queue and path families.
 *  @param destination  as in util_strcpy()
 *  @param source       as in util_strcpy()
 *  @return as util_strcpy() */
IA_EXPORT char* tb_util_strcpy(char* destination, const char* source) IA_NOEXCEPT;

/** Appends a text; the two may overlap.
 *  @param destination  text to extend; its buffer must be large enough for the whole
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
