// Folders, libraries and ports of driver families.
#include <cstring>

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
  // Two keys carry a folder of their own. That of "nsu" is looked for from the URI's start, so an
  // address that holds these letters decides.
  if (std::string_view(pdl_type).starts_with("nsu")) return std::strstr(uri, "nsu") + 3;
  if (std::string_view(pdl_type).starts_with("drv")) return pdl_type + 3;
  return nullptr;
}

CString LibraryPath(std::string_view folder, std::string_view library) noexcept {
  return MakePath({folder, "/", kLibraryFolder, "/", library});
}

std::int32_t HandOver(CString text, char** out) noexcept {
  *out = text.release();
  return *out != nullptr ? 0 : -1;
}

CString CacheFolder(const DriverFamily* family) noexcept {
  if (family == nullptr || family->suffix.empty()) return nullptr;
  return MakePath({kCachesFolder, family->suffix});
}

}  // namespace
}  // namespace ia

int32_t MqpdUriToFullPathOfDriverFolder(const char* uri, char** folder) noexcept {
  if (uri == nullptr || folder == nullptr) return -1;
  const char* const found = ia::FindDriverFolder(uri);
  return ia::HandOver(found != nullptr ? ia::Duplicate(found) : nullptr, folder);
}

int32_t MqpdUriToFullPathOfDriverCache(const char* uri, char** cache) noexcept {
  if (uri == nullptr || cache == nullptr) return -1;
  const char* const pdl_type = ia::FindPdlType(uri);
  return ia::HandOver(
      pdl_type != nullptr ? ia::CacheFolder(ia::FindFamilyByPdlType(pdl_type)) : nullptr, cache);
}

int32_t FolderPathToDriverCache(const char* folder, char** cache) noexcept {
  if (folder == nullptr || cache == nullptr) return -1;
  return ia::HandOver(ia::CacheFolder(ia::FindFamilyByFolder(folder)), cache);
}

int32_t MqpdUriToFullPathOfIOLib(const char* uri, char** path) noexcept {
  if (uri == nullptr || path == nullptr) return -1;
  *path = nullptr;
  const char* const folder = ia::FindDriverFolder(uri);
  const ia::Endpoint* const endpoint = ia::FindEndpoint(uri);
  if (folder == nullptr || endpoint == nullptr || endpoint->library.empty()) return -1;
  return ia::HandOver(ia::LibraryPath(folder, endpoint->library), path);
}

int32_t FolderPathToFullPathOfMqpdUtil(const char* folder, char** path) noexcept {
  if (folder == nullptr || path == nullptr) return -1;
  return ia::HandOver(ia::LibraryPath(folder, ia::kCommunicationLibrary), path);
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
