/** @file
 *  Getters (see OptionGetter) for the items of list documents: finishers, bins and fax lines. All
 *  of them return a malloc'd text, or NULL for no value, a NULL argument or a failed allocation. A
 *  list whose pointer or count is NULL is empty. */
#ifndef INFO_ANALYZE_LIST_GETTERS_H_
#define INFO_ANALYZE_LIST_GETTERS_H_

#include <stdint.h>

#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** One item of the Finisher_list document, as the finisher getters read it. */
typedef struct FinisherUnit {
  int32_t type;                  /**< type code */
  const char* name;              /**< product name; may be NULL */
  char* const* functions;        /**< function words */
  const int32_t* function_count; /**< their number */
  char* const* detail_functions; /**< detailed function words */
  const int32_t* detail_count;   /**< their number */
  int32_t* stacker_count;        /**< stackers seen so far in this run */
} FinisherUnit;

/** One item of the Bin_list document. */
typedef struct BinUnit {
  int32_t number;             /**< bin number */
  const int32_t* aliases;     /**< alias codes */
  const int32_t* alias_count; /**< their number */
} BinUnit;

/** The communication modes of one item of the Fax_line_list document; the first 20 count. */
typedef struct FaxModes {
  const int32_t* modes; /**< mode codes */
  const int32_t* count; /**< their number */
} FaxModes;

/** QVOptionStaple, QVFolder: analyze_GetFinishingFunctionOptionString().
 *  @param datum  FunctionQuery*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetFinishingFunctionOptionString(const void* datum) IA_NOEXCEPT;

/** QVPuncher: analyze_GetPuncherOptionString().
 *  @param datum  FunctionQuery*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetPuncherOptionString(const void* datum) IA_NOEXCEPT;

/** QVTrimmer: "TRMU1" for a unit with "trimming" whose name begins with that of a trimmer.
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetTrimmerFunctionOptionString(const void* datum) IA_NOEXCEPT;

/** QVInnerTrimmer: "ITRMU1" for a unit with "trimming" whose name begins with that of an inner
 *  trimmer.
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetInnerTrimmerFunctionOptionString(const void* datum) IA_NOEXCEPT;

/** QVInsertUnit: "INSU1" for a unit with "inserter" that is not a binder (type 18).
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetFinisherInserterOptionString(const void* datum) IA_NOEXCEPT;

/** QVEnableMultiInserter: "True" for a unit that zGetFinisherInserterOptionString() accepts and
 *  that has "inserting_multiple_sheet".
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetMultiInserterOptionString(const void* datum) IA_NOEXCEPT;

/** QVStacker: for a stacker (type 15) "STKU1" when it is the first of the run, else "STKU2"; counts
 *  it. No value without a counter.
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetStackerOptionString(const void* datum) IA_NOEXCEPT;

/** QVBinderOption: "BIDU1" for a binder (type 18).
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetFinisherConstitutionOptionString(const void* datum) IA_NOEXCEPT;

/** QVProPuncher: "PUNU1" for a unit with "punching_multiple_holes" whose name begins with that of a
 *  unit that takes the professional puncher.
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetProPuncherOptionString(const void* datum) IA_NOEXCEPT;

/** QVTopBottomTrimmer: "TBTU1" for a unit of type 12 with "trimming_3_direction".
 *  @param datum  FinisherUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetTopBottomTrimmerOptionString(const void* datum) IA_NOEXCEPT;

/** QVTrayCSetting: "FinCenterTray" for bin 3 with alias 101.
 *  @param datum  BinUnit*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetTrayCSettingOptionString(const void* datum) IA_NOEXCEPT;

/** QVFAXLineType: "isdn" for line type 2, else "public".
 *  @param datum  int32_t*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetFaxOptionString(const void* datum) IA_NOEXCEPT;

/** QVFAXDialLineA: "True" for ID-support code 18.
 *  @param datum  int32_t*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetLine1IDSupport(const void* datum) IA_NOEXCEPT;

/** QVFAXDialLineB: "True" for ID-support code 19.
 *  @param datum  int32_t*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetLine2IDSupport(const void* datum) IA_NOEXCEPT;

/** QVFAXDialLineC: "True" for ID-support code 20.
 *  @param datum  int32_t*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetLine3IDSupport(const void* datum) IA_NOEXCEPT;

/** QVFAXDialLineD: "True" for ID-support code 21.
 *  @param datum  int32_t*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetLine4IDSupport(const void* datum) IA_NOEXCEPT;

/** QVFAXIPFAXINTRA: "True" when a mode is 17 or 145.
 *  @param datum  FaxModes*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetIntranetSupport(const void* datum) IA_NOEXCEPT;

/** QVFAXIPFAXVoIP: "True" when a mode is 18 or 146.
 *  @param datum  FaxModes*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetVoIPSupport(const void* datum) IA_NOEXCEPT;

/** QVFAXIPFAXNGN: "True" when a mode is 16 or 144.
 *  @param datum  FaxModes*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetNGNSupport(const void* datum) IA_NOEXCEPT;

/** QVFAXIPFAXMyNumberNGN: "True" when a mode is 69 or 197.
 *  @param datum  FaxModes*
 *  @return malloc'd text or NULL */
IA_EXPORT char* zGetNGNMyNumberSupport(const void* datum) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_LIST_GETTERS_H_ */
