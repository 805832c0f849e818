// Folders, libraries and ports of driver families.
#include "queue/driver_paths.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "info_analyze/device_uri.h"
#include "info_common/paths.h"
#include "queue/driver_family.h"

namespace ia {
namespace {

constexpr std::string_view kCachesFolder = "/var/cache";
constexpr std::string_view kTemporaryFolder = "/var/cache/Vorel/CUPS_SFP/";
constexpr std::string_view kLibraryFolder = "Bidi";
constexpr std::string_view kCommunicationLibrary = "libmqpd_util.so";

// Key of the URI's driver family, or null.
const char* FindPdlType(const char* uri) noexcept {
  const char* const mark = std::strstr(uri, kPdlTypeMark);
  return mark != nullptr ? mark + std::strlen(kPdlTypeMark) : nullptr;
}

// Installation folder that a URI leads to, borrowed from it or from a table; null when none.
const char* FindDriverFolder(const char* uri) noexcept {
  const char* const pdl_type = FindPdlType(uri);
  if (pdl_type == nullptr) return nullptr;
  if (const DriverFamily* const family = FindFamilyByPdlType(pdl_type)) {
    return family->folder.data();
  }
  // Two keys contain a folder. That of "nsu" follows the first "nsu" of the whole URI, even one in
  // the address.
  if (std::string_view(pdl_type).starts_with("nsu")) return std::strstr(uri, "nsu") + 3;
  if (std::string_view(pdl_type).starts_with("drv")) return pdl_type + 3;
  return nullptr;
}

CString LibraryPath(std::string_view folder, std::string_view library) noexcept {
  return MakePath({folder, "/", kLibraryFolder, "/", library});
}

std::int32_t Return(CString text, char** out) noexcept {
  *out = text.release();
  return *out != nullptr ? 0 : -1;
}

CString CacheFolder(const DriverFamily* family) noexcept {
  if (family == nullptr || family->suffix.empty()) return nullptr;
  return MakePath({kCachesFolder, family->suffix});
}

}  // namespace

CString CacheOfFolder(const char* driver_folder) noexcept {
  return driver_folder != nullptr ? CacheFolder(FindFamilyByFolder(driver_folder)) : nullptr;
}

CString CacheOfUri(const char* device_uri) noexcept {
  const char* const pdl_type = device_uri != nullptr ? FindPdlType(device_uri) : nullptr;
  return pdl_type != nullptr ? CacheFolder(FindFamilyByPdlType(pdl_type)) : nullptr;
}

CString CommunicationLibraryPath(std::string_view driver_folder) noexcept {
  return LibraryPath(driver_folder, kCommunicationLibrary);
}

}  // namespace ia

int32_t MqpdUriToFullPathOfDriverFolder(const char* uri, char** folder) noexcept {
  if (uri == nullptr || folder == nullptr) return -1;
  const char* const found = ia::FindDriverFolder(uri);
  return ia::Return(found != nullptr ? ia::Duplicate(found) : nullptr, folder);
}

int32_t MqpdUriToFullPathOfDriverCache(const char* uri, char** cache) noexcept {
  if (uri == nullptr || cache == nullptr) return -1;
  return ia::Return(ia::CacheOfUri(uri), cache);
}

int32_t FolderPathToDriverCache(const char* folder, char** cache) noexcept {
  if (folder == nullptr || cache == nullptr) return -1;
  return ia::Return(ia::CacheOfFolder(folder), cache);
}

int32_t MqpdUriToFullPathOfIOLib(const char* uri, char** path) noexcept {
  if (uri == nullptr || path == nullptr) return -1;
  *path = nullptr;
  const char* const folder = ia::FindDriverFolder(uri);
  const ia::Endpoint* const endpoint = ia::FindEndpoint(uri);
  if (folder == nullptr || endpoint == nullptr || endpoint->library.empty()) return -1;
  return ia::Return(ia::LibraryPath(folder, endpoint->library), path);
}

int32_t FolderPathToFullPathOfMqpdUtil(const char* folder, char** path) noexcept {
  if (folder == nullptr || path == nullptr) return -1;
  return ia::Return(ia::CommunicationLibraryPath(folder), path);
}

int32_t FolderPathToPortNumber(const char* folder) noexcept {
  const ia::DriverFamily* const family =
      folder != nullptr ? ia::FindFamilyByFolder(folder) : nullptr;
  return family != nullptr ? family->port : 0;
}

int32_t FolderPathToDataPortNumber(const char* folder) noexcept {
  const ia::DriverFamily* const family =
      folder != nullptr ? ia::FindFamilyByFolder(folder) : nullptr;
  return family != nullptr ? family->data_port : 0;
}

char* drivsrctools_PathUtil_NSCachesDirectory(void) noexcept {
  return ia::Duplicate(ia::kCachesFolder).release();
}

char* drivsrctools_PathUtil_NSTemporaryDirectory(void) noexcept {
  return ia::Duplicate(ia::kTemporaryFolder).release();
}
