/** @file
 *  Model mapping: turns what a device reports into the options of one driver model.
 *
 *  The driver model code ("RA-H2", the PPD's QVAnlz_DriverName) selects a row of a model table. It
 *  is the first row, in table order, whose code is a prefix of the model code. The row names the
 *  handlers that decide each option. A model without a row gets the common handlers. */
#ifndef INFO_ANALYZE_MODEL_OPTIONS_H_
#define INFO_ANALYZE_MODEL_OPTIONS_H_

#include <stdint.h>

#include "info_analyze/analyzer.h"
#include "info_analyze/export.h"
#include "info_analyze/option_setter.h"

IA_BEGIN_DECLS

/** One tray that a device reports. */
typedef struct TrayEntry {
  int32_t type;        /**< type code */
  int32_t alias;       /**< first alias code */
  int32_t capacity;    /**< how much it holds */
  int32_t medium_type; /**< code of the medium in it */
} TrayEntry;

/** One finisher that a device reports. */
typedef struct FinisherEntry {
  int32_t binnum; /**< number of bins */
  char* name;     /**< product name; may be NULL or empty */
} FinisherEntry;

/** The prefix of an accessory's product name, and a number of bins. */
typedef struct AccessoryBinRule {
  int32_t bin_count;          /**< number of bins */
  const char* accessory_name; /**< prefix of the product name */
} AccessoryBinRule;

/** The option value of a detailed function. */
typedef struct FunctionPair {
  const char* detail_function; /**< detailed function that a device reports */
  const char* value;           /**< option value */
} FunctionPair;

/** Query for the option value of one finishing function of a finisher. A word counts as reported in
 *  a list when zStringExistenceCheck() finds it in the list. */
typedef struct FunctionQuery {
  const char* driver_name;          /**< driver model code; may be NULL */
  const char* function;             /**< wanted function: "punch", "staple" or "folding" */
  char* const* functions;           /**< functions that the device reports */
  const int32_t* function_count;    /**< their number; NULL: none */
  const FunctionPair* search_table; /**< values of detailed functions, or NULL */
  int32_t search_rows;              /**< rows of the search table */
  char* const* detail_functions;    /**< detailed functions that the device reports */
  const int32_t* detail_count;      /**< their number; NULL: none */
  const char* default_value;        /**< value without a search table, or NULL */
} FunctionQuery;

/** @name Handler types
 *  @{ */

/** Decides options of paper sources. Appends rows at index *row_count and adds to it. The keyword
 *  is a malloc'd text that the caller releases; the value is a malloc'd text or NULL.
 *  @param context         analyser
 *  @param trays           trays; not NULL even when there are none
 *  @param tray_count      number of trays
 *  @param extra_tray_count  number of trays of type 3 or 6
 *  @param rows            array of at least tray_count + 3 rows
 *  @param row_count       rows in use
 *  @return 0; -1 for a NULL argument or a negative *row_count */
typedef int32_t (*InputOptionHandler)(AnalyzeContext* context, const TrayEntry* trays,
                                      int32_t tray_count, int32_t extra_tray_count,
                                      OptionSetter* rows, int32_t* row_count);

/** Decides one option of finishers: replaces the value of the row, or keeps it.
 *  @param context         analyser
 *  @param finishers       finishers; not NULL even when there are none
 *  @param finisher_count  number of finishers; below 1 nothing is done
 *  @param aliases         alias codes of all bins; NULL: none
 *  @param alias_count     number of alias codes
 *  @param row             option row
 *  @return 0; -1 when the context, the finishers or the row is NULL */
typedef int32_t (*FinisherOptionHandler)(AnalyzeContext* context, const FinisherEntry* finishers,
                                         int32_t finisher_count, const int32_t* aliases,
                                         int32_t alias_count, OptionSetter* row);

/** Decides the value of one finishing function.
 *  @param query  query; NULL gives NULL
 *  @return malloc'd value, or NULL to keep the option's default */
typedef char* (*FunctionStringHandler)(const FunctionQuery* query);

/** @}
 *  @name Dispatch
 *  @{ */

/** Runs the model's handlers of paper sources: side paper deck, source option, media types,
 *  envelope feeder. The first one that fails ends the run. Does nothing for a NULL argument.
 *  @param context         analyser
 *  @param trays           trays; not NULL even when there are none
 *  @param tray_count      number of trays
 *  @param extra_tray_count  number of trays of type 3 or 6
 *  @param rows            array of at least tray_count + 3 rows
 *  @param row_count       rows in use */
IA_EXPORT void analyze_GetInputOptions(AnalyzeContext* context, const TrayEntry* trays,
                                       int32_t tray_count, int32_t extra_tray_count,
                                       OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** Runs the model's handlers of finishers. A model without a row gets a finisher value only. Does
 *  nothing when the context, the finishers or the rows are NULL or there are no finishers.
 *  @param context         analyser
 *  @param finishers       finishers
 *  @param finisher_count  number of finishers
 *  @param aliases         alias codes of all bins; NULL: none
 *  @param alias_count     number of alias codes
 *  @param rows            three rows: QVFinisher, QVCopyTray, QVFinTray */
IA_EXPORT void analyze_GetFinisherOption(AnalyzeContext* context, const FinisherEntry* finishers,
                                         int32_t finisher_count, const int32_t* aliases,
                                         int32_t alias_count, OptionSetter* rows) IA_NOEXCEPT;

/** Collects the alias codes of all bins from the Bin_list document; zeros are left out.
 *  @param context      analyser
 *  @param aliases      array for 10 codes; further codes are dropped
 *  @param alias_count  receives their number, even when a read fails
 *  @return 0; -1 for a NULL argument, with the number unchanged; else the failed read's result */
IA_EXPORT int32_t analyze_GetBinAlias(AnalyzeContext* context, int32_t* aliases,
                                      int32_t* alias_count) IA_NOEXCEPT;

/** Checks whether an alias code lies in a closed range.
 *  @param aliases      alias codes; NULL: none
 *  @param alias_count  their number
 *  @param low,high     ends of the range
 *  @return 1 or 0 */
IA_EXPORT int32_t analyze_CheckBinAlias(const int32_t* aliases, int32_t alias_count, int32_t low,
                                        int32_t high) IA_NOEXCEPT;

/** Decides the puncher by the model's handler. A model without a row gets "PUNF24" when the device
 *  punches 2 holes and French 4 holes. Else it gets the value of the first row of the search table
 *  that is reported.
 *  @param query  query; NULL gives NULL
 *  @return malloc'd value, or NULL */
IA_EXPORT char* analyze_GetPuncherOptionString(const FunctionQuery* query) IA_NOEXCEPT;

/** Decides a finishing function by the model's handler, or by the common one.
 *  @param query  query; NULL gives NULL
 *  @return malloc'd value, or NULL */
IA_EXPORT char* analyze_GetFinishingFunctionOptionString(const FunctionQuery* query) IA_NOEXCEPT;

/** Finds the first tray with an alias code.
 *  @param trays  trays; NULL: none
 *  @param count  number of trays
 *  @param alias  alias code
 *  @return index, or -1 */
IA_EXPORT int32_t zFindTrayByAlias(const TrayEntry* trays, int32_t count,
                                   int32_t alias) IA_NOEXCEPT;

/** Checks whether some text of a list is a prefix of a word.
 *  @param texts  list, whose elements may be NULL; NULL: none
 *  @param word   word; NULL gives 0
 *  @param count  length of the list
 *  @return 1 or 0 */
IA_EXPORT int32_t zStringExistenceCheck(char* const* texts, const char* word,
                                        int32_t count) IA_NOEXCEPT;

/** @}
 *  @name Side paper deck
 *  QVSidePaperDeck, default "None". Handlers of type InputOptionHandler.
 *  @{ */

/** "Large" when the first tray of alias 161 is of type 6, else "Small".
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSidePaperDeckCommon(AnalyzeContext* context, const TrayEntry* trays,
                                                   int32_t tray_count, int32_t extra_tray_count,
                                                   OptionSetter* rows,
                                                   int32_t* row_count) IA_NOEXCEPT;

/** "Large" when the first tray of alias 161 is of type 6, else no value.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSidePaperDeck_CYPRESS(AnalyzeContext* context,
                                                     const TrayEntry* trays, int32_t tray_count,
                                                     int32_t extra_tray_count, OptionSetter* rows,
                                                     int32_t* row_count) IA_NOEXCEPT;

/** By the first tray of alias 161. Type 6 gives "None" when some tray has alias 162, else "Large".
 *  Type 3 gives "Small". A different type gives no value.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSidePaperDeckOAK(AnalyzeContext* context, const TrayEntry* trays,
                                                int32_t tray_count, int32_t extra_tray_count,
                                                OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** @}
 *  @name Source option
 *  QVSrcOption, default "None". Handlers of type InputOptionHandler.
 *  @{ */

/** The names of all QVAnlz_SrcOption flags whose value is a tray's alias, joined by commas.
 *  Omits a name that already occurs in the list, and a name that would extend it beyond 255 bytes.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionCommon(AnalyzeContext* context, const TrayEntry* trays,
                                               int32_t tray_count, int32_t extra_tray_count,
                                               OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** By the number of trays: below 3 "None", 3 "OptCas1", 4 "OptCas2", 5 "OptCas3", more no value.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionCommonByCount(AnalyzeContext* context,
                                                      const TrayEntry* trays, int32_t tray_count,
                                                      int32_t extra_tray_count, OptionSetter* rows,
                                                      int32_t* row_count) IA_NOEXCEPT;

/** As analyze_GetQVSrcOptionCommonByCount().
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionLAUREL(AnalyzeContext* context, const TrayEntry* trays,
                                               int32_t tray_count, int32_t extra_tray_count,
                                               OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** As analyze_GetQVSrcOptionCommonByCount().
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionMYRTLE(AnalyzeContext* context, const TrayEntry* trays,
                                               int32_t tray_count, int32_t extra_tray_count,
                                               OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** As analyze_GetQVSrcOptionCommonByCount().
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOption_ELM(AnalyzeContext* context, const TrayEntry* trays,
                                             int32_t tray_count, int32_t extra_tray_count,
                                             OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** As analyze_GetQVSrcOptionCommonByCount().
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionOLIVE(AnalyzeContext* context, const TrayEntry* trays,
                                              int32_t tray_count, int32_t extra_tray_count,
                                              OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** By the number of trays: below 3 "None", 3 "OptCas1", 4 and 5 "OptCas2", more no value.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionSPRUCE(AnalyzeContext* context, const TrayEntry* trays,
                                               int32_t tray_count, int32_t extra_tray_count,
                                               OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** By the number of trays of type 3 or 6: below 5 "None", 5 "OptCas1", 6 to 8 "OptCas2", more no
 *  value.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOption_CYPRESS(AnalyzeContext* context, const TrayEntry* trays,
                                                 int32_t tray_count, int32_t extra_tray_count,
                                                 OptionSetter* rows,
                                                 int32_t* row_count) IA_NOEXCEPT;

/** By the number of trays of type 6: 3 "OptCas3", 1 "OptCas1", else "None".
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionHOLLY(AnalyzeContext* context, const TrayEntry* trays,
                                              int32_t tray_count, int32_t extra_tray_count,
                                              OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** "OptCas1" when some tray has alias 162, else "None".
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionOAK(AnalyzeContext* context, const TrayEntry* trays,
                                            int32_t tray_count, int32_t extra_tray_count,
                                            OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** Alias 167 gives "PODDeck3", else alias 164 "PODDeck2", else the first tray of alias 161
 *  "MltDeck1" for a capacity above 1999 and "PODDeck1" otherwise.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionROWAN(AnalyzeContext* context, const TrayEntry* trays,
                                              int32_t tray_count, int32_t extra_tray_count,
                                              OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** Alias 124 gives "OptCas4", else 123 "OptCas3", else 122 "OptCas2", else 121 "OptCas1", else
 *  "None".
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVSrcOptionREDWOOD(AnalyzeContext* context, const TrayEntry* trays,
                                                int32_t tray_count, int32_t extra_tray_count,
                                                OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** @}
 *  @name Envelope feeder
 *  QVEnvelopeFeeder. Handler of type InputOptionHandler.
 *  @{ */

/** "True" when some tray has alias 6, else "False".
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVEnvelopeFeederCommon(AnalyzeContext* context, const TrayEntry* trays,
                                                    int32_t tray_count, int32_t extra_tray_count,
                                                    OptionSetter* rows,
                                                    int32_t* row_count) IA_NOEXCEPT;

/** @}
 *  @name Media types
 *  The keyword that QVAnlz_SlotMediaInfo names for a tray's slot, default "PlainPaper". Handlers of
 *  type InputOptionHandler.
 *  @{ */

/** For each tray: the QV_Prot_MediaType flag of its medium type, under the keyword of the slot that
 *  QVAnlz_InputTray names for its alias.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVXXXMediaTypeCommon(AnalyzeContext* context, const TrayEntry* trays,
                                                  int32_t tray_count, int32_t extra_tray_count,
                                                  OptionSetter* rows,
                                                  int32_t* row_count) IA_NOEXCEPT;

/** As the common one, with two differences. With 4 or fewer trays of type 3 or 6, a tray of alias
 *  161 takes the second slot of that alias. A slot's name may be a prefix of its flag's name.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVXXXMediaType_CYPRESS(AnalyzeContext* context, const TrayEntry* trays,
                                                    int32_t tray_count, int32_t extra_tray_count,
                                                    OptionSetter* rows,
                                                    int32_t* row_count) IA_NOEXCEPT;

/** As the common one with fixed slots for the aliases; a tray of any other alias takes the slot of
 *  the tray before it.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVXXXMediaTypeYEW(AnalyzeContext* context, const TrayEntry* trays,
                                               int32_t tray_count, int32_t extra_tray_count,
                                               OptionSetter* rows, int32_t* row_count) IA_NOEXCEPT;

/** As the common one, but the slot of alias 161 depends on the other trays. Appends no row while
 *  one of the three flag stores is missing, or when a text of the row cannot be allocated.
 *  @copydetails InputOptionHandler */
IA_EXPORT int32_t analyze_GetQVXXXMediaTypeREDWOOD(AnalyzeContext* context, const TrayEntry* trays,
                                                   int32_t tray_count, int32_t extra_tray_count,
                                                   OptionSetter* rows,
                                                   int32_t* row_count) IA_NOEXCEPT;

/** @}
 *  @name Finisher
 *  QVFinisher, default "None". Handlers of type FinisherOptionHandler. "By bin alias" is
 *  analyze_GetQVFinisherByBinTrayAlias(), "the value string" analyze_GetQVFinisherValueString().
 *  @{ */

/** Finds the QVAnlz_FinisherName flag of the finishers' names; the last finisher with a flag
 *  decides.
 *  @param context         analyser
 *  @param finishers       finishers
 *  @param finisher_count  number of finishers
 *  @return malloc'd value; NULL when there is none, for a NULL argument or a failed allocation */
IA_EXPORT char* analyze_GetQVFinisherValueString(const AnalyzeContext* context,
                                                 const FinisherEntry* finishers,
                                                 int32_t finisher_count) IA_NOEXCEPT;

/** The value string, unless all named finishers count as trays. A finisher counts as a tray if its
 *  name begins with that of a rule, it has at most the rule's bin count, and a bin alias is in the
 *  range.
 *  @param context         analyser
 *  @param finishers       finishers
 *  @param finisher_count  number of finishers; below 1 nothing is done
 *  @param rules           rules; NULL: none
 *  @param rule_count      number of rules
 *  @param aliases         alias codes of all bins; NULL: none
 *  @param alias_count     number of alias codes
 *  @param low,high        ends of the alias range
 *  @param row             option row
 *  @return 0; -1 when the context, the finishers or the row is NULL */
IA_EXPORT int32_t analyze_GetQVFinisherByBinTrayAlias(
    AnalyzeContext* context, const FinisherEntry* finishers, int32_t finisher_count,
    const AccessoryBinRule* rules, int32_t rule_count, const int32_t* aliases, int32_t alias_count,
    int32_t low, int32_t high, OptionSetter* row) IA_NOEXCEPT;

/** The value string; clears the row's value when there is none.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherCommon(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "IN2TRAY" when a name begins with "Vorel Inner 2way Tray", ignoring case, and the bin aliases
 *  contain 119, else the value string.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherSpecialIn2TrayCommon(
    AnalyzeContext* context, const FinisherEntry* finishers, int32_t finisher_count,
    const int32_t* aliases, int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** By bin alias 101 to 105, with "Vorel Inner 2Way Tray-B1" of 2 bins.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisher_ASPEN(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** By bin alias 101 to 105, with "Vorel Inner 2Way Tray-B1" of 1 bin.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisher_FIR(AnalyzeContext* context, const FinisherEntry* finishers,
                                            int32_t finisher_count, const int32_t* aliases,
                                            int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** By bin alias 101 to 105, with "Vorel 3 Way Unit-D1" of 1 bin.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisher_BEECH(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "None" when a "Vorel 3 Way Unit-D1" or "-D2" has 1 bin, else by bin alias 101 to 105 with both
 *  of 2 bins.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisher_BIRCH(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "None" when a "Vorel Inner 2 Way Tray-S1" has 1 bin, else by bin alias 101 to 105 with it of 2
 *  bins.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisher_CEDAR(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVFinisher_CEDAR().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisher_HAZEL(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "None" when a "Vorel Inner 2Way Tray-R1" has 1 bin, else by bin alias 101 to 105 with it of 2
 *  bins.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherMAPLE(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** "IN2TRAYF1" when the bin aliases contain 119, else the value string.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherSPRUCE(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "IN2TRAYF1" when there are exactly 2 bin aliases and one is 119, else the value string.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherWILLOW(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "IN2TRAY" when there is a "Vorel Inner 2way Tray-N1" and a bin alias is 119, else the value
 *  string.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherSUMAC(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVFinisherSUMAC().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherHICKORY(AnalyzeContext* context,
                                               const FinisherEntry* finishers,
                                               int32_t finisher_count, const int32_t* aliases,
                                               int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** By the bins of the first finisher: 2 "IN2TRAY", 3 "IN2TRAYSFING1", 1 "FINJ1", else "None".
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinisherWALNUT(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** @}
 *  @name Copy tray
 *  QVCopyTray, default "None". Handlers of type FinisherOptionHandler. "By bin alias" is
 *  analyze_GetQVCopyTrayByBinTrayAlias().
 *  @{ */

/** "CPTU1" when a finisher's name begins with that of a rule and it has more bins than the rule or
 *  a bin alias lies in the range.
 *  @param context         analyser
 *  @param finishers       finishers
 *  @param finisher_count  number of finishers; below 1 nothing is done
 *  @param rules           rules; NULL: none
 *  @param rule_count      number of rules
 *  @param aliases         alias codes of all bins; NULL: none
 *  @param alias_count     number of alias codes
 *  @param low,high        ends of the alias range
 *  @param row             option row
 *  @return 0; -1 when the context, the finishers or the row is NULL */
IA_EXPORT int32_t analyze_GetQVCopyTrayByBinTrayAlias(
    AnalyzeContext* context, const FinisherEntry* finishers, int32_t finisher_count,
    const AccessoryBinRule* rules, int32_t rule_count, const int32_t* aliases, int32_t alias_count,
    int32_t low, int32_t high, OptionSetter* row) IA_NOEXCEPT;

/** Keeps the row's value.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTrayCommon(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** By bin alias 101 to 105, with "Vorel Inner 2Way Tray-B1" of 2 bins and "Vorel Finisher-Q1" of 1.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTray_ASPEN(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** By bin alias 101 to 105, with "Vorel Inner 2Way Tray-B1" and "Vorel Finisher-Q1" of 1 bin.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTray_FIR(AnalyzeContext* context, const FinisherEntry* finishers,
                                            int32_t finisher_count, const int32_t* aliases,
                                            int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** By bin alias 101 to 105, with "Vorel Inner 2 Way Tray-S1" of 2 bins and "Vorel Finisher-A1"
 *  of 1.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTray_CEDAR(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "CPTU1" when a bin alias lies in 101 to 105.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTray_BEECH(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVCopyTray_BEECH().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTray_BIRCH(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVCopyTray_BEECH().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTray_HAZEL(AnalyzeContext* context,
                                              const FinisherEntry* finishers,
                                              int32_t finisher_count, const int32_t* aliases,
                                              int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "CPTU1" when the bin aliases contain 101.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVCopyTrayMAPLE(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** @}
 *  @name Finisher tray
 *  QVFinTray, default "None". Handlers of type FinisherOptionHandler. "By bin count" is
 *  analyze_GetQVFinTrayByBinTrayCount().
 *  @{ */

/** "FNTU1" when a finisher has more bins than the first rule whose name is a prefix of its name.
 *  @param context         analyser
 *  @param finishers       finishers
 *  @param finisher_count  number of finishers; below 1 nothing is done
 *  @param rules           rules; NULL: none
 *  @param rule_count      number of rules
 *  @param aliases         ignored
 *  @param alias_count     ignored
 *  @param row             option row
 *  @return 0; -1 when the context, the finishers or the row is NULL */
IA_EXPORT int32_t analyze_GetQVFinTrayByBinTrayCount(
    AnalyzeContext* context, const FinisherEntry* finishers, int32_t finisher_count,
    const AccessoryBinRule* rules, int32_t rule_count, const int32_t* aliases, int32_t alias_count,
    OptionSetter* row) IA_NOEXCEPT;

/** Keeps the row's value.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTrayCommon(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** By bin count: "Vorel Finisher-T1" 2, "Vorel Saddle Finisher-T2" 3.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTray_ALDER(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** By bin count: "Vorel Finisher-U3" 2, "Vorel Saddle Finisher-U4" 3, "Vorel Finisher-C1" 2, "Vorel
 *  Saddle Finisher-C2" 3.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTray_ASPEN(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** By bin count: "Vorel Finisher-U1/U3" 2, "Vorel Saddle Finisher-U2/U4" 3.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTray_FIR(AnalyzeContext* context, const FinisherEntry* finishers,
                                           int32_t finisher_count, const int32_t* aliases,
                                           int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "FNTU1" when the bin aliases contain 121.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTray_BEECH(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVFinTray_BEECH().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTray_BIRCH(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVFinTray_BEECH().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTray_HAZEL(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVFinTray_BEECH().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTrayMAPLE(AnalyzeContext* context, const FinisherEntry* finishers,
                                            int32_t finisher_count, const int32_t* aliases,
                                            int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVFinTray_BEECH().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTrayMYRTLE(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** As analyze_GetQVFinTray_BEECH().
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTrayWILLOW(AnalyzeContext* context,
                                             const FinisherEntry* finishers, int32_t finisher_count,
                                             const int32_t* aliases, int32_t alias_count,
                                             OptionSetter* row) IA_NOEXCEPT;

/** "EXTU1" when a name begins with "Vorel Inner Finisher-F1" and the bin aliases
 *  contain 119.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTraySUMAC(AnalyzeContext* context, const FinisherEntry* finishers,
                                            int32_t finisher_count, const int32_t* aliases,
                                            int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** "FNTU1" when a name is "Vorel Inner Finisher-W1" or "Vorel Inner Shift Sorter-D1", in full, and
 *  the bin aliases contain 119.
 *  @copydetails FinisherOptionHandler */
IA_EXPORT int32_t analyze_GetQVFinTrayHORNBEAM(AnalyzeContext* context,
                                               const FinisherEntry* finishers,
                                               int32_t finisher_count, const int32_t* aliases,
                                               int32_t alias_count, OptionSetter* row) IA_NOEXCEPT;

/** @}
 *  @name Puncher
 *  QVPuncher. Handlers of type FunctionStringHandler. They return NULL when the function is not
 *  reported.
 *  @{ */

/** The value of the first row of the search table that is reported; without a table the default
 *  value.
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetPuncherOptionStringSearchTableListOrder(const FunctionQuery* query)
    IA_NOEXCEPT;

/** The value of the first reported detailed function that is a prefix of a row's detailed function
 *  in the search table; without a table the default value.
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetPuncherOptionStringDetailFuncListOrder(const FunctionQuery* query)
    IA_NOEXCEPT;

/** "PUNU2" when 2 holes are reported, else no value.
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetPuncherOptionStringJUNIPER(const FunctionQuery* query) IA_NOEXCEPT;

/** "PUNU24" when 2 holes and French 4 holes are reported, "PUNU2" when 2 holes are, else the search
 *  in table order.
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetPuncherOptionStringJUNIPER_MLT(const FunctionQuery* query) IA_NOEXCEPT;

/** "PUNM" when multiple holes are reported, else the search in table order.
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetPuncherOptionStringMultipleHoles(const FunctionQuery* query) IA_NOEXCEPT;

/** @}
 *  @name Other finishing functions
 *  QVOptionStaple, QVFolder. Handlers of type FunctionStringHandler. They return NULL when the
 *  function is not reported.
 *  @{ */

/** The value of the last row of the search table that is reported; without a table the default
 *  value.
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetFinishingFunctionOptionStringCommon(const FunctionQuery* query)
    IA_NOEXCEPT;

/** "True" for the function "staple", else no value.
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetFinishingFunctionOptionString_ELM(const FunctionQuery* query)
    IA_NOEXCEPT;

/** As analyze_GetFinishingFunctionOptionString_ELM().
 *  @copydetails FunctionStringHandler */
IA_EXPORT char* analyze_GetFinishingFunctionOptionStringMagnolia(const FunctionQuery* query)
    IA_NOEXCEPT;

/** @}
 *  @name Extra options
 *  @{ */

/** Sets QVInsertUnit from the first tray of the Tray_list document with alias 196 ("INSU1") or 198
 *  ("MINSU1"), else to "None".
 *  @param context  analyser
 *  @param options  list
 *  @return 0 when such a tray was found; -1 for a NULL argument; else the result of the last read
 */
IA_EXPORT int32_t analyze_GetExtraOptionStringROWAN(AnalyzeContext* context,
                                                    OptionList* options) IA_NOEXCEPT;

/** @} */

IA_END_DECLS

#endif /* INFO_ANALYZE_MODEL_OPTIONS_H_ */
