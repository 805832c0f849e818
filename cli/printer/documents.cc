#include "cli/printer/documents.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

namespace ia::cli {
namespace {

constexpr auto kFileNames = std::to_array<const char*>({
    "/Accessories.xml",
    "/Functions.xml",
    "/Specid.xml",
    "/Finisher_list.xml",
    "/Bin_list.xml",
    "/Tray_list.xml",
    "/Resolutions.xml",
    "/Fax_line_list.xml",
    "/Devicename.xml",
});
static_assert(kFileNames.size() == IA_DOCUMENT_COUNT);

// Limits of the library's loader.
constexpr off_t kLargestDocument = off_t{16} << 20;
constexpr std::size_t kLongestPath = 1023;

class OpenFile {
 public:
  // Non-blocking, so that a FIFO that nobody writes to is seen for what it is.
  explicit OpenFile(const std::string& path)
      : descriptor_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace

std::optional<std::string> FindFileFault(const std::string& path) {
  if (path.size() > kLongestPath) return std::strerror(ENAMETOOLONG);
  const OpenFile file(path);
  struct stat status = {};
  if (file.descriptor() < 0 || fstat(file.descriptor(), &status) != 0) return std::strerror(errno);
  if (!S_ISREG(status.st_mode)) return "not a regular file";
  if (status.st_size > kLargestDocument) return "larger than 16 MiB";
  char byte = 0;
  if (pread(file.descriptor(), &byte, 1, 0) < 0) return std::strerror(errno);
  return std::nullopt;
}

const char* DocumentFileName(std::int32_t document) {
  return kFileNames[static_cast<std::size_t>(document)] + 1;
}

std::vector<std::string> ExplainMissingDocuments(const AnalyzeContext& analyzer) {
  std::vector<std::string> sentences;
  for (std::size_t i = 0; i < kFileNames.size(); ++i) {
    if (analyzer.documents[i].xml != nullptr) continue;
    const std::string path = std::string(analyzer.xml_folder) + kFileNames[i];
    // The library tells only that a document is missing, so the file is looked at once more.
    const std::optional<std::string> fault = FindFileFault(path);
    sentences.push_back("document " + path + ": " +
                        fault.value_or("not a document that the communication library reads"));
  }
  return sentences;
}

}  // namespace ia::cli
