// Reads the daemon's configuration and looks up its queues and devices.
#include "queue/mqpd_conf.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "info_analyze/device_uri.h"
#include "info_common/file_descriptor.h"
#include "info_common/owned.h"
#include "info_common/paths.h"
#include "queue/conf_text.h"
#include "queue/driver_family.h"
#include "queue/driver_paths.h"

static_assert(offsetof(FolderConf, text) == 0 && offsetof(FolderConf, length) == sizeof(char*));

namespace ia {
namespace {

constexpr std::size_t kSmallestBuffer = 64;

// The status of a stream with an error.
constexpr std::int32_t kStreamError = 1;

// A FIFO or a device could block or never end. A directory is opened and fails when it is read,
// which callers distinguish from a file that cannot be opened.
bool CanBeRead(const struct stat& status) noexcept {
  return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
}

// One byte more than the file has, so that the first read reaches its end. This is only a guess: a
// file may grow meanwhile, and a pipe has no size.
std::size_t FirstBufferSize(const struct stat& status, std::size_t largest_buffer) noexcept {
  const std::size_t size = status.st_size > 0 ? static_cast<std::size_t>(status.st_size) + 1 : 0;
  return size <= largest_buffer ? std::max(size, kSmallestBuffer) : kSmallestBuffer;
}

// Calls read(buffer, size, error) until it returns less than the size, which is the end or an
// error.
template <class Read>
StreamData ReadAll(std::size_t size, std::size_t largest_buffer, Read read) noexcept {
  StreamData data;
  std::size_t length = 0;
  while (Resize(data.bytes, size)) {
    length += read(data.bytes.get() + length, size - length, data.error);
    if (length < size) {
      data.length = static_cast<std::uint32_t>(length);
      return data;
    }
    if (size == largest_buffer) break;
    size = std::min(size * 2, largest_buffer);
  }
  return {};
}

std::size_t ReadFile(int descriptor, char* buffer, std::size_t size, std::int32_t& error) noexcept {
  std::size_t length = 0;
  while (length < size) {
    const ssize_t count = read(descriptor, buffer + length, size - length);
    if (count < 0) error = kStreamError;
    if (count <= 0) break;
    length += static_cast<std::size_t>(count);
  }
  return length;
}

// The status of a stream that returned fewer bytes than requested.
std::int32_t ReadError(std::FILE* stream) noexcept {
  if (std::feof(stream) != 0) return 0;
  const int error = std::ferror(stream);
  return error != 0 ? error : -1;
}

// Without bytes when the file cannot be opened. Reads it without a stream, which would take half as
// much time again.
StreamData ReadConf(std::string_view cache_folder) noexcept {
  const CString path = MakePath({cache_folder, "/", "MQPD", "/", "mqpd.conf"});
  const FileDescriptor file(path ? open(path.get(), O_RDONLY | O_NONBLOCK | O_CLOEXEC) : -1);
  struct stat status;
  if (file.Get() < 0 || fstat(file.Get(), &status) != 0 || !CanBeRead(status)) return {};
  return ReadAll(FirstBufferSize(status, kLargestConfBuffer), kLargestConfBuffer,
                 [&](char* buffer, std::size_t size, std::int32_t& error) noexcept {
                   return ReadFile(file.Get(), buffer, size, error);
                 });
}

std::int32_t Status(const StreamData& data) noexcept {
  return data.bytes != nullptr ? data.error : -1;
}

void Clear(char** out) noexcept {
  if (out != nullptr) *out = nullptr;
}

std::string_view TextOf(const FolderConf& conf) noexcept {
  return conf.text != nullptr ? std::string_view(conf.text, conf.length) : std::string_view();
}

// The result of a lookup by name.
struct Device {
  CString address;
  CString protocol;
};

bool CopyDevice(std::string_view device_path, const Endpoint& endpoint, Device& device) noexcept {
  device.protocol = Duplicate(endpoint.prefix);
  if (!device.protocol) return false;
  device_path.remove_prefix(endpoint.prefix.size());
  const std::size_t length = device_path.find(kPdlTypeMark);
  if (length == std::string_view::npos) return true;
  device.address = Duplicate({device_path.data(), length});
  return device.address != nullptr;
}

bool FindDevice(std::string_view text, std::string_view queue_name, Device& device) noexcept {
  const auto queue = FindQueueNamed(text, queue_name);
  if (!queue) return false;
  if (!queue->device_path) return true;  // the queue is there, and serves no device
  const Endpoint* const endpoint = FindEndpoint(*queue->device_path);
  return endpoint != nullptr && CopyDevice(*queue->device_path, *endpoint, device);
}

}  // namespace

StreamData ReadToEnd(std::FILE* stream, std::size_t largest_buffer) noexcept {
  struct stat status = {};
  if (fstat(fileno(stream), &status) != 0) status.st_size = 0;
  return ReadAll(FirstBufferSize(status, largest_buffer), largest_buffer,
                 [&](char* buffer, std::size_t size, std::int32_t& error) noexcept {
                   const std::size_t length = std::fread(buffer, 1, size, stream);
                   if (length < size) error = ReadError(stream);
                   return length;
                 });
}

FolderConf* NewConf(std::string_view cache_folder) noexcept {
  CPtr<FolderConf> conf = NewZeroed<FolderConf>();
  if (!conf) return nullptr;
  StreamData data = ReadConf(cache_folder);
  if (!data.bytes) return nullptr;
  conf->text = data.bytes.release();  // as far as it could be read
  conf->length = data.length;
  return conf.release();
}

std::int32_t FindQueueOfUri(std::string_view cache_folder, std::string_view uri,
                            char** queue_name) noexcept {
  const StreamData data = ReadConf(cache_folder);
  if (const std::int32_t status = Status(data); status != 0) return status;
  const auto queue = FindQueueWithUri({data.bytes.get(), data.length}, uri);
  if (!queue) return -1;
  *queue_name = Duplicate(queue->name).release();
  return *queue_name != nullptr ? 0 : -1;
}

}  // namespace ia

FolderConf* FolderPathForConf_Initialize(const char* driver_folder) noexcept {
  const ia::CString cache_folder = ia::CacheOfFolder(driver_folder);
  return cache_folder ? ia::NewConf(cache_folder.get()) : nullptr;
}

void FolderPathForConf_Terminate(FolderConf* conf) noexcept {
  if (conf == nullptr) return;
  std::free(conf->text);
  std::free(conf);
}

int32_t FolderPathForConf_GetAddressAndProtocol(const FolderConf* conf, const char* queue_name,
                                                char** address, char** protocol) noexcept {
  const std::string_view text = conf != nullptr ? ia::TextOf(*conf) : std::string_view();
  return zGetPrinterAddressAndIOLibType(text.data(), text.data() + text.size(), queue_name, address,
                                        protocol);
}

int32_t MqpdUriToQueueName(const char* device_uri, char** queue_name) noexcept {
  ia::Clear(queue_name);
  if (queue_name == nullptr) return -1;
  const ia::CString cache_folder = ia::CacheOfUri(device_uri);
  return cache_folder ? ia::FindQueueOfUri(cache_folder.get(), device_uri, queue_name) : -1;
}

int32_t zGetQueueCount(const char* start, const char* end) noexcept {
  ia::QueueLines queues(ia::TextBetween(start, end));
  int32_t count = 0;
  for (std::string_view name; queues.Next(name);) ++count;
  return count;
}

// The NUL stays in the text on purpose: each call returns the next name.
int32_t zGetFirstQueueName(char* start, char* end, char** next, char** name) noexcept {
  ia::Clear(next);
  ia::Clear(name);
  if (next == nullptr || name == nullptr) return 0;
  *next = end;
  ia::QueueLines queues(ia::TextBetween(start, end));
  std::string_view found;
  if (!queues.Next(found)) return 0;
  *next = end - queues.rest().size();
  *name = ia::Duplicate(found).release();
  if (*name == nullptr) return 0;
  start[found.data() + found.size() - start] = '\0';
  return 1;
}

int32_t zGetQueueNameFromPrinterAddress(const char* start, const char* end, const char* device_uri,
                                        char** name) noexcept {
  ia::Clear(name);
  if (device_uri == nullptr || name == nullptr) return 0;
  const auto queue = ia::FindQueueWithUri(ia::TextBetween(start, end), device_uri);
  if (!queue) return 0;
  *name = ia::Duplicate(queue->name).release();
  return *name != nullptr ? 1 : 0;
}

int32_t zGetPrinterAddressAndIOLibType(const char* start, const char* end, const char* queue_name,
                                       char** address, char** protocol) noexcept {
  ia::Clear(address);
  ia::Clear(protocol);
  if (queue_name == nullptr || address == nullptr || protocol == nullptr) return 0;
  ia::Device device;
  if (!ia::FindDevice(ia::TextBetween(start, end), queue_name, device)) return 0;
  *address = device.address.release();
  *protocol = device.protocol.release();
  return 1;
}

int32_t zGetAllDataFromStream(FILE* stream, char** data, uint32_t* length) noexcept {
  ia::Clear(data);
  if (length != nullptr) *length = 0;
  if (stream == nullptr || data == nullptr || length == nullptr) return -1;
  ia::StreamData read = ia::ReadToEnd(stream);
  *length = read.length;
  const int32_t status = ia::Status(read);
  *data = read.bytes.release();
  return status;
}
