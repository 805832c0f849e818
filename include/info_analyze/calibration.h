/** @file
 *  Calibration settings that a calibration tool sends to a printer, and the default information
 *  that it uses when the printer has none. Both exist in two generations, Calib3 and Calib4.
 *
 *  The analyser's driver model code selects a row of a model table. It is the first row, in table
 *  order, whose code is a prefix of the model code (case-sensitive). The row names the handler to
 *  call. The functions read only the model code of the analyser; when it is NULL, no row is
 *  selected.
 *
 *  The functions read options from the caller's table and do not modify it. Unknown option values
 *  never cause a failure. Calls may run in parallel as long as no thread changes their arguments.
 */
#ifndef INFO_ANALYZE_CALIBRATION_H_
#define INFO_ANALYZE_CALIBRATION_H_

#include <stdint.h>

#include "info_analyze/analyzer.h"
#include "info_analyze/export.h"
#include "info_analyze/option_table.h"

IA_BEGIN_DECLS

/** Sizes of the records and tables below. */
enum {
  IA_CALIB_LEVEL_COUNT = 1024, /**< levels of a curve; the highest level is 1023 */
  IA_CALIB_CURVE_COUNT = 8,    /**< curves of a table, one after the other */
  IA_CALIB_TABLE_VALUES = IA_CALIB_CURVE_COUNT * IA_CALIB_LEVEL_COUNT, /**< values of a table */
  IA_CALIB_SET_VALUES = IA_CALIB_TABLE_VALUES / 2, /**< values of a curve set: four curves */
  IA_CALIB_ENTRY_COUNT = 3,                        /**< entries of Calib4 default information */
  IA_CALIB4_WORD_COUNT = 9                         /**< words of Calib4 settings */
};

/** @name Default curves
 *  Eight curves each. A curve gives an output level, 0 to 1023, for each input level, its index. It
 *  starts at 0, never decreases and ends at 1023. It first reaches 1023 at index 1020
 *  (LARCH_Def_Calib) or 1021 (the other tables). Curves 0 to 3 are the first curve set of a record,
 *  curves 4 to 7 the second. Values are in the byte order of the processor. The tables are constant
 *  and may be read by any thread.
 *  @{ */
/** Curves of analyze_CreateDefault_Calib3InfoLARCH(). */
IA_EXPORT_DATA extern const uint16_t LARCH_Def_Calib[IA_CALIB_TABLE_VALUES];
/** Curves of analyze_CreateDefault_Calib3InfoLINDEN(), except for "High2". */
IA_EXPORT_DATA extern const uint16_t Linden_Def_Calib_2bit[IA_CALIB_TABLE_VALUES];
/** Curves of analyze_CreateDefault_Calib3InfoLINDEN() for "High2". */
IA_EXPORT_DATA extern const uint16_t Linden_Def_Calib_4bit[IA_CALIB_TABLE_VALUES];
/** Curves of analyze_CreateDefault_Calib3InfoPINE_POPLAR(), except for "High2". */
IA_EXPORT_DATA extern const uint16_t PinePoplar_Def_Calib_2bit[IA_CALIB_TABLE_VALUES];
/** Curves of analyze_CreateDefault_Calib3InfoPINE_POPLAR() for "High2". */
IA_EXPORT_DATA extern const uint16_t PinePoplar_Def_Calib_4bit[IA_CALIB_TABLE_VALUES];
/** @} */

/** Calib3 default information. The caller provides the record. */
typedef struct Calib3Info {
  uint32_t words[12]; /**< set to zero */
  uint16_t*
      first_set; /**< IA_CALIB_SET_VALUES values, which the caller releases with free(); or NULL */
  uint16_t* second_set; /**< likewise */
} Calib3Info;

/** One entry of Calib4 default information. */
typedef struct Calib4Entry {
  uint32_t code;     /**< calibration code of one halftone value */
  uint32_t index;    /**< 0, 1, 2 */
  uint32_t words[2]; /**< set to zero */
} Calib4Entry;

/** Header of Calib4 default information. */
typedef struct Calib4Header {
  uint32_t entry_count;        /**< set to 3 */
  uint32_t first_model_value;  /**< set to 8 or 12, by model */
  uint32_t second_model_value; /**< set to 8 */
  Calib4Entry* entries;        /**< three entries, provided by the caller */
} Calib4Header;

/** Calib4 default information. The caller provides the record, its header and its entries. */
typedef struct Calib4Info {
  uint32_t words[14];   /**< set to zero */
  uint32_t values[4];   /**< each set to 100 */
  uint8_t bytes[4];     /**< set to zero */
  Calib4Header* header; /**< header; the caller sets the pointer before the call */
} Calib4Info;

/** @name Handler types
 *  @{ */

/** Returns the Calib3 settings to send: three halftone codes of the printer, with the bits of
 *  analyze_common_convertHalftoneTypePPDtoBidi().
 *  @param context  analyser
 *  @param options  print options
 *  @param out1     receives the first code
 *  @param out2     receives the second code
 *  @param out3     receives the third code
 *  @return 0; -1 for a NULL argument, with nothing written */
typedef int32_t (*Calib3SettingsHandler)(const AnalyzeContext* context, const OptTable* options,
                                         uint32_t* out1, uint32_t* out2, uint32_t* out3);

/** Fills Calib3 default information.
 *  @param context  analyser
 *  @param options  print options
 *  @param info     record to fill; what it points to is not released
 *  @return 0; -1 for a NULL argument, with nothing written, or a failed allocation. Then the
 *          curve set that failed is NULL; the caller still releases the first set when it is not
 *          NULL */
typedef int32_t (*Calib3InfoHandler)(const AnalyzeContext* context, const OptTable* options,
                                     Calib3Info* info);

/** Returns the Calib4 settings to send.
 *  @param context  analyser
 *  @param options  print options
 *  @param flag     receives 0 or 1, by model
 *  @param x_dpi    receives the horizontal resolution in dots per inch
 *  @param y_dpi    receives the vertical resolution in dots per inch
 *  @param words    receives IA_CALIB4_WORD_COUNT words: for each of the three halftone values of
 *                  analyze_common_get_halftone() its code and two more words, by model
 *  @return 0; -1 for a NULL argument, with nothing written */
typedef int32_t (*Calib4SettingsHandler)(const AnalyzeContext* context, const OptTable* options,
                                         uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                         uint32_t* words);

/** Fills Calib4 default information, with one entry for each of the three halftone values of
 *  analyze_common_get_halftone().
 *  @param context  analyser
 *  @param options  print options
 *  @param info     record to fill, with its header and entries linked in
 *  @return 0; -1 for a NULL argument, header or entry array, with nothing written */
typedef int32_t (*Calib4InfoHandler)(const AnalyzeContext* context, const OptTable* options,
                                     Calib4Info* info);

/** @}
 *  @name Queries
 *  Arguments and results are those of the handler types above.
 *  @{ */

/** Returns the Calib3 settings to send. For a model without a row the result is 0, and nothing is
 *  written.
 *  @copydetails Calib3SettingsHandler */
IA_EXPORT int32_t Analyze_Info_GetCalib3Settings(const AnalyzeContext* context,
                                                 const OptTable* options, uint32_t* out1,
                                                 uint32_t* out2, uint32_t* out3) IA_NOEXCEPT;

/** Returns the Calib4 settings to send. For a model without a row the result is -1, and nothing is
 *  written.
 *  @copydetails Calib4SettingsHandler */
IA_EXPORT int32_t Analyze_Info_GetCalib4Settings(const AnalyzeContext* context,
                                                 const OptTable* options, uint32_t* flag,
                                                 uint32_t* x_dpi, uint32_t* y_dpi,
                                                 uint32_t* words) IA_NOEXCEPT;

/** Fills Calib3 default information. A model without a row gets
 *  analyze_CreateDefault_Calib3InfoCommon().
 *  @copydetails Calib3InfoHandler */
IA_EXPORT int32_t Analyze_Info_CreateDefault_Calib3Info(const AnalyzeContext* context,
                                                        const OptTable* options,
                                                        Calib3Info* info) IA_NOEXCEPT;

/** Fills Calib4 default information. A model without a row gets
 *  analyze_CreateDefault_Calib4InfoCommon().
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t Analyze_Info_CreateDefault_Calib4Info(const AnalyzeContext* context,
                                                        const OptTable* options,
                                                        Calib4Info* info) IA_NOEXCEPT;

/** @}
 *  @name Dispatch
 *  The functions that the queries call; each does the same as its query.
 *  @{ */

/** Selects a Calib3SettingsHandler and returns its result.
 *  @copydetails Calib3SettingsHandler */
IA_EXPORT int32_t analyze_GetCalib3Settings(const AnalyzeContext* context, const OptTable* options,
                                            uint32_t* out1, uint32_t* out2,
                                            uint32_t* out3) IA_NOEXCEPT;

/** Selects a Calib4SettingsHandler and returns its result.
 *  @copydetails Calib4SettingsHandler */
IA_EXPORT int32_t analyze_GetCalib4Settings(const AnalyzeContext* context, const OptTable* options,
                                            uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                            uint32_t* words) IA_NOEXCEPT;

/** Selects a Calib3InfoHandler and returns its result.
 *  @copydetails Calib3InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib3Info(const AnalyzeContext* context,
                                                   const OptTable* options,
                                                   Calib3Info* info) IA_NOEXCEPT;

/** Selects a Calib4InfoHandler and returns its result.
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4Info(const AnalyzeContext* context,
                                                   const OptTable* options,
                                                   Calib4Info* info) IA_NOEXCEPT;

/** @}
 *  @name Calib3 settings
 *  Handlers of type Calib3SettingsHandler.
 *  @{ */

/** Codes 0, 0x10000, 0x80000, independent of the options.
 *  @copydetails Calib3SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsLARCH(const AnalyzeContext* context,
                                                const OptTable* options, uint32_t* out1,
                                                uint32_t* out2, uint32_t* out3) IA_NOEXCEPT;

/** Codes 0, 0, 0 when "QVGradation" begins with "Normal", else 0, 0x80000, 0x10000.
 *  @copydetails Calib3SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsLINDEN(const AnalyzeContext* context,
                                                 const OptTable* options, uint32_t* out1,
                                                 uint32_t* out2, uint32_t* out3) IA_NOEXCEPT;

/** As analyze_GetCalibSettingsLINDEN().
 *  @copydetails Calib3SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsPINE_POPLAR(const AnalyzeContext* context,
                                                      const OptTable* options, uint32_t* out1,
                                                      uint32_t* out2, uint32_t* out3) IA_NOEXCEPT;

/** Codes 0x80000, 0x80000, 0x10000 when the halftone begins with "gradation", else 0x10000,
 *  0x80000, 0x10000. The halftone is the value of "QVHalftone" when "QVColorMode" begins with
 *  "mono", else of "QVColorHalftone"; without "QVColorMode" there is none. Comparisons are
 *  case-sensitive, unlike those of analyze_common_get_halftone().
 *  @copydetails Calib3SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsSFP(const AnalyzeContext* context,
                                              const OptTable* options, uint32_t* out1,
                                              uint32_t* out2, uint32_t* out3) IA_NOEXCEPT;

/** @}
 *  @name Calib3 default information
 *  Handlers of type Calib3InfoHandler, and the common one.
 *  @{ */

/** Sets the whole record to zero.
 *  @param context  analyser
 *  @param info     record to clear; what it points to is not released
 *  @return 0; -1 for a NULL argument, with nothing written */
IA_EXPORT int32_t analyze_CreateDefault_Calib3InfoCommon(const AnalyzeContext* context,
                                                         Calib3Info* info) IA_NOEXCEPT;

/** Copies of the two halves of LARCH_Def_Calib. When the first copy cannot be allocated, the
 *  second pointer stays unchanged.
 *  @copydetails Calib3InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib3InfoLARCH(const AnalyzeContext* context,
                                                        const OptTable* options,
                                                        Calib3Info* info) IA_NOEXCEPT;

/** Copies of the two halves of Linden_Def_Calib_4bit when "QVGradation" begins with "High2", no
 *  curve sets when it begins with "Normal", else those of Linden_Def_Calib_2bit.
 *  @copydetails Calib3InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib3InfoLINDEN(const AnalyzeContext* context,
                                                         const OptTable* options,
                                                         Calib3Info* info) IA_NOEXCEPT;

/** As analyze_CreateDefault_Calib3InfoLINDEN(), with PinePoplar_Def_Calib_4bit and
 *  PinePoplar_Def_Calib_2bit.
 *  @copydetails Calib3InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib3InfoPINE_POPLAR(const AnalyzeContext* context,
                                                              const OptTable* options,
                                                              Calib3Info* info) IA_NOEXCEPT;

/** @}
 *  @name Calib4 settings
 *  Handlers of type Calib4SettingsHandler. Unless a handler says otherwise, the resolution is that
 *  of analyze_common_get_resolution(). The first word of a group is the code of
 *  analyze_common_convertHalftoneTypePPDtoBidi(), and the second word is 3.
 *  @{ */

/** Flag 1; the third word is 3 for type 2 or 3, 1 for type 4, else 2.
 *  @copydetails Calib4SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsBAOBAB(const AnalyzeContext* context,
                                                 const OptTable* options, uint32_t* flag,
                                                 uint32_t* x_dpi, uint32_t* y_dpi,
                                                 uint32_t* words) IA_NOEXCEPT;

/** Flag 0; the third word is 2.
 *  @copydetails Calib4SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsEBONY(const AnalyzeContext* context,
                                                const OptTable* options, uint32_t* flag,
                                                uint32_t* x_dpi, uint32_t* y_dpi,
                                                uint32_t* words) IA_NOEXCEPT;

/** Flag 0, resolution 0 by 0. The first word is 0x80000 for type 1, 0x10000 for type 2, else 0; the
 *  others are 0.
 *  @copydetails Calib4SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsSEQUOIA(const AnalyzeContext* context,
                                                  const OptTable* options, uint32_t* flag,
                                                  uint32_t* x_dpi, uint32_t* y_dpi,
                                                  uint32_t* words) IA_NOEXCEPT;

/** Flag 1; the third word is 1.
 *  @copydetails Calib4SettingsHandler */
IA_EXPORT int32_t analyze_GetCalibSettingsTUPELO(const AnalyzeContext* context,
                                                 const OptTable* options, uint32_t* flag,
                                                 uint32_t* x_dpi, uint32_t* y_dpi,
                                                 uint32_t* words) IA_NOEXCEPT;

/** @}
 *  @name Calib4 default information
 *  Handlers of type Calib4InfoHandler. They differ in the first model value and in the entries'
 *  codes.
 *  @{ */

/** First model value 8; code 1 for type 2, 2 for type 4, else 0.
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4InfoCommon(const AnalyzeContext* context,
                                                         const OptTable* options,
                                                         Calib4Info* info) IA_NOEXCEPT;

/** First model value 12; codes as analyze_CreateDefault_Calib4InfoCommon().
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4InfoACACIA(const AnalyzeContext* context,
                                                         const OptTable* options,
                                                         Calib4Info* info) IA_NOEXCEPT;

/** First model value 8; code 1 for type 2 or 3, 2 for type 4, else 0.
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4InfoBAOBAB(const AnalyzeContext* context,
                                                         const OptTable* options,
                                                         Calib4Info* info) IA_NOEXCEPT;

/** First model value 12; codes as analyze_CreateDefault_Calib4InfoBAOBAB().
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4InfoCHESTNUT(const AnalyzeContext* context,
                                                           const OptTable* options,
                                                           Calib4Info* info) IA_NOEXCEPT;

/** First model value 12; code 0, independent of the options.
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4InfoEBONY(const AnalyzeContext* context,
                                                        const OptTable* options,
                                                        Calib4Info* info) IA_NOEXCEPT;

/** First model value 12; code 2, independent of the options.
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4InfoREDWOOD(const AnalyzeContext* context,
                                                          const OptTable* options,
                                                          Calib4Info* info) IA_NOEXCEPT;

/** First model value 8; code 2, independent of the options.
 *  @copydetails Calib4InfoHandler */
IA_EXPORT int32_t analyze_CreateDefault_Calib4InfoTUPELO(const AnalyzeContext* context,
                                                         const OptTable* options,
                                                         Calib4Info* info) IA_NOEXCEPT;

/** @} */

IA_END_DECLS

#endif /* INFO_ANALYZE_CALIBRATION_H_ */
