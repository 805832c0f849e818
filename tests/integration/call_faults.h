// Makes the calls of the loaded libinfo_analyze.so.1 into other libraries fail on demand.
//
// The slots through which the library calls malloc(), read(), cupsGetPPD() and so on are replaced
// in its own global offset table, so that no other calls fail: not those of libcups, the
// test or a sanitizer. It works on the shipped file as on an instrumented one.
#ifndef TESTS_INTEGRATION_CALL_FAULTS_H_
#define TESTS_INTEGRATION_CALL_FAULTS_H_

#include <array>
#include <bitset>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace ia_test {

enum class Callee {
  kMalloc,
  kCalloc,
  kRealloc,
  kStrdup,
  kStrndup,
  kOpen,
  kFstat,
  kLseek,
  kRead,
  kClose,
  kUnlink,
  kStat,
  kScandir,
  kFread,
  kVsnprintf,
  kSleep,
  kDlopen,
  kDlsym,
  kDlclose,
  kCupsGetPpd,
  kCupsFileOpen,
  kCupsFileGets,
  kCupsFileClose,
  kCount
};

class CalleeSet {
 public:
  CalleeSet(std::initializer_list<Callee> callees) {
    for (Callee callee : callees) bits_.set(static_cast<std::size_t>(callee));
  }
  [[nodiscard]] bool Has(Callee callee) const { return bits_[static_cast<std::size_t>(callee)]; }

 private:
  std::bitset<static_cast<std::size_t>(Callee::kCount)> bits_;
};

// Every call by which the library gets memory.
const CalleeSet& AllocatingCallees();

// The callee of a symbol of a system library, under any of its spellings; nothing for one that is
// not made to fail.
std::optional<Callee> CalleeNamed(std::string_view symbol);

inline constexpr int kOnce = 1;
inline constexpr int kFromThenOn = INT_MAX;

// How an armed call goes wrong. Calls that give something back (close(), dlclose() and
// cupsFileClose()) do their work before they report the failure, as the real ones do.
struct Fault {
  enum class Manner {
    kFails,     // the result that means failure
    kReadsEnd,  // read() gives 0 before the end
  };

  CalleeSet callees;
  int times = kOnce;
  int error = ENOMEM;  // 0: errno is left as it was
  Manner manner = Manner::kFails;
};

// Allocations fail; calls of one function fail.
inline Fault OutOfMemory(int times) { return {.callees = AllocatingCallees(), .times = times}; }
inline Fault Failing(Callee callee, int error) { return {.callees = {callee}, .error = error}; }

class CallFaults {
 public:
  // The one of this process; the library is patched at the first call.
  static CallFaults& Instance();

  // The nth call (1: the next) of the fault's callees goes wrong, and those after it while the
  // fault has times left.
  void Arm(const Fault& fault, int nth);

  // How many calls went wrong since Arm().
  int Disarm();

  // Calls by the library, whether or not they went wrong, since ForgetCalls().
  [[nodiscard]] int Seen(Callee callee) const { return seen_[static_cast<std::size_t>(callee)]; }
  void ForgetCalls();

  // Seconds the library asked to sleep since ForgetCalls(). It never sleeps while it is patched.
  [[nodiscard]] unsigned SecondsSlept() const { return seconds_slept_; }
  // Called in place of each sleep.
  void OnSleep(std::function<void()> action) { on_sleep_ = std::move(action); }

  // The folder that open(), scandir() and stat() take for "/" where the library has a fixed path,
  // so that it leads to files of the test.
  void SetRoot(std::string root) { root_ = std::move(root); }

  // Blocks that the library, or a library that is tracked beside it, allocated and that were
  // not released.
  [[nodiscard]] std::size_t LiveBlocks() const { return live_.size(); }
  // Libraries that the library opened and did not close.
  [[nodiscard]] int OpenLibraries() const { return open_libraries_; }
  // Blocks that the library released and that are not known to be allocated.
  [[nodiscard]] int UnknownReleases() const { return unknown_releases_; }

  // Counts also the blocks of another loaded library, and never fails them. The library must stay
  // loaded from then on.
  void Track(std::string_view file_name);

  // A text that the library is to release.
  char* NewText(std::string_view text);
  // free() for what the library returned.
  void Release(void* block);

  // For each function the places in the library at which its call was made to fail: the return
  // addresses, relative to the load address. A place outside the library is absolute.
  using Places = std::map<Callee, std::set<std::uintptr_t>>;
  [[nodiscard]] const Places& FailedPlaces() const { return failed_places_; }

  [[nodiscard]] const std::string& LibraryPath() const { return library_path_; }
  [[nodiscard]] std::uintptr_t LibraryBase() const { return library_base_; }

  // For the replaced calls only.
  [[nodiscard]] bool GoesWrong(Callee callee, const void* return_address);
  [[nodiscard]] Fault::Manner manner() const { return fault_.manner; }
  [[nodiscard]] int error() const { return fault_.error; }
  void* Allocated(void* block);
  void Released(void* block);
  void Slept(unsigned seconds);
  void Opened(int libraries) { open_libraries_ += libraries; }
  [[nodiscard]] std::string UnderRoot(std::string_view path) const;

 private:
  CallFaults();

  Fault fault_{.callees = {}};
  int until_first_ = 0;
  int times_left_ = 0;
  int fired_ = 0;
  std::array<int, static_cast<std::size_t>(Callee::kCount)> seen_{};
  unsigned seconds_slept_ = 0;
  std::function<void()> on_sleep_;
  std::string root_;
  std::unordered_set<void*> live_;
  int unknown_releases_ = 0;
  int open_libraries_ = 0;
  Places failed_places_;
  std::string library_path_;
  std::uintptr_t library_base_ = 0;
  std::uintptr_t library_end_ = 0;
};

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_CALL_FAULTS_H_
