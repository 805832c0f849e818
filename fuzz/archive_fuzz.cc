// Any bytes as an archived snapshot. Those after a "t" are the archive before its compression,
// whose checksums no fuzzer finds; those after any other byte are the file.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/snapshot/archive.h"
#include "fuzz/input.h"

namespace {

void RequireSafe(const ia::cli::Files& files) {
  ia_fuzz::Require(files.size() <= ia::cli::kMaxArchivedFiles);
  std::size_t size = 0;
  for (const auto& [path, contents] : files) {
    ia_fuzz::Require(!path.empty() && path.size() <= ia::cli::kMaxArchivedPath);
    ia_fuzz::Require(path.front() != '/' && ("/" + path + "/").find("/../") == std::string::npos);
    size += contents.size();
  }
  ia_fuzz::Require(size <= ia::cli::kMaxUnpackedSize);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    const ia::cli::Files files = *data == 't' ? ia::cli::UnpackTar(bytes) : ia::cli::Unpack(bytes);
    RequireSafe(files);
    ia_fuzz::Require(ia::cli::Unpack(ia::cli::Pack(files)) == files);
  } catch (const ia::cli::ArchiveFault&) {
    return 0;
  }
  return 0;
}
