/** @file
 *  The update handlers that Analyze_Info_FromPrinter() runs. Each reads one device document and
 *  appends option keywords to a list. */
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

IA_END_DECLS

#endif /* INFO_ANALYZE_PRINTER_UPDATES_H_ */
