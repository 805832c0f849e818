// The update handlers of the printer query, as its chain runs them and as they are told of.
#ifndef ANALYZE_UPDATE_HANDLERS_H_
#define ANALYZE_UPDATE_HANDLERS_H_

#include <cstdint>

#include "analyze/option_rows.h"
#include "info_analyze/provenance.h"

namespace ia {

struct UpdateHandler {
  UpdateSource source;
  std::int32_t (*run)(AnalyzeContext*, const OptionTarget&) noexcept;
};

extern const UpdateHandler kAccessoriesUpdate;
extern const UpdateHandler kFunctionsUpdate;
extern const UpdateHandler kSpecIdUpdate;
extern const UpdateHandler kPlatformUpdate;
extern const UpdateHandler kFinisherListUpdate;
extern const UpdateHandler kBinListUpdate;
extern const UpdateHandler kTrayListUpdate;
extern const UpdateHandler kResolutionsUpdate;
extern const UpdateHandler kFaxLineListUpdate;
extern const UpdateHandler kExtraUpdate;
extern const UpdateHandler kFinisherInformationsUpdate;

// Defines the record of an exported handler, with the options that it sets. The guards follow the
// handlers' places in the query and are not always the documents that are read: the platform
// version comes from Specid but waits for Finisher_list. Drivers depend on this pairing.
#define IA_DEFINE_UPDATE(record, exported, guard, run, options)                                   \
  constinit const UpdateHandler record {                                                          \
    {IA_NAME_OF(exported), guard, (options).data(), static_cast<std::int32_t>((options).size())}, \
        run                                                                                       \
  }

}  // namespace ia

#endif  // ANALYZE_UPDATE_HANDLERS_H_
