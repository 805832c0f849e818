// The update handler of the one driver model that has extra options.
#ifndef ANALYZE_MODEL_EXTRA_OPTIONS_H_
#define ANALYZE_MODEL_EXTRA_OPTIONS_H_

#include "analyze/update_handler.h"

namespace ia {

extern const UpdateHandler kExtraUpdate;

}  // namespace ia

#endif  // ANALYZE_MODEL_EXTRA_OPTIONS_H_
