/** @file
 *  The analyser: what a caller creates for a print queue, asks, and destroys. */
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

/** An analyser. The record starts zero-filled; who writes handlers of their own reads it, callers
 *  of the queries need only the pointer. */
struct AnalyzeContext {
  BidiContext* bidi;                    /**< the caller's */
  char* queue_name;                     /**< owned copy */
  const char* xml_folder;               /**< folder of the documents, the caller's; may be NULL */
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
 *  A flag store that cannot be made for lack of memory stays NULL, which is no failure; of the five
 *  flag texts only the last one read decides about success.
 *
 *  @param bidi        loaded communication library, not owned; must outlive the analyser
 *  @param queue_name  name of a CUPS queue, copied
 *  @param xml_folder  folder of the nine documents, not copied: the text must outlive the
 *                     analyser; NULL: there are none
 *  @return new analyser, released with Analyze_Destroy(); NULL when @p bidi or @p queue_name is
 *          NULL, the PPD cannot be read or has no option lines, or memory ran out. The call can
 *          wait up to a minute while the process has too many open files */
IA_EXPORT AnalyzeContext* Analyze_Create(BidiContext* bidi, const char* queue_name,
                                         const char* xml_folder) IA_NOEXCEPT;

/** Releases an analyser and all that it owns; the communication library and the folder text stay
 *  the caller's.
 *  @param context  analyser, or NULL for nothing to do */
IA_EXPORT void Analyze_Destroy(AnalyzeContext* context) IA_NOEXCEPT;

/** Asks what the printer is and has, in terms of PPD options.
 *
 *  Documents that are not loaded are read first; of several that fail, only the last one that had
 *  to be read decides about success. Then the update handlers of printer_updates.h append keywords
 *  and values in a fixed order. A keyword that the list already has gets the new value in its old
 *  place.
 *
 *  @param context  analyser
 *  @param options  list that receives the options; holds at least one node, see
 *                  info_common_optlist_additem_front()
 *  @param reload   non-zero: drop all documents and read them again
 *  @return 0; -1 for a NULL argument; else the result of the loader or handler that failed. Options
 *          appended before the failure stay */
IA_EXPORT int32_t Analyze_Info_FromPrinter(AnalyzeContext* context, OptionList* options,
                                           uint8_t reload) IA_NOEXCEPT;

/** Asks which protocol and script flags a driver function version selects: the flag values that the
 *  PPD declares for it, under their protocol flag keys or as "key:value" items.
 *  @param context           analyser
 *  @param function_version  version, such as 0x0310; its hexadecimal digits up to the first letter
 *                           are the highest index, in decimal, of the PPD keys that apply
 *  @param options           list that receives the flags; holds at least one node
 *  @return 0; -1 for a NULL argument or exhausted memory, with the flags before kept */
IA_EXPORT int32_t Analyze_Info_FromFunctionVersion(AnalyzeContext* context,
                                                   uint32_t function_version,
                                                   OptionList* options) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_ANALYZER_H_ */
