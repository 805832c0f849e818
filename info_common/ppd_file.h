// Reading an open PPD.
#ifndef INFO_COMMON_PPD_FILE_H_
#define INFO_COMMON_PPD_FILE_H_

#include <cups/file.h>

#include "info_analyze/option_table.h"

namespace ia {

// The option table of a PPD, from the current file position to its end; null when the PPD has no
// option lines or an allocation fails.
[[nodiscard]] OptTable* ReadPpd(cups_file_t* file) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_PPD_FILE_H_
