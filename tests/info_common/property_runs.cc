#include <stdlib.h>

namespace {

// Properties run a thousand times each unless the environment says otherwise.
[[maybe_unused]] const int kRuns = setenv("RC_PARAMS", "max_success=1000", 0);

}  // namespace
