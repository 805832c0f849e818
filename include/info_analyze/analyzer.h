/** @file
 *  The analyser of a print queue: it works out the printer's PPD options. */
#ifndef INFO_ANALYZE_ANALYZER_H_
#define INFO_ANALYZE_ANALYZER_H_

#include <stdint.h>

#include "info_analyze/bidi.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/export.h"
#include "info_analyze/flag_info.h"
#include "info_analyze/option_list.h"
#include "info_analyze/option_table.h"

IA_BEGIN_DECLS

/** An analyser. The record starts zero-filled. Only code with handlers of its own reads the fields;
 *  other callers need only the pointer. */
struct AnalyzeContext {
  BidiContext* bidi;                    /**< owned by the caller */
  char* queue_name;                     /**< owned copy */
  const char* xml_folder;               /**< document directory, owned by the caller; may be NULL */
  char* driver_name;                    /**< owned model code, such as "RA-H2"; may be NULL */
  XmlData documents[IA_DOCUMENT_COUNT]; /**< loaded on demand, owned */
  FlagInfo* media_type_flags;           /**< PPD key "QV_Prot_MediaType" */
  FlagInfo* input_tray_flags;           /**< PPD key "QVAnlz_InputTray" */
  FlagInfo* slot_media_info_flags;      /**< PPD key "QVAnlz_SlotMediaInfo" */
  FlagInfo* src_option_flags;           /**< PPD key "QVAnlz_SrcOption" */
  FlagInfo* finisher_name_flags;        /**< PPD key "QVAnlz_FinisherName" */
  OptTable* ppd_options;                /**< every option line of the PPD, owned */
  uint8_t is_ppd_cache;                 /**< always 0: documents are files */
};

/** Creates an analyser for a print queue: reads the queue's PPD, its five flag texts and its model
 *  code ("QVAnlz_DriverName"; a PPD may lack it). Documents are not read yet.
 *
 *  A flag store that cannot be allocated stays NULL, and the call goes on. Of the five flag texts,
 *  only the last one read determines whether the call succeeds.
 *
 *  @param bidi        loaded communication library, not owned; must outlive the analyser
 *  @param queue_name  name of a CUPS queue, copied
 *  @param xml_folder  document directory, not copied: the text must outlive the analyser;
 *                     NULL: no documents
 *  @return new analyser, released with Analyze_Destroy(); NULL when @p bidi or @p queue_name is
 *          NULL, the PPD cannot be read or has no option lines, or an allocation fails. The call
 *          waits up to a minute while the process has too many open files */
IA_EXPORT AnalyzeContext* Analyze_Create(BidiContext* bidi, const char* queue_name,
                                         const char* xml_folder) IA_NOEXCEPT;

/** Releases an analyser and all that it owns. The caller still owns the communication library and
 *  the directory text.
 *  @param context  analyser; NULL does nothing */
IA_EXPORT void Analyze_Destroy(AnalyzeContext* context) IA_NOEXCEPT;

/** Works out the printer's PPD options from its PPD and the documents that the device reports.
 *
 *  Documents that are not yet loaded are read first. Only the result of the last one read
 *  determines whether reading succeeded. Then the update handlers of printer_updates.h append
 *  keywords and values in a fixed order. A keyword that is already in the list keeps its place and
 *  gets the new value.
 *
 *  @param context  analyser
 *  @param options  list that receives the options; holds at least one node, see
 *                  info_common_optlist_additem_front()
 *  @param reload   non-zero: drop all documents and read them again
 *  @return 0; -1 for a NULL argument; else the result of the loader or handler that failed. Options
 *          appended before the failure stay */
IA_EXPORT int32_t Analyze_Info_FromPrinter(AnalyzeContext* context, OptionList* options,
                                           uint8_t reload) IA_NOEXCEPT;

/** Appends the protocol and script flags that a driver function version selects. The PPD declares
 *  their values under protocol flag keys or as "key:value" items.
 *  @param context           analyser
 *  @param function_version  version, such as 0x0310; its hexadecimal digits up to the first letter
 *                           are the highest index, in decimal, of the PPD keys that apply
 *  @param options           list that receives the flags; holds at least one node
 *  @return 0; -1 for a NULL argument or a failed allocation; flags appended before it stay */
IA_EXPORT int32_t Analyze_Info_FromFunctionVersion(AnalyzeContext* context,
                                                   uint32_t function_version,
                                                   OptionList* options) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_ANALYZER_H_ */
