// Taking a device URI apart.
#include "info_analyze/device_uri.h"

#include <cstdint>
#include <cstring>

#include "info_common/owned.h"
#include "queue/driver_family.h"

const char* zGetIOSignatureFromMqpdUri(const char* uri) noexcept {
  const ia::Endpoint* const endpoint = uri != nullptr ? ia::FindEndpoint(uri) : nullptr;
  return endpoint != nullptr ? endpoint->prefix.data() : nullptr;
}

int32_t MqpdUriToEndpointFamily(const char* uri, char** family) noexcept {
  if (uri == nullptr || family == nullptr) return -1;
  const ia::Endpoint* const endpoint = ia::FindEndpoint(uri);
  *family = endpoint != nullptr ? ia::Duplicate(endpoint->prefix).release() : nullptr;
  return *family != nullptr ? 0 : -1;
}

// A URI without "/PDLType=" fails, but the uncut copy stays in the output: callers free it.
int32_t MqpdUriToPrinterAddress(const char* uri, char** address) noexcept {
  if (uri == nullptr || address == nullptr) return -1;
  *address = nullptr;
  const ia::Endpoint* const endpoint = ia::FindEndpoint(uri);
  if (endpoint == nullptr) return -1;
  *address = ia::Duplicate(uri + endpoint->prefix.size()).release();
  char* const end = *address != nullptr ? std::strstr(*address, ia::kPdlTypeMark) : nullptr;
  if (end == nullptr) return -1;
  *end = '\0';
  return 0;
}

// No URI at all counts as well; callers depend on it.
int32_t DeviceUriToCheckDuplex(const char* uri) noexcept {
  return uri == nullptr || std::string_view(uri).starts_with("qvbm") ? 1 : 0;
}
