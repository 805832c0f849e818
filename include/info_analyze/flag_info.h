/** @file
 *  The store of name/value flags that a PPD lists in one text, such as "Cas1:101,Cas2:102". */
#ifndef INFO_ANALYZE_FLAG_INFO_H_
#define INFO_ANALYZE_FLAG_INFO_H_

#include <stdint.h>

#include "info_analyze/export.h"
#include "info_analyze/option_table.h"

IA_BEGIN_DECLS

/** One flag; both texts are owned by the store. */
typedef struct FlagPair {
  char* name;  /**< name */
  char* value; /**< value, perhaps empty */
} FlagPair;

/** A store of flags with different names, in order of first appearance. */
typedef struct FlagInfo {
  FlagPair* entries; /**< array of capacity pairs; those in use come first */
  int32_t count;     /**< pairs in use */
  int32_t capacity;  /**< length of the array */
} FlagInfo;

/** Makes an empty store.
 *  @param key       PPD key whose flags go into the store; not kept; NULL is refused
 *  @param capacity  pairs that the store can hold; a negative one is refused
 *  @return new store, released with zflaginfo_term(); NULL for a refused argument or a failed
 *          allocation */
IA_EXPORT FlagInfo* zflaginfo_init(const char* key, int32_t capacity) IA_NOEXCEPT;

/** Releases a store and all its texts.
 *  @param store  store; NULL does nothing */
IA_EXPORT void zflaginfo_term(FlagInfo* store) IA_NOEXCEPT;

/** Finds a flag by its whole name (case-sensitive).
 *  @param store  store; NULL has no flags
 *  @param name   wanted name; NULL is not found
 *  @return borrowed pair, or NULL */
IA_EXPORT FlagPair* zflaginfo_find(const FlagInfo* store, const char* name) IA_NOEXCEPT;

/** Adds the flags of one text to a store.
 *
 *  Items are separated by commas; empty ones are skipped. In an item, leading colons are skipped;
 *  the name runs to the next colon and the value is all that follows it, or empty. An item of
 *  colons only is skipped. A name that is already in the store gets the new value. A new name
 *  beyond the capacity is dropped, and the call still succeeds.
 *
 *  @param text   flag text, not modified; NULL is refused
 *  @param store  store; NULL is refused
 *  @return 0; -1 for a NULL argument or a failed allocation */
IA_EXPORT int32_t zflaginfo_get(const char* text, FlagInfo* store) IA_NOEXCEPT;

/** Adds the flags of every table entry whose key begins with @p key (case-sensitive).
 *  @param table  PPD option table; NULL is refused
 *  @param key    PPD key; NULL is refused
 *  @param store  store; NULL is refused
 *  @return -1 for a NULL argument; else the result of the last text read, 0 when there was none.
 *          An earlier failure is masked by a later success */
IA_EXPORT int32_t zflaginfo_getflags(OptTable* table, const char* key, FlagInfo* store) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_FLAG_INFO_H_ */
