#include "tests/integration/call_faults.h"

#include <cups/cups.h>
#include <cups/file.h>
#include <cups/ppd.h>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "tests/support/imports.h"

// cupsGetPPD() is deprecated, and the library's only way to a PPD.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace ia_test {
namespace {

CallFaults& Faults() { return CallFaults::Instance(); }

#define IA_GOES_WRONG(callee) Faults().GoesWrong(Callee::callee, __builtin_return_address(0))

void* Malloc(size_t size) {
  return IA_GOES_WRONG(kMalloc) ? nullptr : Faults().Allocated(malloc(size));
}

void* Calloc(size_t count, size_t size) {
  return IA_GOES_WRONG(kCalloc) ? nullptr : Faults().Allocated(calloc(count, size));
}

void* Realloc(void* block, size_t size) {
  if (IA_GOES_WRONG(kRealloc)) return nullptr;
  Faults().Released(block);
  return Faults().Allocated(realloc(block, size));
}

char* Strdup(const char* text) {
  if (IA_GOES_WRONG(kStrdup)) return nullptr;
  return static_cast<char*>(Faults().Allocated(strdup(text)));
}

char* Strndup(const char* text, size_t length) {
  if (IA_GOES_WRONG(kStrndup)) return nullptr;
  return static_cast<char*>(Faults().Allocated(strndup(text, length)));
}

void Free(void* block) {
  Faults().Released(block);
  free(block);
}

int Open(const char* path, int flags, ...) {
  if (IA_GOES_WRONG(kOpen)) return -1;
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return open(Faults().UnderRoot(path).c_str(), flags, mode);
}

int Fstat(int descriptor, struct stat* status) {
  return IA_GOES_WRONG(kFstat) ? -1 : fstat(descriptor, status);
}

off_t Lseek(int descriptor, off_t offset, int whence) {
  return IA_GOES_WRONG(kLseek) ? -1 : lseek(descriptor, offset, whence);
}

// A read may return less than requested, and these do.
constexpr std::size_t kLongestRead = 64;

ssize_t ReadOrFail(const void* return_address, int descriptor, void* buffer, size_t size) {
  if (!Faults().GoesWrong(Callee::kRead, return_address)) {
    return read(descriptor, buffer, std::min(size, kLongestRead));
  }
  return Faults().manner() == Fault::Manner::kReadsEnd ? 0 : -1;
}

ssize_t Read(int descriptor, void* buffer, size_t size) {
  return ReadOrFail(__builtin_return_address(0), descriptor, buffer, size);
}

ssize_t ReadChecked(int descriptor, void* buffer, size_t size, size_t capacity) {
  if (size > capacity) abort();
  return ReadOrFail(__builtin_return_address(0), descriptor, buffer, size);
}

// A call that succeeds may leave anything in errno, and these do.
int Succeeded(int result) {
  if (result == 0) errno = EDOM;
  return result;
}

// A call that releases something has released it even when it reports a failure.
int FailedAfterAll(int error) {
  if (error != 0) errno = error;
  return -1;
}

int Close(int descriptor) {
  const bool goes_wrong = IA_GOES_WRONG(kClose);
  const int result = Succeeded(close(descriptor));
  return goes_wrong ? FailedAfterAll(Faults().error()) : result;
}

int Unlink(const char* path) { return IA_GOES_WRONG(kUnlink) ? -1 : Succeeded(unlink(path)); }

int Stat(const char* path, struct stat* status) {
  return IA_GOES_WRONG(kStat) ? -1 : stat(Faults().UnderRoot(path).c_str(), status);
}

// The entries are libc's blocks until the caller gets them.
int Scandir(const char* folder, dirent*** entries, int (*filter)(const dirent*),
            int (*compare)(const dirent**, const dirent**)) {
  if (IA_GOES_WRONG(kScandir)) return -1;
  const int count = scandir(Faults().UnderRoot(folder).c_str(), entries, filter, compare);
  if (count < 0) return count;
  Faults().Allocated(*entries);
  for (int i = 0; i < count; ++i) Faults().Allocated((*entries)[i]);
  return count;
}

// Bytes that were read before stay in the buffer.
size_t Fread(void* buffer, size_t size, size_t count, FILE* stream) {
  return IA_GOES_WRONG(kFread) ? 0 : fread(buffer, size, count, stream);
}

size_t FreadChecked(void* buffer, size_t capacity, size_t size, size_t count, FILE* stream) {
  if (size * count > capacity) abort();
  return IA_GOES_WRONG(kFread) ? 0 : fread(buffer, size, count, stream);
}

int Vsnprintf(char* text, size_t size, const char* format, va_list arguments) {
  return IA_GOES_WRONG(kVsnprintf) ? -1 : vsnprintf(text, size, format, arguments);
}

int VsnprintfChecked(char* text, size_t size, int, size_t capacity, const char* format,
                     va_list arguments) {
  if (size > capacity) abort();
  return IA_GOES_WRONG(kVsnprintf) ? -1 : vsnprintf(text, size, format, arguments);
}

// One that goes wrong is interrupted at once.
unsigned Sleep(unsigned seconds) {
  if (IA_GOES_WRONG(kSleep)) return seconds;
  Faults().Slept(seconds);
  return 0;
}

void* Dlopen(const char* path, int mode) {
  void* library = IA_GOES_WRONG(kDlopen) ? nullptr : dlopen(path, mode);
  Faults().Opened(library != nullptr ? 1 : 0);
  return library;
}

void* Dlsym(void* handle, const char* name) {
  return IA_GOES_WRONG(kDlsym) ? nullptr : dlsym(handle, name);
}

int Dlclose(void* handle) {
  const bool goes_wrong = IA_GOES_WRONG(kDlclose);
  const int result = dlclose(handle);
  Faults().Opened(-1);
  return goes_wrong ? FailedAfterAll(0) : result;
}

const char* CupsGetPpd(const char* queue) {
  return IA_GOES_WRONG(kCupsGetPpd) ? nullptr : cupsGetPPD(queue);
}

cups_file_t* CupsFileOpen(const char* path, const char* mode) {
  return IA_GOES_WRONG(kCupsFileOpen) ? nullptr : cupsFileOpen(path, mode);
}

char* CupsFileGets(cups_file_t* file, char* buffer, size_t size) {
  return IA_GOES_WRONG(kCupsFileGets) ? nullptr : cupsFileGets(file, buffer, size);
}

int CupsFileClose(cups_file_t* file) {
  const bool goes_wrong = IA_GOES_WRONG(kCupsFileClose);
  const int result = Succeeded(cupsFileClose(file));
  return goes_wrong ? FailedAfterAll(Faults().error()) : result;
}

// The same for a library whose blocks are counted and never refused.
void* TrackedMalloc(size_t size) { return Faults().Allocated(malloc(size)); }
void* TrackedCalloc(size_t count, size_t size) { return Faults().Allocated(calloc(count, size)); }
void* TrackedRealloc(void* block, size_t size) {
  Faults().Released(block);
  return Faults().Allocated(realloc(block, size));
}
char* TrackedStrdup(const char* text) {
  return static_cast<char*>(Faults().Allocated(strdup(text)));
}
char* TrackedStrndup(const char* text, size_t length) {
  return static_cast<char*>(Faults().Allocated(strndup(text, length)));
}

struct Import {
  std::string_view name;
  void* replacement;
  std::optional<Callee> callee;  // which is made to fail
};

template <class Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

const auto kFailing = std::to_array<Import>({
    {"malloc", Address(Malloc), Callee::kMalloc},
    {"calloc", Address(Calloc), Callee::kCalloc},
    {"realloc", Address(Realloc), Callee::kRealloc},
    {"strdup", Address(Strdup), Callee::kStrdup},
    {"__strdup", Address(Strdup), Callee::kStrdup},
    {"strndup", Address(Strndup), Callee::kStrndup},
    {"__strndup", Address(Strndup), Callee::kStrndup},
    {"free", Address(Free), std::nullopt},
    {"open", Address(Open), Callee::kOpen},
    {"open64", Address(Open), Callee::kOpen},
    {"__open_2", Address(Open), Callee::kOpen},
    {"__open64_2", Address(Open), Callee::kOpen},
    {"fstat", Address(Fstat), Callee::kFstat},
    {"fstat64", Address(Fstat), Callee::kFstat},
    {"lseek", Address(Lseek), Callee::kLseek},
    {"lseek64", Address(Lseek), Callee::kLseek},
    {"read", Address(Read), Callee::kRead},
    {"__read_chk", Address(ReadChecked), Callee::kRead},
    {"close", Address(Close), Callee::kClose},
    {"unlink", Address(Unlink), Callee::kUnlink},
    {"stat", Address(Stat), Callee::kStat},
    {"stat64", Address(Stat), Callee::kStat},
    {"scandir", Address(Scandir), Callee::kScandir},
    {"scandir64", Address(Scandir), Callee::kScandir},
    {"fread", Address(Fread), Callee::kFread},
    {"__fread_chk", Address(FreadChecked), Callee::kFread},
    {"vsnprintf", Address(Vsnprintf), Callee::kVsnprintf},
    {"__vsnprintf_chk", Address(VsnprintfChecked), Callee::kVsnprintf},
    {"sleep", Address(Sleep), Callee::kSleep},
    {"dlopen", Address(Dlopen), Callee::kDlopen},
    {"dlsym", Address(Dlsym), Callee::kDlsym},
    {"dlclose", Address(Dlclose), Callee::kDlclose},
    {"cupsGetPPD", Address(CupsGetPpd), Callee::kCupsGetPpd},
    {"cupsFileOpen", Address(CupsFileOpen), Callee::kCupsFileOpen},
    {"cupsFileGets", Address(CupsFileGets), Callee::kCupsFileGets},
    {"cupsFileClose", Address(CupsFileClose), Callee::kCupsFileClose},
});

const auto kTracked = std::to_array<Import>({
    {"malloc", Address(TrackedMalloc), std::nullopt},
    {"calloc", Address(TrackedCalloc), std::nullopt},
    {"realloc", Address(TrackedRealloc), std::nullopt},
    {"strdup", Address(TrackedStrdup), std::nullopt},
    {"__strdup", Address(TrackedStrdup), std::nullopt},
    {"strndup", Address(TrackedStrndup), std::nullopt},
    {"__strndup", Address(TrackedStrndup), std::nullopt},
    {"free", Address(Free), std::nullopt},
});

// The replacement of an import; null for one that is not in the list.
std::function<void*(std::string_view)> ReplacementsOf(std::span<const Import> imports) {
  return [imports](std::string_view name) {
    const auto import = std::ranges::find(imports, name, &Import::name);
    return import != imports.end() ? import->replacement : nullptr;
  };
}

}  // namespace

const CalleeSet& AllocatingCallees() {
  static const CalleeSet callees{Callee::kMalloc, Callee::kCalloc, Callee::kRealloc,
                                 Callee::kStrdup, Callee::kStrndup};
  return callees;
}

std::optional<Callee> CalleeNamed(std::string_view symbol) {
  const auto import = std::ranges::find(kFailing, symbol, &Import::name);
  return import != kFailing.end() ? import->callee : std::nullopt;
}

CallFaults& CallFaults::Instance() {
  static auto* const faults = new CallFaults;
  return *faults;
}

CallFaults::CallFaults() {
  const LoadedLibrary library = FindLoaded("libinfo_analyze.so.1");
  library_path_ = library.path;
  library_base_ = library.base;
  library_end_ = library.end;
  ReplaceImports(library, ReplacementsOf(kFailing));
}

void CallFaults::Track(std::string_view file_name) {
  ReplaceImports(FindLoaded(file_name), ReplacementsOf(kTracked));
}

// The library's fixed paths.
std::string CallFaults::UnderRoot(std::string_view path) const {
  const bool is_fixed = path.starts_with("/etc/") || path.starts_with("/var/cache/");
  return (is_fixed ? root_ : "") + std::string(path);
}

void CallFaults::Arm(const Fault& fault, int nth) {
  fault_ = fault;
  until_first_ = nth;
  times_left_ = fault.times;
  fired_ = 0;
}

int CallFaults::Disarm() {
  times_left_ = 0;
  return fired_;
}

void CallFaults::ForgetCalls() {
  seen_ = {};
  seconds_slept_ = 0;
}

bool CallFaults::GoesWrong(Callee callee, const void* return_address) {
  ++seen_[static_cast<std::size_t>(callee)];
  if (times_left_ == 0 || !fault_.callees.Has(callee)) return false;
  if (until_first_ > 1) {
    --until_first_;
    return false;
  }
  --times_left_;
  ++fired_;
  auto place = reinterpret_cast<std::uintptr_t>(return_address);
#ifdef __thumb__
  place &= ~std::uintptr_t{1};  // which says that the code there is Thumb code
#endif
  const bool inside = place >= library_base_ && place < library_end_;
  failed_places_[callee].insert(inside ? place - library_base_ : place);
  if (fault_.error != 0) errno = fault_.error;
  return true;
}

void* CallFaults::Allocated(void* block) {
  if (block != nullptr) live_.insert(block);
  return block;
}

void CallFaults::Released(void* block) {
  if (block != nullptr && live_.erase(block) == 0) ++unknown_releases_;
}

void CallFaults::Slept(unsigned seconds) {
  seconds_slept_ += seconds;
  if (on_sleep_) on_sleep_();
}

char* CallFaults::NewText(std::string_view text) {
  return static_cast<char*>(Allocated(strndup(text.data(), text.size())));
}

void CallFaults::Release(void* block) {
  Released(block);
  free(block);
}

}  // namespace ia_test
