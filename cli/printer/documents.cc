#include "cli/printer/documents.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace ia::cli {
namespace {

class OpenFile {
 public:
  // Non-blocking, so that open() does not wait for a FIFO that nobody writes to.
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
  if (path.size() > IA_DOCUMENT_MAX_PATH_LENGTH) return std::strerror(ENAMETOOLONG);
  const OpenFile file(path);
  struct stat status = {};
  if (file.descriptor() < 0 || fstat(file.descriptor(), &status) != 0) return std::strerror(errno);
  if (!S_ISREG(status.st_mode)) return "not a regular file";
  if (status.st_size > IA_DOCUMENT_MAX_SIZE) {
    return "larger than " + std::to_string(IA_DOCUMENT_MAX_SIZE >> 20) + " MiB";
  }
  char byte = 0;
  if (pread(file.descriptor(), &byte, 1, 0) < 0) return std::strerror(errno);
  return std::nullopt;
}

std::vector<std::string> ExplainMissingDocuments(const AnalyzeContext& analyzer) {
  std::vector<std::string> sentences;
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    if (analyzer.documents[i].xml != nullptr) continue;
    const std::string path =
        std::string(analyzer.xml_folder) + "/" + Analyze_Provenance_GetDocumentName(i);
    // The library reports only that a document is missing, so its file is checked again.
    const std::optional<std::string> fault = FindFileFault(path);
    sentences.push_back("document " + path + ": " +
                        fault.value_or("not a document that the communication library reads"));
  }
  return sentences;
}

}  // namespace ia::cli
