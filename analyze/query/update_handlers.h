// The update handlers of the query that do not depend on one model alone.
#ifndef ANALYZE_QUERY_UPDATE_HANDLERS_H_
#define ANALYZE_QUERY_UPDATE_HANDLERS_H_

#include "analyze/update_handler.h"

namespace ia {

extern const UpdateHandler kAccessoriesUpdate;
extern const UpdateHandler kFunctionsUpdate;
extern const UpdateHandler kSpecIdUpdate;
extern const UpdateHandler kPlatformUpdate;
extern const UpdateHandler kFinisherListUpdate;
extern const UpdateHandler kBinListUpdate;
extern const UpdateHandler kTrayListUpdate;
extern const UpdateHandler kResolutionsUpdate;
extern const UpdateHandler kFaxLineListUpdate;
extern const UpdateHandler kFinisherInformationsUpdate;

}  // namespace ia

#endif  // ANALYZE_QUERY_UPDATE_HANDLERS_H_
