// Every allocation fails once: the call answers its failure and has changed nothing, and the same
// call made again succeeds.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"
#include "tests/support/imports.h"

namespace ia_test {
namespace {

// Counts the allocations while it is armed and fails one of them.
struct AllocationFault {
  bool is_armed = false;
  int until_failure = 0;
  bool has_fired = false;
  long live_blocks = 0;

  void* Allocate(std::size_t size) {
    if (is_armed && --until_failure == 0) {
      has_fired = true;
      return nullptr;
    }
    void* const block = std::malloc(size != 0 ? size : 1);
    if (block != nullptr) ++live_blocks;
    return block;
  }

  void Release(void* block) {
    if (block != nullptr) --live_blocks;
    std::free(block);
  }
};

AllocationFault fault;

void* AllocateForParser(std::size_t size) { return fault.Allocate(size); }
void ReleaseForParser(void* block) { fault.Release(block); }

// The library returns such blocks to its caller, so they do not count as the library's.
void* AllocateForCaller(std::size_t size) {
  void* const block = fault.Allocate(size);
  if (block != nullptr) --fault.live_blocks;
  return block;
}

class FailingAllocationsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    pugi::set_memory_management_functions(AllocateForParser, ReleaseForParser);
    const auto replacement_of = [](std::string_view name) {
      return name == "malloc" ? reinterpret_cast<void*>(&AllocateForCaller) : nullptr;
    };
    ASSERT_GT(ReplaceImports(FindLoaded("libmqpd_util.so"), replacement_of), 0);
  }

  // Makes the call with its 1st, 2nd, 3rd, ... allocation failing until it succeeds.
  template <class Call, class IsSuccess>
  void Persist(const char* what, Call call, IsSuccess is_success) {
    for (int n = 1; n < 1000; ++n) {
      fault.has_fired = false;
      fault.until_failure = n;
      fault.is_armed = true;
      const auto answer = call();
      fault.is_armed = false;
      failures_ += fault.has_fired;
      if (is_success(answer)) return;
      ASSERT_TRUE(fault.has_fired) << what << " failed by itself";
    }
    FAIL() << what << " never succeeded";
  }

  template <class Call>
  void Write(const char* what, Call call) {
    Persist(what, call, [](std::int32_t status) { return status == 0; });
  }

  template <class Call>
  void Get(const char* what, Call call) {
    Persist(what, call, [](std::int32_t is_stored) { return is_stored != 0; });
  }

  int failures_ = 0;
};

const std::string kLongText(1000, '<');
const std::string kLongKey(200, 'k');

std::string UndisturbedDocument() {
  Writer writer = NewWriter();
  QvXmlWriter* const raw = writer.get();
  qvxmlwrapSet_Long(raw, kLongKey.c_str(), 1);
  qvxmlwrapSet_Double(raw, "b", 0.1);
  qvxmlwrapSet_String(raw, "c", kLongText.c_str(), 0, 0);
  qvxmlwrapSet_Binary(raw, "d", kLongText.data(), 1000);
  qvxmlwrapSet_OpenDict(raw, "list", 0);
  qvxmlwrapSet_OpenArray(raw, kLongKey.c_str());
  qvxmlwrapSet_StringToArray(raw, kLongText.c_str(), 0, 0);
  qvxmlwrapSet_BinaryToArray(raw, kLongText.data(), 1000);
  qvxmlwrapSet_LongToArray(raw, 5);
  qvxmlwrapSet_DoubleToArray(raw, 0.1);
  return Finish(std::move(writer));
}

TEST_F(FailingAllocationsTest, WriterAnswersFailureAndHasWrittenNothing) {
  const std::string expected = UndisturbedDocument();
  const long live_before = fault.live_blocks;
  QvXmlWriter* writer = nullptr;
  Persist(
      "New", [&] { return writer = qvxmlwrapSet_New(); },
      [](const QvXmlWriter* made) { return made != nullptr; });
  Write("Long", [&] { return qvxmlwrapSet_Long(writer, kLongKey.c_str(), 1); });
  Write("Double", [&] { return qvxmlwrapSet_Double(writer, "b", 0.1); });
  Write("String", [&] { return qvxmlwrapSet_String(writer, "c", kLongText.c_str(), 0, 0); });
  Write("Binary", [&] { return qvxmlwrapSet_Binary(writer, "d", kLongText.data(), 1000); });
  Write("OpenDict", [&] { return qvxmlwrapSet_OpenDict(writer, "list", 0); });
  Write("OpenArray", [&] { return qvxmlwrapSet_OpenArray(writer, kLongKey.c_str()); });
  Write("StringToArray",
        [&] { return qvxmlwrapSet_StringToArray(writer, kLongText.c_str(), 0, 0); });
  Write("BinaryToArray",
        [&] { return qvxmlwrapSet_BinaryToArray(writer, kLongText.data(), 1000); });
  Write("LongToArray", [&] { return qvxmlwrapSet_LongToArray(writer, 5); });
  Write("DoubleToArray", [&] { return qvxmlwrapSet_DoubleToArray(writer, 0.1); });
  EXPECT_GT(failures_, 20);
  EXPECT_EQ(Finish(Writer(writer)), expected);
  EXPECT_EQ(fault.live_blocks, live_before);
}

TEST_F(FailingAllocationsTest, EndOfADocumentReleasesTheWriterInAnyCase) {
  const long live_before = fault.live_blocks;
  char* text = nullptr;
  std::int32_t length = -1;
  QvXmlWriter* const writer = qvxmlwrapSet_New();
  qvxmlwrapSet_OpenDict(writer, "list", 0);
  fault.until_failure = 1;
  fault.is_armed = true;
  const std::int32_t status =
      qvxmlwrapSet_Destroy(writer, AddressWord(&text), AddressWord(&length), 0);
  fault.is_armed = false;
  EXPECT_EQ(status, -1);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(length, -1);
  EXPECT_EQ(fault.live_blocks, live_before);
}

TEST_F(FailingAllocationsTest, ReaderIsMadeWholeOrNotAtAll) {
  const std::string document =
      DocumentOf("<string key=\"&lt;" + kLongKey + "\">&amp;" + kLongText.substr(0, 0) +
                 "</string><dict key=\"list\"><array key=\"e\"><long>1</long></array></dict>");
  const long live_before = fault.live_blocks;
  int fired = 0;
  for (int n = 1;; ++n) {
    fault.has_fired = false;
    fault.until_failure = n;
    fault.is_armed = true;
    const Reader reader = Read(document);
    fault.is_armed = false;
    if (!fault.has_fired) {
      EXPECT_NE(reader, nullptr);
      break;
    }
    ++fired;
    // Sorting does without its buffer; everything else is needed.
    if (reader != nullptr) {
      EXPECT_EQ(CountDicts(reader, "list"), 1);
    }
  }
  EXPECT_GT(fired, 5);
  EXPECT_EQ(fault.live_blocks, live_before);
}

TEST_F(FailingAllocationsTest, ValueIsReturnedWholeOrMissing) {
  const Reader owned = ReadContent(
      "<long key=\"a\">                             1</long>"
      "<double key=\"b\">                             1</double>"
      "<string key=\"c\">a text that does not fit into a small block</string>"
      "<binary key=\"d\">AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA</binary>");
  QvXmlReader* const reader = owned.get();
  const long live_before = fault.live_blocks;
  std::int32_t number = 0;
  double factor = 0;
  char* text = nullptr;
  void* data = nullptr;
  std::int32_t length = 0;
  Get("Long", [&] { return qvxmlwrapGet_Long(reader, "a", &number, 0); });
  Get("Double", [&] { return qvxmlwrapGet_Double(reader, "b", &factor, 0); });
  Get("String", [&] { return qvxmlwrapGet_String(reader, "c", &text, nullptr, "UTF-8", 0); });
  Get("Binary", [&] { return qvxmlwrapGet_Binary(reader, "d", &data, &length); });
  EXPECT_EQ(failures_, 1 + 1 + 2 + 3);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(factor, 1.0);
  EXPECT_EQ(TakeText(text), "a text that does not fit into a small block");
  EXPECT_EQ(TakeBytes(data, length), std::string(30, '\0'));
  EXPECT_EQ(fault.live_blocks, live_before);
}

}  // namespace
}  // namespace ia_test

void* operator new(std::size_t size) {
  if (void* const block = ia_test::fault.Allocate(size)) return block;
  throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return ia_test::fault.Allocate(size);
}

void operator delete(void* block) noexcept { ia_test::fault.Release(block); }
void operator delete(void* block, std::size_t) noexcept { ia_test::fault.Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { ia_test::fault.Release(block); }
