#include "cli/snapshot/archive.h"

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "info_analyze/device_documents.h"

namespace ia::cli {
namespace {

constexpr std::size_t kMaxFileSize = IA_DOCUMENT_MAX_SIZE;

// Bytes between two files. Some headers hold lists that take far more memory than bytes.
constexpr std::size_t kMaxHeaderSize = std::size_t{64} << 10;

constexpr std::size_t kBlock = 4096;
constexpr unsigned kOwnersFile = 0600;

struct Releaser {
  void operator()(archive* stream) const noexcept { archive_free(stream); }
  void operator()(archive_entry* entry) const noexcept { archive_entry_free(entry); }
};
using ArchivePtr = std::unique_ptr<archive, Releaser>;
using EntryPtr = std::unique_ptr<archive_entry, Releaser>;

template <class T>
[[nodiscard]] T* NotNull(T* made) {
  return made != nullptr ? made : throw std::bad_alloc();
}

[[noreturn]] void Refuse(const std::string& reason) { throw ArchiveFault(reason); }

// A warning concerns what a snapshot does not need, such as the encoding of paths.
void Require(archive* stream, la_ssize_t result) {
  if (result >= ARCHIVE_WARN) return;
  const char* const reason = archive_error_string(stream);
  Refuse(reason != nullptr ? reason : "cannot be read");
}

[[nodiscard]] std::string Mebibytes(std::size_t bytes) {
  return std::to_string(bytes >> 20) + " MiB";
}

// Reading ----------------------------------------------------------------------------------------

// All data of the current file, if it is not too long.
[[nodiscard]] std::string ReadData(archive* stream, std::size_t limit, const std::string& name) {
  std::string data;
  std::string block(kBlock, '\0');
  for (;;) {
    const la_ssize_t count = archive_read_data(stream, block.data(), block.size());
    Require(stream, count);
    if (count <= 0) return data;
    data.append(block, 0, static_cast<std::size_t>(count));
    if (data.size() > limit) Refuse(name + ": larger than " + Mebibytes(limit));
  }
}

// Just one layer: each further one could multiply the size again.
[[nodiscard]] std::string Decompress(std::string_view bytes) {
  const ArchivePtr stream(NotNull(archive_read_new()));
  archive_read_append_filter(stream.get(), ARCHIVE_FILTER_GZIP);
  archive_read_support_format_raw(stream.get());
  Require(stream.get(), archive_read_open_memory(stream.get(), bytes.data(), bytes.size()));
  archive_entry* entry = nullptr;
  const int result = archive_read_next_header(stream.get(), &entry);
  if (result == ARCHIVE_EOF) return {};
  Require(stream.get(), result);
  return ReadData(stream.get(), kMaxUnpackedSize, "contents");
}

// Supplies the unpacked bytes in blocks, a limited number of them for a header.
class Source {
 public:
  explicit Source(std::string_view bytes) : rest_(bytes) {}
  void ExpectHeader() { allowed_ = kMaxHeaderSize; }
  void ExpectData() { allowed_ = rest_.size(); }

  static la_ssize_t Read(archive* stream, void* source, const void** block) {
    return static_cast<Source*>(source)->Supply(stream, block);
  }

 private:
  [[nodiscard]] la_ssize_t Supply(archive* stream, const void** block) {
    const std::size_t size = std::min(kBlock, rest_.size());
    if (size > allowed_) {
      archive_set_error(stream, EFBIG, "a header is too long");
      return ARCHIVE_FATAL;
    }
    *block = rest_.data();
    rest_.remove_prefix(size);
    allowed_ -= size;
    return static_cast<la_ssize_t>(size);
  }

  std::string_view rest_;
  std::size_t allowed_ = kMaxHeaderSize;
};

[[nodiscard]] bool LeadsElsewhere(std::string_view path) {
  if (path.starts_with('/')) return true;
  for (;;) {
    const std::size_t end = std::min(path.find('/'), path.size());
    if (path.substr(0, end) == "..") return true;
    if (end == path.size()) return false;
    path.remove_prefix(end + 1);
  }
}

[[nodiscard]] std::string PathOf(archive_entry* entry) {
  const char* const path = archive_entry_pathname(entry);
  if (path == nullptr || *path == '\0') Refuse("a file has no name");
  if (std::string_view(path).size() > kMaxArchivedPath) Refuse("a path is too long");
  return path;
}

void RequireRegularFile(archive_entry* entry, const std::string& path) {
  if (LeadsElsewhere(path)) Refuse(path + ": leads out of the archive");
  const bool is_regular =
      archive_entry_filetype(entry) == AE_IFREG && archive_entry_hardlink(entry) == nullptr &&
      archive_entry_symlink(entry) == nullptr && archive_entry_sparse_count(entry) == 0;
  if (!is_regular) Refuse(path + ": not a regular file");
  const std::int64_t size = archive_entry_size(entry);
  if (size < 0 || static_cast<std::uint64_t>(size) > kMaxFileSize) {
    Refuse(path + ": larger than " + Mebibytes(kMaxFileSize));
  }
}

void ReadFile(archive* stream, archive_entry* entry, Files& files) {
  const std::string path = PathOf(entry);
  RequireRegularFile(entry, path);
  if (files.contains(path)) Refuse(path + ": exists twice");
  if (files.size() == kMaxArchivedFiles) Refuse("has too many files");
  files[path] = ReadData(stream, kMaxFileSize, path);
}

// Writing ----------------------------------------------------------------------------------------

la_ssize_t Append(archive*, void* bytes, const void* block, size_t size) {
  static_cast<std::string*>(bytes)->append(static_cast<const char*>(block), size);
  return static_cast<la_ssize_t>(size);
}

void WriteFile(archive* stream, const std::string& path, const std::string& contents) {
  const EntryPtr entry(NotNull(archive_entry_new()));
  archive_entry_set_pathname(entry.get(), path.c_str());
  archive_entry_set_filetype(entry.get(), AE_IFREG);
  archive_entry_set_perm(entry.get(), kOwnersFile);
  archive_entry_set_mtime(entry.get(), std::time(nullptr), 0);
  archive_entry_set_size(entry.get(), static_cast<la_int64_t>(contents.size()));
  Require(stream, archive_write_header(stream, entry.get()));
  Require(stream, archive_write_data(stream, contents.data(), contents.size()));
}

void RequireLimits(const Files& files) {
  std::size_t size = 0;
  for (const auto& [path, contents] : files) {
    if (path.size() > kMaxArchivedPath) Refuse("a path is too long");
    if (contents.size() > kMaxFileSize) {
      Refuse(path + ": larger than " + Mebibytes(kMaxFileSize));
    }
    size += contents.size() + kBlock;
  }
  if (size > kMaxUnpackedSize) Refuse("contents: larger than " + Mebibytes(kMaxUnpackedSize));
}

}  // namespace

std::string Pack(const Files& files) {
  RequireLimits(files);
  std::string bytes;
  const ArchivePtr stream(NotNull(archive_write_new()));
  archive_write_add_filter_gzip(stream.get());
  archive_write_set_format_gnutar(stream.get());
  archive_write_set_bytes_in_last_block(stream.get(), 1);  // gzip warns of zeros after its data
  Require(stream.get(), archive_write_open(stream.get(), &bytes, nullptr, Append, nullptr));
  for (const auto& [path, contents] : files) WriteFile(stream.get(), path, contents);
  Require(stream.get(), archive_write_close(stream.get()));
  if (bytes.size() > kMaxArchiveSize) Refuse("larger than " + Mebibytes(kMaxArchiveSize));
  return bytes;
}

Files Unpack(std::string_view bytes) {
  if (bytes.size() > kMaxArchiveSize) Refuse("larger than " + Mebibytes(kMaxArchiveSize));
  return UnpackTar(Decompress(bytes));
}

Files UnpackTar(std::string_view bytes) {
  Source source(bytes);
  const ArchivePtr stream(NotNull(archive_read_new()));
  archive_read_support_format_tar(stream.get());
  Require(stream.get(), archive_read_open(stream.get(), &source, nullptr, Source::Read, nullptr));
  Files files;
  archive_entry* entry = nullptr;
  for (;;) {
    source.ExpectHeader();
    const int result = archive_read_next_header(stream.get(), &entry);
    if (result == ARCHIVE_EOF) return files;
    Require(stream.get(), result);
    source.ExpectData();
    ReadFile(stream.get(), entry, files);
  }
}

}  // namespace ia::cli
