/** @file
 *  The update handlers of Analyze_Info_FromPrinter(), which turn device documents into options of a
 *  list, and the one of Analyze_Info_FromFunctionVersion(). */
#ifndef INFO_ANALYZE_PRINTER_UPDATES_H_
#define INFO_ANALYZE_PRINTER_UPDATES_H_

#include <stdint.h>

#include "info_analyze/analyzer.h"
#include "info_analyze/export.h"

IA_BEGIN_DECLS

/** Reads the Accessories document and sets QVHardDisk and QVTotalMemSize (decimal, in the
 *  device's unit).
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument or when the document is not loaded */
IA_EXPORT int32_t z_Update_Prn_accessories(AnalyzeContext* context,
                                           OptionList* options) IA_NOEXCEPT;

/** Reads the Functions document and sets QVDupUnit, QVUseJobAccount, QVEnableTrustPrint,
 *  QVUseSecuredPrint, QVUseCSModeJobAccount, QVUseCSModeSecured, QVUseCSModeFCode and
 *  QVUseUsrManagement; the three modes end as "mode1" or "mode2".
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument or when the document is not loaded */
IA_EXPORT int32_t z_Update_Prn_functions(AnalyzeContext* context, OptionList* options) IA_NOEXCEPT;

/** Reads the Specid document and sets QVSpecID, fitted to the PPD's QVValueListSpecID.
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument or when the document is not loaded */
IA_EXPORT int32_t z_Update_Prn_specid(AnalyzeContext* context, OptionList* options) IA_NOEXCEPT;

/** Reads the Specid document and, for the platform "NCPP" only, sets QVPlatformVersion, fitted to
 *  the PPD's QVValueListPlatformVersion.
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument or when the document is not loaded */
IA_EXPORT int32_t z_Update_Prn_platformVer(AnalyzeContext* context,
                                           OptionList* options) IA_NOEXCEPT;

/** Reads the Resolutions document and sets QVEnableQuick (300 dpi), QVEnableFine (600 dpi) and
 *  QVEnableSuperFine (1200 dpi).
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument or when the document is not loaded */
IA_EXPORT int32_t z_Update_Prn_resolutions(AnalyzeContext* context,
                                           OptionList* options) IA_NOEXCEPT;

/** Reads the Finisher_list document and sets QVOptionStaple, QVPuncher, QVFolder, QVTrimmer,
 *  QVInnerTrimmer, QVInsertUnit, QVEnableMultiInserter, QVStacker, QVBinderOption, QVProPuncher and
 *  QVTopBottomTrimmer. A later unit that gives a value replaces that of an earlier one.
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument; else the result of the read that failed, with nothing set */
IA_EXPORT int32_t z_Update_Prn_finisher_list(AnalyzeContext* context,
                                             OptionList* options) IA_NOEXCEPT;

/** Reads the Bin_list document and sets QVTrayCSetting.
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument; else the result of the read that failed, with nothing set */
IA_EXPORT int32_t z_Update_Prn_bin_list(AnalyzeContext* context, OptionList* options) IA_NOEXCEPT;

/** Reads the Tray_list document and sets the options of analyze_GetInputOptions().
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument or a failed allocation; else the result of the last item's
 *          read, with nothing set */
IA_EXPORT int32_t z_Update_Prn_tray_list(AnalyzeContext* context, OptionList* options) IA_NOEXCEPT;

/** Reads the Bin_list and Finisher_list documents and sets QVFinisher, QVCopyTray and QVFinTray by
 *  analyze_GetFinisherOption().
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument or a failed allocation; else the result of
 *          analyze_GetBinAlias() or of the last item's read, with nothing set */
IA_EXPORT int32_t z_Update_Prn_Complex_FinisherInformations(AnalyzeContext* context,
                                                            OptionList* options) IA_NOEXCEPT;

/** Reads the Fax_line_list and Devicename documents and sets QVFAXNumOfLine, QVFAXLineType,
 *  QVFAXDialLineA to D, QVFAXIPFAXINTRA, QVFAXIPFAXVoIP, QVFAXIPFAXNGN and QVFAXIPFAXMyNumberNGN.
 *  @param context  analyser
 *  @param options  list
 *  @return 0; -1 for a NULL argument; else the result of the last line's read, with nothing set */
IA_EXPORT int32_t z_Update_Prn_fax_line_list(AnalyzeContext* context,
                                             OptionList* options) IA_NOEXCEPT;

/** Sets the extra options of the model whose code equals "RA-Z5"; other models have none.
 *  @param context  analyser
 *  @param options  list
 *  @return 0, also for other models; -1 for a NULL argument; else the result of
 *          analyze_GetExtraOptionStringROWAN() */
IA_EXPORT int32_t z_Update_Prn_extra(AnalyzeContext* context, OptionList* options) IA_NOEXCEPT;

/** Copies the flag values that the PPD declares for a function version under one key.
 *  @param context     analyser
 *  @param source_key  function-version key of the PPD
 *  @param version     highest index that applies
 *  @param target_key  protocol flag key under which the values are added, with an index; NULL: the
 *                     values are "key:value" items and have their own keys
 *  @param options     list
 *  @return 0; -1 for a NULL argument (except @p target_key) or a failed allocation */
IA_EXPORT int32_t z_Update_FuncVer(AnalyzeContext* context, const char* source_key, int32_t version,
                                   const char* target_key, OptionList* options) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_PRINTER_UPDATES_H_ */
