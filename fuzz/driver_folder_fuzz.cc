// Any bytes as an installation folder.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/input.h"
#include "info_analyze/device_uri.h"
#include "tests/info_common/guarded_buffer.h"

namespace {

using ia_fuzz::Require;
using ia_test::OwnedText;

constexpr std::size_t kPathSize = 2048;

void CheckUtility(const char* folder) {
  char* path = nullptr;
  const std::int32_t status = FolderPathToFullPathOfMqpdUtil(folder, &path);
  const OwnedText owned_path(path);
  const std::string expected = std::string(folder) + "/Bidi/libmqpd_util.so";
  Require(status == (expected.size() < kPathSize ? 0 : -1));
  Require(status == 0 ? path == expected : path == nullptr);
}

// A family with ports has a cache folder, named as the installation folder is.
void CheckFamily(const char* folder) {
  char* cache = nullptr;
  const std::int32_t status = FolderPathToDriverCache(folder, &cache);
  const OwnedText owned_cache(cache);
  Require(status == (cache != nullptr ? 0 : -1));
  const std::int32_t port = FolderPathToPortNumber(folder);
  const std::int32_t data_port = FolderPathToDataPortNumber(folder);
  Require((port == 0) == (data_port == 0));
  Require(port == 0 || (status == 0 && port == data_port + 100));
  if (status != 0) return;
  const std::string_view family = std::string_view(cache).substr(std::string("/var/cache").size());
  Require(std::string_view(folder).starts_with("/Library/Printers" + std::string(family)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto folder = ia_test::ExactText(bytes.substr(0, bytes.find('\0')));
  CheckUtility(folder.get());
  CheckFamily(folder.get());
  return 0;
}
