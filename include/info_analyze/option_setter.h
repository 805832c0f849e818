/** @file
 *  Rows of keyword, getter and default, by which update handlers turn values into options. */
#ifndef INFO_ANALYZE_OPTION_SETTER_H_
#define INFO_ANALYZE_OPTION_SETTER_H_

#include <stdint.h>

#include "info_analyze/analyzer.h"
#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** Turns a raw datum into the text of an option.
 *  @param datum  address of the datum, of the type that the getter documents; NULL gives NULL
 *  @return malloc'd text, or NULL to keep the option's value or default */
typedef char* (*OptionGetter)(const void* datum);

/** One option of an update handler. */
typedef struct OptionSetter {
  const char* keyword;       /**< PPD keyword; NULL: the row is skipped */
  char* value;               /**< owned text found so far, or NULL */
  OptionGetter getter;       /**< may be NULL */
  const void* getter_arg;    /**< argument of the getter */
  const char* default_value; /**< text used while value is NULL */
} OptionSetter;

/** Runs the getter of each row; a text that it returns replaces the row's value.
 *  @param rows   rows; NULL does nothing
 *  @param count  number of rows
 *  @return 0 */
IA_EXPORT int32_t zGetOptionString(OptionSetter* rows, int32_t count) IA_NOEXCEPT;

/** Appends each row's keyword with its value, or its default, to a list, and takes over
 *  the values: it releases them or makes them part of the list. The value fields are not cleared:
 *  after this call they must not be used.
 *  @param rows     rows
 *  @param count    number of rows
 *  @param options  list
 *  @return 0, or -1 for a NULL argument */
IA_EXPORT int32_t zSetOptionList(OptionSetter* rows, int32_t count,
                                 OptionList* options) IA_NOEXCEPT;

/** Reads values with analyze_common_readxml(), runs the getters and appends the rows.
 *  @param context      analyser
 *  @param descriptors  values to read
 *  @param key_count    number of descriptors
 *  @param rows         rows whose getters use the values
 *  @param row_count    number of rows
 *  @param options      list
 *  @return 0; -1 for a NULL argument; else the reader's result, with nothing appended */
IA_EXPORT int32_t zReadXMLandSetOptionList(AnalyzeContext* context,
                                           const XmlKeyDescriptor* descriptors, int32_t key_count,
                                           OptionSetter* rows, int32_t row_count,
                                           OptionList* options) IA_NOEXCEPT;

/** Getter: "True" for a non-zero number, "False" for zero.
 *  @param datum  int32_t*
 *  @return malloc'd text; NULL for NULL or when an allocation fails */
IA_EXPORT char* zGetBoolString(const void* datum) IA_NOEXCEPT;

/** Getter: the number in decimal.
 *  @param datum  int32_t*
 *  @return malloc'd text; NULL for NULL or when an allocation fails */
IA_EXPORT char* zGetBinaryString(const void* datum) IA_NOEXCEPT;

/** Getter: the number in upper-case hexadecimal, at least four digits; a negative one has eight.
 *  @param datum  int32_t*
 *  @return malloc'd text; NULL for NULL or when an allocation fails */
IA_EXPORT char* zGetSpecIDString(const void* datum) IA_NOEXCEPT;

/** Getter: as zGetSpecIDString().
 *  @param datum  int32_t*
 *  @return malloc'd text; NULL for NULL or when an allocation fails */
IA_EXPORT char* zGetHexString(const void* datum) IA_NOEXCEPT;

/** Getter: a copy of the text.
 *  @param datum  char**
 *  @return malloc'd text; NULL for NULL, a NULL text or when an allocation fails */
IA_EXPORT char* zGetString(const void* datum) IA_NOEXCEPT;

/** Releases the texts of an array and sets them to NULL.
 *  @param texts  array; NULL does nothing
 *  @param count  its length */
IA_EXPORT void zFuncStrFree(char** texts, int32_t count) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_OPTION_SETTER_H_ */
