// The text of a PPD as drivers write them: keys of different widths, including repeats, prefixes
// and case variants of earlier ones; "*%QVUIValue:" lines; long lines; and flags of several
// function versions.
#ifndef BENCH_DRIVER_PPD_H_
#define BENCH_DRIVER_PPD_H_

#include <cstdint>
#include <string>

namespace ia_bench {

// The function version that selects all but the newest flags of the text.
inline constexpr std::uint32_t kFunctionVersion = 0x310;

// So many lines with keys and values, in an order that is always the same.
[[nodiscard]] std::string DriverEntries(std::int64_t count);

// Lines of flags for seven function versions from 1.00 to 3.10 and for one above.
[[nodiscard]] std::string FunctionVersionFlags();

}  // namespace ia_bench

#endif  // BENCH_DRIVER_PPD_H_
