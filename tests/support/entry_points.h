#ifndef TESTS_SUPPORT_ENTRY_POINTS_H_
#define TESTS_SUPPORT_ENTRY_POINTS_H_

#include <array>

namespace ia_test {

inline constexpr auto kEntryPoints = std::to_array<const char*>({
#define X(name) #name,
#include "tests/support/entry_points.inc"
#undef X
});
static_assert(kEntryPoints.size() == 36);

}  // namespace ia_test

#endif  // TESTS_SUPPORT_ENTRY_POINTS_H_
