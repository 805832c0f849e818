#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

#include "cli/commlib/clauses.h"
#include "cli/commlib/reader.h"
#include "cli/commlib/sample_document.h"
#include "cli/commlib/trial.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

// A copy of bytes that ends where memory ends, so that reading beyond it ends the process.
class GuardedCopy {
 public:
  explicit GuardedCopy(const std::string& bytes) : size_(bytes.size()) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t pages = size_ / page + 1;
    block_ = mmap(nullptr, (pages + 1) * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS,
                  -1, 0);
    if (block_ == MAP_FAILED) throw NotTested("out of memory");
    start_ = static_cast<char*>(block_) + pages * page - size_;
    std::memcpy(start_, bytes.data(), size_);
    mprotect(static_cast<char*>(block_) + pages * page, page, PROT_NONE);
  }
  GuardedCopy(const GuardedCopy&) = delete;
  GuardedCopy& operator=(const GuardedCopy&) = delete;

  [[nodiscard]] char* start() const { return start_; }
  [[nodiscard]] std::int32_t size() const { return static_cast<std::int32_t>(size_); }

 private:
  std::size_t size_;
  void* block_ = nullptr;
  char* start_ = nullptr;
};

void Refuse(Trial& trial, const std::string& what, const void* data, std::int32_t length) {
  trial.Begin("qvxmlwrapGet_New() of " + what);
  const bool is_refused = Bidi_qvxmlwrapGet_New(&trial.library(), data, length) == nullptr;
  trial.Expect(is_refused ? "NULL" : "a reader", "NULL");
}

void TryLength(Trial& trial) {
  const GuardedCopy copy(FindSample(trial));
  trial.Begin("qvxmlwrapGet_New() of a document at the end of readable memory");
  const Reader reader(trial, Bidi_qvxmlwrapGet_New(&trial.library(), copy.start(), copy.size()));
  if (reader.handle() == nullptr) throw Broken("qvxmlwrapGet_New() refuses a valid document");
  ExpectSample(reader);
  reader.Destroy();
}

void TryReleasedDocument(Trial& trial) {
  std::string document = FindSample(trial);
  const Reader reader = Parse(trial, trial.library(), document);
  document.assign(document.size(), 'x');
  ExpectSample(reader);
  reader.Destroy();
}

void TryInvalid(Trial& trial) {
  const std::string noise(64, '\xff');
  Refuse(trial, "64 bytes 0xff", noise.data(), static_cast<std::int32_t>(noise.size()));
  const std::string zeros(64, '\0');
  Refuse(trial, "64 bytes 0", zeros.data(), static_cast<std::int32_t>(zeros.size()));
}

void TryEmpty(Trial& trial) { Refuse(trial, "0 bytes", "", 0); }

void TryNoData(Trial& trial) {
  Refuse(trial, "NULL", nullptr, 0);
  Refuse(trial, "a negative length", "x", -1);
}

// A document that was cut off is refused or read in part.
void TryTruncated(Trial& trial) {
  const std::string sample = FindSample(trial);
  for (std::size_t size = 0; size < sample.size(); ++size) {
    const GuardedCopy copy(sample.substr(0, size));
    trial.Begin("qvxmlwrapGet_New() of the first " + std::to_string(size) + " bytes of a document");
    const Reader reader(trial, Bidi_qvxmlwrapGet_New(&trial.library(), copy.start(), copy.size()));
    if (reader.handle() != nullptr) reader.Destroy();
  }
}

void TryTwoReaders(Trial& trial) {
  const std::string sample = FindSample(trial);
  const Reader first = Parse(trial, trial.library(), sample);
  const Reader second = Parse(trial, trial.library(), sample);
  first.OpenDict("list", 1, true);
  second.OpenDict("list", 2, true);
  first.Long("number", "101");
  second.Long("number", "102");
  second.CloseDict();
  second.Destroy();
  first.Long("number", "101");
  first.CloseDict();
  ExpectSample(first);
  first.Destroy();
}

void TryDestroyInside(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenDict("list", 1, true);
  reader.OpenArray("codes", true);
  reader.Destroy();
}

constexpr auto kClauses = std::to_array<Clause>({
    {"parse.length", "qvxmlwrapGet_New() reads nothing beyond the length", TryLength},
    {"parse.released", "A document can be released when qvxmlwrapGet_New() returns",
     TryReleasedDocument},
    {"parse.invalid", "qvxmlwrapGet_New() refuses bytes that are no document", TryInvalid},
    {"parse.empty", "qvxmlwrapGet_New() refuses a document of 0 bytes", TryEmpty},
    {"parse.no-data", "qvxmlwrapGet_New() refuses NULL and a negative length", TryNoData},
    {"parse.truncated", "A document that was cut off does no harm", TryTruncated},
    {"parse.two-readers", "Readers do not depend on each other", TryTwoReaders},
    {"parse.destroy", "qvxmlwrapGet_Destroy() releases a reader at any place in a document",
     TryDestroyInside},
});

}  // namespace

std::span<const Clause> ParsingClauses() { return kClauses; }

}  // namespace ia::cli
