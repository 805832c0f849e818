/** @file
 *  The option table: a list of key/value texts, read from a queue's PPD or filled by an analyser,
 *  and the ascending list of numbers in a PPD's value list. */
#ifndef INFO_ANALYZE_OPTION_TABLE_H_
#define INFO_ANALYZE_OPTION_TABLE_H_

#include <stdint.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** One entry of an option table. A table is the pointer to its first node; NULL is the empty table.
 *  The owner of that pointer owns all nodes and both texts of each. */
typedef struct OptTable {
  char* key;             /**< PPD keyword or other key; owned */
  char* value;           /**< value; owned */
  struct OptTable* next; /**< next entry, or NULL */
} OptTable;

/** One number of an ascending list; equal numbers are kept. NULL is the empty list. */
typedef struct LongValList {
  int32_t value;            /**< number */
  struct LongValList* next; /**< next number, or NULL */
} LongValList;

/** Limits of PPD lines. */
enum {
  IA_PPD_TEXT_SIZE = 256 /**< bytes of a buffer for a key or value: at most 254, a NUL, and one
                            unused byte */
};

/** The CUPS file handle of cups/file.h, named here so that this header needs no CUPS. */
struct _cups_file_s;

/** Reads the option lines of a print queue's PPD, fetched from the CUPS server.
 *
 *  Outside UI blocks, entries come from lines that begin with "*QV" and from "*%QVUIValue:" lines.
 *  The choices of the UI blocks QVSpecID and QVPlatformVersion become the comma-separated entries
 *  "QVValueListSpecID" and "QVValueListPlatformVersion". The table holds them in reverse order of
 *  appearance; of several lines with one key the last counts. A line whose key or value has more
 *  than 254 bytes is skipped.
 *
 *  While the process has too many open files, the call retries once a second, at most 60 times. No
 *  other call of the library waits.
 *
 *  @param queue_name  name of a CUPS queue; NULL is refused
 *  @return new table, released with info_common_optlist_destroy() or OptionList_Terminate(); NULL
 *          when the argument is NULL, the queue has no readable PPD, the PPD has no such line, or
 *          an allocation fails */
IA_EXPORT OptTable* info_common_optlist_create(const char* queue_name) IA_NOEXCEPT;

/** Releases a table: every node, key and value.
 *  @param head  table; NULL does nothing */
IA_EXPORT void info_common_optlist_destroy(OptTable* head) IA_NOEXCEPT;

/** Finds the first entry whose key begins with @p key (case-sensitive).
 *  @param head  table; NULL is refused
 *  @param key   prefix of the key; the empty text matches every entry; NULL is refused
 *  @return borrowed node, or NULL when there is none or an argument is NULL */
IA_EXPORT OptTable* info_common_optlist_find(OptTable* head, const char* key) IA_NOEXCEPT;

/** Copies the value of the first entry whose key equals @p key, ignoring case.
 *  @param head  table, not modified; NULL is refused
 *  @param key   PPD keyword; NULL is refused
 *  @return malloc'd text that the caller releases with free(); NULL when an argument is NULL, no
 *          entry has the key, or an allocation fails */
IA_EXPORT char* info_common_optlist_getvalue(const OptTable* head, const char* key) IA_NOEXCEPT;

/** Replaces the value of every entry whose key equals @p key, ignoring case.
 *  A value keeps its text when an allocation fails.
 *  @param head   table; NULL does nothing
 *  @param key    keyword; NULL does nothing
 *  @param value  new value, copied; NULL does nothing */
IA_EXPORT void info_common_optlist_changevalue(OptTable* head, const char* key,
                                               const char* value) IA_NOEXCEPT;

/** Appends an entry, or changes the value of the entries that have its key.
 *
 *  When some key of the table begins with @p key (case-sensitive), the call does what
 *  info_common_optlist_changevalue() does. So it does nothing when @p key is only a prefix of an
 *  existing key. Otherwise it appends a node with copies of both texts. An empty table has no node
 *  to append to: start it with info_common_optlist_additem_front().
 *
 *  @param head   table; NULL does nothing
 *  @param key    keyword, copied; NULL does nothing
 *  @param value  value, copied; NULL does nothing. When an allocation fails the table is unchanged
 */
IA_EXPORT void info_common_optlist_additem_back(OptTable* head, const char* key,
                                                const char* value) IA_NOEXCEPT;

/** Inserts an entry at the front, by the same rule as info_common_optlist_additem_back().
 *
 *  A caller starts the list that it passes to an analyser like this:
 *  @code
 *  OptionList* options = NULL;
 *  info_common_optlist_additem_front(&options, "", "");
 *  Analyze_Info_FromPrinter(analyzer, options, 0);
 *  @endcode
 *
 *  @param head   address of the table (NULL table: the empty one), changed when a node is added;
 *                NULL does nothing
 *  @param key    keyword, copied; NULL does nothing
 *  @param value  value, copied; NULL does nothing. When an allocation fails the table is unchanged
 */
IA_EXPORT void info_common_optlist_additem_front(OptTable** head, const char* key,
                                                 const char* value) IA_NOEXCEPT;

/** Splits the text of a "*QV" PPD line, given from its second byte, into key and value.
 *
 *  The key runs to the first blank, tab, line end, double quote or colon. After that byte, blanks,
 *  colons, blanks and double quotes are skipped, in this order. The value runs to the first
 *  tab, line end or double quote; blanks stay in it.
 *
 *  @param source  line; NULL is refused
 *  @param key     receives the key; a buffer of @p size bytes; NULL is refused
 *  @param value   receives the value; a buffer of @p size bytes; NULL is refused
 *  @param size    bytes of each buffer; a key or value has at most size - 2 bytes
 *  @return length of the value plus 1; -1 for a NULL argument or a key or value that is too long */
IA_EXPORT int32_t info_common_optlist_getoptkeyandvalue(const char* source, char* key, char* value,
                                                        int32_t size) IA_NOEXCEPT;

/** Splits the text after "*%QVUIValue:" of a PPD line into key and value.
 *
 *  The key runs to the first "(" or line end; blanks, tabs and asterisks are dropped from it. The
 *  value runs from there to the first ")" or line end.
 *
 *  @param source  text after the colon; NULL is refused
 *  @param key     receives the key; a buffer of 256 bytes; NULL is refused
 *  @param value   receives the value; a buffer of 256 bytes; NULL is refused
 *  @return length of the value plus 1; -1 for a NULL argument or for a key or value of more than
 *          254 bytes */
IA_EXPORT int32_t info_common_optlist_qvuivalue_getoptkeyandvalue(const char* source, char* key,
                                                                  char* value) IA_NOEXCEPT;

/** Adds a number to an ascending list, after the numbers that equal it.
 *  @param head   list, or NULL for the empty one
 *  @param value  number to add
 *  @return new head; NULL when an allocation fails, and then the whole old list is released */
IA_EXPORT LongValList* info_common_long_val_list_add(LongValList* head, int32_t value) IA_NOEXCEPT;

/** Releases a list of numbers.
 *  @param head  list; NULL does nothing */
IA_EXPORT void info_common_long_val_list_free(LongValList* head) IA_NOEXCEPT;

/** Turns comma-separated hexadecimal text into an ascending list of numbers.
 *
 *  Each item is read as strtol() with base 16 reads it: leading white space and "0x" are accepted,
 *  and other text counts as 0. A number beyond 32 bits becomes the nearest one that fits. Empty
 *  items are skipped.
 *
 *  @param text  text; NULL is refused
 *  @return new list, released with info_common_long_val_list_free(); NULL when the argument is
 *          NULL, the text holds no item, or an allocation fails */
IA_EXPORT LongValList* info_common_convert_hex_string_to_long_val_list(const char* text)
    IA_NOEXCEPT;

/** Fetches a queue's PPD into a temporary file and opens it.
 *  On failure the temporary file is deleted and errno is that of the failed step.
 *  @param queue_name      name of a CUPS queue; NULL is refused
 *  @param mode            mode of cupsFileOpen(), "r" to read; NULL is refused
 *  @param temporary_path  receives a malloc'd copy of the file's path, which the caller passes to
 *                         wrapCupsFileClose2() and then to free(); NULL is refused; unchanged on
 *                         failure
 *  @return open CUPS file, closed with wrapCupsFileClose2(); NULL on failure */
IA_EXPORT struct _cups_file_s* wrapCupsFileOpen2(const char* queue_name, const char* mode,
                                                 char** temporary_path) IA_NOEXCEPT;

/** Deletes a file of wrapCupsFileOpen2(), then closes it.
 *  @param file  open CUPS file; NULL is refused
 *  @param path  its path, which the caller frees; NULL is refused
 *  @return what cupsFileClose() returned; -1 for a NULL argument (nothing is closed then) */
IA_EXPORT int32_t wrapCupsFileClose2(struct _cups_file_s* file, const char* path) IA_NOEXCEPT;

/** Always fails: reads a device document from a PPD data cache, which this library does not have.
 *  @param queue_name  ignored
 *  @param cache_key   ignored
 *  @param data        not written
 *  @param length      not written
 *  @return always -1 */
IA_EXPORT int32_t info_common_read_data_from_ppd(const char* queue_name, const char* cache_key,
                                                 void** data, int32_t* length) IA_NOEXCEPT;

/** Always fails: writes a device document to a PPD data cache, which this library does not have.
 *  @param queue_name  ignored
 *  @param cache_key   ignored
 *  @param data        ignored
 *  @param length      ignored
 *  @return always -1 */
IA_EXPORT int32_t info_common_write_data_for_ppd(const char* queue_name, const char* cache_key,
                                                 const void* data, int32_t length) IA_NOEXCEPT;

/** Checks for a document in a PPD data cache, which this library does not have.
 *  @param queue_name  ignored
 *  @param cache_key   ignored
 *  @return always 0 */
IA_EXPORT int32_t info_common_exist_data_from_ppd(const char* queue_name,
                                                  const char* cache_key) IA_NOEXCEPT;

/** Returns whether device documents come from a PPD data cache.
 *  @return always 0 */
IA_EXPORT int32_t info_common_is_ppd_cache(void) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_OPTION_TABLE_H_ */
