// Folders and files of driver families.
#ifndef QUEUE_DRIVER_PATHS_H_
#define QUEUE_DRIVER_PATHS_H_

#include <string_view>

#include "info_common/owned.h"

namespace ia {

// The cache folder of a driver's folder, or of the driver that a device URI names. Null when there
// is none, the argument is null or an allocation fails.
[[nodiscard]] CString CacheOfFolder(const char* driver_folder) noexcept;
[[nodiscard]] CString CacheOfUri(const char* device_uri) noexcept;

// The communication library in a driver's folder; null when an allocation fails.
[[nodiscard]] CString CommunicationLibraryPath(std::string_view driver_folder) noexcept;

}  // namespace ia

#endif  // QUEUE_DRIVER_PATHS_H_
