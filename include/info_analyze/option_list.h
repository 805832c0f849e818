/** @file
 *  The option list that an analyser fills for its caller, and its indexed flag keys. */
#ifndef INFO_ANALYZE_OPTION_LIST_H_
#define INFO_ANALYZE_OPTION_LIST_H_

#include <stdint.h>

#include "info_analyze/export.h"
#include "info_analyze/option_table.h"

IA_BEGIN_DECLS

/** A caller's list of results: an option table that holds at least one node, since results are
 *  appended. The first node is made with info_common_optlist_additem_front(). */
typedef OptTable OptionList;

/** Appends an entry by the rule of info_common_optlist_additem_back().
 *  @param list   list; NULL does nothing (no list is started)
 *  @param key    keyword, copied; NULL does nothing
 *  @param value  value, copied; NULL does nothing */
IA_EXPORT void OptionList_Add(OptionList* list, const char* key, const char* value) IA_NOEXCEPT;

/** Copies the value of the first entry whose key equals @p key, ignoring case.
 *  @param list   list; for NULL the result is 0 and @p value stays unchanged
 *  @param key    keyword; NULL as for @p list
 *  @param value  receives malloc'd text that the caller releases with free(), or NULL when there is
 *                none or an allocation fails; NULL as for @p list
 *  @return 1 when a value was stored, else 0 */
IA_EXPORT int32_t OptionList_Get(const OptionList* list, const char* key, char** value) IA_NOEXCEPT;

/** Releases a whole list and sets the caller's pointer to NULL.
 *  @param list  address of the list; NULL does nothing */
IA_EXPORT void OptionList_Terminate(OptionList** list) IA_NOEXCEPT;

/** Finds the next entry whose key contains a text, ignoring case, and moves the cursor past it.
 *  @param cursor  address of the node to start from; afterwards the node after the match, or NULL
 *                 when none was left
 *  @param needle  text to find anywhere in the key; the empty text is in every key
 *  @param key     receives the borrowed key, or NULL when there is no match
 *  @param value   receives the borrowed value, or NULL when there is no match
 *  @return 1 when a match with both texts was found, else 0; 0 with the outputs untouched when an
 *          argument is NULL */
IA_EXPORT int32_t z_get_key_value_from_option_list(OptTable** cursor, const char* needle,
                                                   char** key, char** value) IA_NOEXCEPT;

/** Finds the next entry of an indexed flag key whose index does not exceed a limit.
 *
 *  The first key that contains @p base (ignoring case) is assumed to begin with it. The decimal
 *  index starts after the byte that follows the base, and ends at the next "_". A key that ends
 *  after the base is accepted whatever the limit; a suffix that is not a number has index 0.
 *
 *  @param cursor         as in z_get_key_value_from_option_list()
 *  @param base           base key
 *  @param highest_index  highest index accepted
 *  @param value          receives the borrowed value, or NULL when there is none
 *  @return 1 when a value was found, else 0; 0 with the output untouched when an argument is NULL
 */
IA_EXPORT int32_t OptionList_Get_FlagValue(OptTable** cursor, const char* base,
                                           int32_t highest_index, char** value) IA_NOEXCEPT;

/** Makes the next free indexed flag key: the base alone, then base_1, base_2, ...
 *  The index is one past the highest that either list holds; gaps are not filled.
 *  @param first   list, or NULL for an empty one
 *  @param second  list, or NULL for an empty one
 *  @param base    base key; NULL is refused
 *  @return malloc'd key that the caller releases with free(); NULL when @p base is NULL or an
 *          allocation fails */
IA_EXPORT char* z_create_flag_key_fom_option_list(const OptTable* first, const OptTable* second,
                                                  const char* base) IA_NOEXCEPT;

/** Appends each item of a text to a list under the next free indexed flag key.
 *  @param source  list whose keys are in use too, like those of @p target
 *  @param base    base key
 *  @param text    items separated by "," or "_"; empty items are skipped
 *  @param target  list that the entries are appended to
 *  @return 0, also when an argument is NULL; -1 when an allocation fails; items appended before it
 *  stay */
IA_EXPORT int32_t OptionList_Set_FlagValue(const OptTable* source, const char* base,
                                           const char* text, OptionList* target) IA_NOEXCEPT;

/** Appends each "key:value" item of a text to a list.
 *
 *  An item of colons only is skipped. Leading colons are part of the key. The key ends at the first
 *  ":" after them; the value is what follows, or empty. A key cannot contain "_", which separates
 *  items.
 *
 *  @param text    items separated by "," or "_"
 *  @param target  list that the entries are appended to
 *  @return 0, also when an argument is NULL; -1 when an allocation fails */
IA_EXPORT int32_t OptionList_Set_ArrrayFlagValue(const char* text, OptionList* target) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_OPTION_LIST_H_ */
