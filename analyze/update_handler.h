// The record of an update handler, which the query's chain runs.
#ifndef ANALYZE_UPDATE_HANDLER_H_
#define ANALYZE_UPDATE_HANDLER_H_

#include <cstdint>
#include <span>

#include "analyze/exported.h"
#include "analyze/option_rows.h"
#include "analyze/update_option.h"
#include "info_analyze/analyzer.h"

namespace ia {

// The guards follow the handlers' places in the query and are not always the documents that are
// read: the platform version comes from Specid but waits for Finisher_list. Drivers depend on this
// pairing.
struct UpdateHandler {
  const char* name;                                        // exported name
  std::int32_t (*function)(AnalyzeContext*, OptionList*);  // exported function: runs with defaults
  std::int32_t guard;                                      // as in UpdateSource
  std::span<const UpdateOption> options;
  std::int32_t (*run)(AnalyzeContext*, const OptionTarget&) noexcept;
};

}  // namespace ia

#endif  // ANALYZE_UPDATE_HANDLER_H_
