#include "bidi/device_documents.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "info_analyze/bidi.h"
#include "info_analyze/provenance.h"
#include "info_common/file_descriptor.h"
#include "info_common/owned.h"
#include "info_common/paths.h"

namespace ia {
namespace {

struct Document {
  const char* file_name;
  const char* cache_key;
  const char* list_key;  // of the repeated dictionary whose items are counted, or null
};

constexpr auto kDocuments = std::to_array<Document>({
    {"Accessories.xml", "INFO_Acce", nullptr},
    {"Functions.xml", "INFO_Func", nullptr},
    {"Specid.xml", "INFO_SpID", nullptr},
    {"Finisher_list.xml", "INFO_FiLi", "list"},
    {"Bin_list.xml", "INFO_BiLi", "list"},
    {"Tray_list.xml", "INFO_TrLi", "list"},
    {"Resolutions.xml", "INFO_Reso", nullptr},
    {"Fax_line_list.xml", "INFO_FaLL", "list"},
    {"Devicename.xml", "INFO_DeNa", nullptr},
});
static_assert(kDocuments.size() == IA_DOCUMENT_COUNT);

struct Bytes {
  CString data;
  std::int32_t length = 0;
};

bool IsDocumentIndex(std::int32_t index) noexcept {
  return index >= 0 && index < IA_DOCUMENT_COUNT;
}

// Length of a file that can be a document, else -1. A FIFO or a device would block or never end.
off_t DocumentLength(int descriptor) noexcept {
  struct stat status;
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return -1;
  const off_t length = lseek(descriptor, 0, SEEK_END);
  if (length < 0 || length > IA_DOCUMENT_MAX_SIZE || lseek(descriptor, 0, SEEK_SET) != 0) return -1;
  return length;
}

std::int32_t ReadExactly(int descriptor, char* data, std::size_t length) noexcept {
  while (length > 0) {
    errno = 0;
    const ssize_t count = read(descriptor, data, length);
    if (count < 0) return errno != 0 ? errno : -1;
    if (count == 0) return -1;  // the file shrank meanwhile
    data += count;
    length -= static_cast<std::size_t>(count);
  }
  return 0;
}

std::int32_t ReadDocumentFile(const char* path, Bytes& bytes) noexcept {
  const FileDescriptor file(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (file.Get() < 1) return -1;  // 0, free where stdin is closed, counts as a failure
  const off_t length = DocumentLength(file.Get());
  if (length < 0) return -1;
  bytes.data = NewText(static_cast<std::size_t>(length));
  if (!bytes.data) return -1;
  bytes.length = static_cast<std::int32_t>(length);
  return ReadExactly(file.Get(), bytes.data.get(), static_cast<std::size_t>(length));
}

std::int32_t ReadDocument(const char* folder, const Document& document, Bytes& bytes) noexcept {
  if (folder == nullptr) return -1;
  const CString path = MakePath({folder, "/", document.file_name}, IA_DOCUMENT_MAX_PATH_LENGTH + 1);
  return path ? ReadDocumentFile(path.get(), bytes) : -1;
}

std::int32_t ReadCachedDocument(const char* queue_name, const Document& document,
                                Bytes& bytes) noexcept {
  void* data = nullptr;
  const std::int32_t status =
      info_common_read_data_from_ppd(queue_name, document.cache_key, &data, &bytes.length);
  bytes.data.reset(static_cast<char*>(data));
  return status;
}

std::int32_t ParseDocument(AnalyzeContext& context, std::int32_t index, const void* bytes,
                           std::int32_t length, const char* list_key) noexcept {
  QvXmlReader* const reader = Bidi_qvxmlwrapGet_New(context.bidi, bytes, length);
  if (reader == nullptr) return 0;  // a document that cannot be read counts as absent
  std::int32_t count = 0;
  if (list_key != nullptr) Bidi_qvxmlwrapGet_DictCount(context.bidi, reader, list_key, &count);
  // No document of the largest size has more items. If a communication library reported more, the
  // update handlers would run for hours.
  context.documents[index] = {reader, std::clamp(count, 0, std::int32_t{IA_DOCUMENT_MAX_ITEMS})};
  return 0;
}

}  // namespace

std::int32_t LoadDocument(AnalyzeContext& context, std::int32_t index) noexcept {
  const Document& document = kDocuments[static_cast<std::size_t>(index)];
  Bytes bytes;
  const std::int32_t status = context.is_ppd_cache != 0
                                  ? ReadCachedDocument(context.queue_name, document, bytes)
                                  : ReadDocument(context.xml_folder, document, bytes);
  if (status != 0) return status;
  if (!bytes.data || bytes.length < 0) return -1;
  return ParseDocument(context, index, bytes.data.get(), bytes.length, document.list_key);
}

void UnloadDocument(AnalyzeContext& context, std::int32_t index) noexcept {
  XmlData& slot = context.documents[index];
  if (slot.xml == nullptr) return;
  Bidi_qvxmlwrapGet_Destroy(context.bidi, slot.xml);
  slot = {};
}

void UnloadDocuments(AnalyzeContext& context) noexcept {
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) UnloadDocument(context, index);
}

}  // namespace ia

const char* Analyze_Provenance_GetDocumentName(int32_t document) noexcept {
  if (!ia::IsDocumentIndex(document)) return nullptr;
  return ia::kDocuments[static_cast<std::size_t>(document)].file_name;
}

int32_t analyze_common_create_xmldata(AnalyzeContext* context, int32_t index) noexcept {
  if (context == nullptr || !ia::IsDocumentIndex(index)) return -1;
  return ia::LoadDocument(*context, index);
}

int32_t analyze_common_create_all_xmldata(AnalyzeContext* context) noexcept {
  if (context == nullptr) return -1;
  int32_t status = 0;
  for (int32_t index = 0; index < IA_DOCUMENT_COUNT && status == 0; ++index) {
    status = ia::LoadDocument(*context, index);
  }
  return status;
}

int32_t analyze_common_initialize_xmldata(AnalyzeContext* context, int32_t index, const void* bytes,
                                          int32_t length, const char* list_key) noexcept {
  if (context == nullptr || bytes == nullptr || length < 0 || !ia::IsDocumentIndex(index)) {
    return -1;
  }
  return ia::ParseDocument(*context, index, bytes, length, list_key);
}

void analyze_common_destroy_xmldata(AnalyzeContext* context, int32_t index) noexcept {
  if (context != nullptr && ia::IsDocumentIndex(index)) ia::UnloadDocument(*context, index);
}

int32_t analyze_common_destroy_all_xmldata(AnalyzeContext* context) noexcept {
  if (context == nullptr) return -1;
  ia::UnloadDocuments(*context);
  return 0;
}
