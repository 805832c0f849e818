// The reason for an option's value, in sentences.
#ifndef INFO_ANALYZE_CLI_EXPLAIN_BECAUSE_H_
#define INFO_ANALYZE_CLI_EXPLAIN_BECAUSE_H_

#include <string>
#include <vector>

#include "cli/explain/decision.h"
#include "cli/explain/explanation.h"

namespace ia::cli {

// The values that decided and the rule: "Accessories.xml hd = 1 (z_Update_Prn_accessories)".
[[nodiscard]] std::string Because(const Explanation& why, const Decision& decision);

// What would have changed the option, the first of it: "False if Accessories.xml hd is missing".
[[nodiscard]] std::string Instead(const Explanation& why, const Decision& decision);

// One sentence for each different value.
[[nodiscard]] std::vector<std::string> AllInstead(const Decision& decision);

// What else the option depends on, by input: "Tray_list.xml list[] alias (3 values)".
[[nodiscard]] std::string AlsoRead(const Explanation& why, const Decision& decision);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_EXPLAIN_BECAUSE_H_
