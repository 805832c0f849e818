// Any bytes as a device URI.
#include "info_analyze/device_uri.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/input.h"
#include "tests/info_common/guarded_buffer.h"

namespace {

using ia_fuzz::Require;
using ia_test::OwnedText;

constexpr char kMark[] = "/PDLType=";
constexpr std::size_t kPathSize = 2048;

// What a function makes of the text; null where it fails.
OwnedText Derive(std::int32_t (*function)(const char*, char**) noexcept, const char* text) {
  char* result = nullptr;
  const std::int32_t status = function(text, &result);
  Require(status == (result != nullptr ? 0 : -1));
  return OwnedText(result);
}

void CheckAddress(const char* uri, const char* prefix) {
  char* address = nullptr;
  const std::int32_t status = MqpdUriToPrinterAddress(uri, &address);
  const OwnedText owned_address(address);
  if (prefix == nullptr) {
    Require(status == -1 && address == nullptr);
    return;
  }
  const std::string_view rest(uri + std::strlen(prefix));
  const std::size_t end = rest.find(kMark);
  Require(status == (end != rest.npos ? 0 : -1) && address == rest.substr(0, end));
}

void CheckEndpoint(const char* uri) {
  const char* const prefix = zGetIOSignatureFromMqpdUri(uri);
  const OwnedText family = Derive(MqpdUriToEndpointFamily, uri);
  Require((prefix != nullptr) == (family != nullptr));
  Require(!family || std::string_view(uri).starts_with(family.get()));
  Require(!family || std::strcmp(family.get(), prefix) == 0);
  CheckAddress(uri, prefix);
}

// The library of an endpoint is in the folder of its driver family. The cache folder is the same
// whether it is derived from the URI or from that folder.
void CheckPaths(const char* uri) {
  const OwnedText folder = Derive(MqpdUriToFullPathOfDriverFolder, uri);
  Require(!folder || std::strstr(uri, kMark) != nullptr);
  if (const OwnedText cache = Derive(MqpdUriToFullPathOfDriverCache, uri)) {
    const OwnedText cache_of_folder = Derive(FolderPathToDriverCache, folder.get());
    Require(cache_of_folder && std::strcmp(cache.get(), cache_of_folder.get()) == 0);
  }
  if (const OwnedText library = Derive(MqpdUriToFullPathOfIOLib, uri)) {
    const std::string_view path(library.get());
    Require(folder && path.starts_with(std::string(folder.get()) + "/Bidi/"));
    Require(path.size() < kPathSize);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string_view text = bytes.substr(0, bytes.find('\0'));
  const auto uri = ia_test::ExactText(text);
  CheckEndpoint(uri.get());
  CheckPaths(uri.get());
  Require(DeviceUriToCheckDuplex(uri.get()) == (text.starts_with("qvbm") ? 1 : 0));
  return 0;
}
