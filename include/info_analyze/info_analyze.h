/** @mainpage
 *  The whole interface of libinfo_analyze, except the three functions of libc_names.h.
 *
 *  Conventions, unless a function says otherwise:
 *  - Texts are NUL-terminated bytes. Lengths and sizes count bytes.
 *  - A status is a signed 32-bit integer: 0 for success, -1 for a null argument or a failed
 *    allocation. Other non-zero values (the errno of a failed read, a handler's result) are
 *    returned unchanged. A lookup returns 1 (found) or 0. A constructor returns NULL when it fails.
 *  - Every pointer argument is checked. For NULL a function returns its failure result.
 *  - A text or buffer returned as a result or through an output argument is a fresh allocation that
 *    the caller releases with free(). A pointer that the caller must not free is called "borrowed".
 *  - "Ignoring case" applies to the 26 ASCII letters only, in every locale.
 *  - The library creates no threads, takes no locks and has no global state. Use an analyser, a
 *    communication library context, a list or a store in one thread at a time; different ones may
 *    be used in parallel. Pure functions may be called from any thread.
 *  - The library prints and logs nothing, and reads no environment variable. */
#ifndef INFO_ANALYZE_INFO_ANALYZE_H_
#define INFO_ANALYZE_INFO_ANALYZE_H_

#include "info_analyze/analyzer.h"
#include "info_analyze/bidi.h"
#include "info_analyze/calibration.h"
#include "info_analyze/communication_library.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/device_uri.h"
#include "info_analyze/flag_info.h"
#include "info_analyze/halftone.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/model_options.h"
#include "info_analyze/mqpd_conf.h"
#include "info_analyze/option_list.h"
#include "info_analyze/option_setter.h"
#include "info_analyze/option_table.h"
#include "info_analyze/printer_updates.h"
#include "info_analyze/provenance.h"
#include "info_analyze/queue_list.h"
#include "info_analyze/string_helpers.h"

#endif /* INFO_ANALYZE_INFO_ANALYZE_H_ */
