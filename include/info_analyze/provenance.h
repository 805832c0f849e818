/** @file
 *  Why an option has its value: the update handlers of Analyze_Info_FromPrinter(), the options that
 *  each sets, the inputs that each option depends on, and the model tables.
 *
 *  The information comes from the tables by which the library itself decides. Records are numbered
 *  from 0. To list them, count up until a getter returns 0.
 *
 *  A getter copies a record into the caller's, and the caller passes the size of its own. Later 1.x
 *  versions may append fields. A caller with fewer fields than the library gets those fields. A
 *  caller with more fields gets zeros in the rest.
 *
 *  @code{.c}
 *  OptionSource option;
 *  size_t size = sizeof option;
 *  for (int32_t i = 0;
 *       Analyze_Provenance_GetOption(update, i, &option, size);
 *       ++i) {
 *    for (int32_t n = 0; n < option.input_count; ++n) {
 *      use(option.keyword,
 *          Analyze_Provenance_GetOptionInput(update, i, n));
 *    }
 *  }
 *  @endcode
 *
 *  The texts in a record are constant and borrowed; they stay valid while the library is loaded.
 *  Later versions may append inputs, options and families. */
#ifndef INFO_ANALYZE_PROVENANCE_H_
#define INFO_ANALYZE_PROVENANCE_H_

#include <stddef.h>
#include <stdint.h>

#include "info_analyze/analyzer.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/export.h"
#include "info_analyze/option_setter.h"

IA_BEGIN_DECLS

/** Special numbers. */
enum {
  IA_INPUT_OF_PPD = -1, /**< in place of a document */
  IA_NO_INPUT = -1,     /**< in place of an input's number */
  IA_GUARD_NONE = -1,   /**< the update handler always runs */
  IA_GUARD_FLAGS = 9,   /**< it runs when the analyser has its media_type_flags */
  IA_FAMILY_NONE = -1,  /**< decided the same way for all models */
  IA_OTHER_MODELS = -1  /**< the row of models that have no row of their own */
};

/** Option families: columns of the model tables, each with handlers of its own. */
enum {
  IA_FAMILY_FINISHER = 0,           /**< QVFinisher */
  IA_FAMILY_COPY_TRAY = 1,          /**< QVCopyTray */
  IA_FAMILY_FIN_TRAY = 2,           /**< QVFinTray */
  IA_FAMILY_SIDE_PAPER_DECK = 3,    /**< QVSidePaperDeck */
  IA_FAMILY_SOURCE_OPTION = 4,      /**< QVSrcOption */
  IA_FAMILY_MEDIA_TYPE = 5,         /**< the keywords that QVAnlz_SlotMediaInfo names */
  IA_FAMILY_ENVELOPE_FEEDER = 6,    /**< QVEnvelopeFeeder */
  IA_FAMILY_PUNCHER = 7,            /**< QVPuncher */
  IA_FAMILY_FINISHING_FUNCTION = 8, /**< QVOptionStaple */
  IA_FAMILY_EXTRA_OPTIONS = 9,      /**< QVInsertUnit of models that report it as a tray */
  IA_FAMILY_COUNT = 10              /**< number of families */
};

/** An input that an option depends on: a value of a device document or a text of the PPD. */
typedef struct InputKey {
  int32_t document; /**< IA_DOCUMENT_..., or IA_INPUT_OF_PPD */
  int32_t in_list;  /**< 1: a key of each item of the document's "list"; 0: an outermost one */
  int32_t type;     /**< IA_KEY_LONG, IA_KEY_STRING, or of an array IA_KEY_LONG_ELEMENTS or
                         IA_KEY_STRING_ELEMENTS; IA_KEY_DICTIONARY: the number of such items */
  const char* key;  /**< key; in the PPD a keyword, or with IA_KEY_STRING_ELEMENTS the prefix of the
                         keywords of several texts */
} InputKey;

/** An option that an update handler sets. */
typedef struct OptionSource {
  const char* keyword;       /**< PPD keyword; NULL: those that the PPD names for media types */
  OptionGetter getter;       /**< makes the value from what was read; NULL: a model's handler or
                                  the update handler does */
  const char* default_value; /**< value when no rule sets one */
  int32_t family;            /**< IA_FAMILY_... whose handlers decide it, or IA_FAMILY_NONE */
  int32_t value_input; /**< number of the input that is the value's raw form, or IA_NO_INPUT */
  int32_t input_count; /**< number of its inputs, see Analyze_Provenance_GetOptionInput();
                            those of the model's handler are extra */
} OptionSource;

/** An update handler of the query. */
typedef struct UpdateSource {
  const char* name;     /**< its exported name */
  int32_t guard;        /**< number of the document that must be loaded for it to run, perhaps one
                             that it does not read; IA_GUARD_FLAGS or IA_GUARD_NONE */
  int32_t option_count; /**< number of options that it sets */
} UpdateSource;

/** One family's part of a row of the model tables. */
typedef struct ModelRow {
  const char* code;    /**< prefix of the model codes that the row is for; "": other models */
  const char* handler; /**< exported name of the function that decides. NULL: none; the option
                            keeps its default, or is not set if a handler would add it */
  int32_t whole_code;  /**< 1: matches only the whole code; 0: matches a prefix */
  int32_t input_count; /**< number of the inputs that the handler reads, see
                            Analyze_Provenance_GetModelRowInput() */
} ModelRow;

/** Gets an input.
 *  @param input   number from 0
 *  @param key     receives the input; unchanged on failure
 *  @param size    sizeof *key
 *  @return 1; 0 when the number is out of range or @p key is NULL */
IA_EXPORT int32_t Analyze_Provenance_GetInput(int32_t input, InputKey* key,
                                              size_t size) IA_NOEXCEPT;

/** Returns the file name of a document.
 *  @param document  IA_DOCUMENT_...
 *  @return borrowed name, such as "Accessories.xml"; NULL when the document is out of range */
IA_EXPORT const char* Analyze_Provenance_GetDocumentName(int32_t document) IA_NOEXCEPT;

/** Gets an update handler of the query.
 *  @param update  number from 0, in the order in which they run
 *  @param source  receives the update handler; unchanged on failure
 *  @param size    sizeof *source
 *  @return 1; 0 when the number is out of range or @p source is NULL */
IA_EXPORT int32_t Analyze_Provenance_GetUpdate(int32_t update, UpdateSource* source,
                                               size_t size) IA_NOEXCEPT;

/** Gets an option that an update handler sets.
 *  @param update  number of the update handler, from 0
 *  @param option  number of the option among those of the update handler, from 0
 *  @param source  receives the option; unchanged on failure
 *  @param size    sizeof *source
 *  @return 1; 0 when a number is out of range or @p source is NULL */
IA_EXPORT int32_t Analyze_Provenance_GetOption(int32_t update, int32_t option, OptionSource* source,
                                               size_t size) IA_NOEXCEPT;

/** Gets one of the inputs that an option depends on.
 *  @param update  number of the update handler, from 0
 *  @param option  number of the option among those of the update handler, from 0
 *  @param index   index from 0, below OptionSource::input_count
 *  @return number of the input, rising with the index; IA_NO_INPUT when a number is out of range */
IA_EXPORT int32_t Analyze_Provenance_GetOptionInput(int32_t update, int32_t option,
                                                    int32_t index) IA_NOEXCEPT;

/** Runs one update handler of the query as Analyze_Info_FromPrinter() does, if its guard is loaded.
 *  Documents are not loaded. To get the query's options, run all in order, with defaults.
 *  @param context        analyser
 *  @param update         number from 0
 *  @param with_defaults  0: omit an option without a value; else set it to its default
 *  @param options        list that receives the options; holds at least one node
 *  @return 0, also when the guard is missing; -1 for a NULL argument or a number out of range; else
 *          the handler's result */
IA_EXPORT int32_t Analyze_Provenance_RunUpdate(AnalyzeContext* context, int32_t update,
                                               uint8_t with_defaults,
                                               OptionList* options) IA_NOEXCEPT;

/** Finds the row that a model code selects in a family's table.
 *  @param family      IA_FAMILY_...
 *  @param model_code  model code; NULL has no row
 *  @return row from 0; IA_OTHER_MODELS when there is none, or no such family */
IA_EXPORT int32_t Analyze_Provenance_FindModelRow(int32_t family,
                                                  const char* model_code) IA_NOEXCEPT;

/** Gets a row of a family's table.
 *  @param family  IA_FAMILY_...
 *  @param row     row from 0, or IA_OTHER_MODELS
 *  @param source  receives the row; unchanged on failure
 *  @param size    sizeof *source
 *  @return 1; 0 when the family or the row is out of range or @p source is NULL */
IA_EXPORT int32_t Analyze_Provenance_GetModelRow(int32_t family, int32_t row, ModelRow* source,
                                                 size_t size) IA_NOEXCEPT;

/** Gets one of the inputs that a row's handler reads.
 *  @param family  IA_FAMILY_...
 *  @param row     row from 0, or IA_OTHER_MODELS
 *  @param index   index from 0, below ModelRow::input_count
 *  @return number of the input, rising with the index; IA_NO_INPUT when a number is out of range */
IA_EXPORT int32_t Analyze_Provenance_GetModelRowInput(int32_t family, int32_t row,
                                                      int32_t index) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_PROVENANCE_H_ */
