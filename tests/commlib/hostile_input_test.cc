// Malicious bytes give no reader, or one that can be used.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"

namespace ia_test {
namespace {

using std::string_literals::operator""s;

constexpr std::size_t kMaxBytes = std::size_t{16} << 20;

constexpr std::string_view kSample =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- sample -->\n"
    "<document version=\"1\">\n"
    "  <long key=\"a\">17</long>\n"
    "  <double key='b'>-1.5e3</double>\n"
    "  <string key=\"c\"> x &lt;&#x20AC;&amp; \xE2\x82\xAC <![CDATA[<&>]]></string>\n"
    "  <binary key=\"d\">AAEC Aw==</binary>\n"
    "  <dict key=\"list\"><long key=\"a\">1</long><array key=\"e\"><long>2</long></array></dict>\n"
    "  <dict key=\"list\"><dict key=\"list\"><string key=\"c\"/></dict></dict>\n"
    "  <array key=\"e\"><string>s</string><dict><long key=\"a\">4</long></dict></array>\n"
    "  <other><?target data?></other>\n"
    "</document>\n";

// A block that ends at an inaccessible page: reading past its end crashes, with and without a
// sanitizer.
class WalledBytes {
 public:
  explicit WalledBytes(std::string_view bytes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t pages = (bytes.size() + page - 1) / page * page;
    mapped_ = pages + page;
    block_ = mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block_ == MAP_FAILED) std::abort();
    char* const wall = static_cast<char*>(block_) + pages;
    mprotect(wall, page, PROT_NONE);
    bytes_ = {wall - bytes.size(), bytes.size()};
    std::memcpy(wall - bytes.size(), bytes.data(), bytes.size());
  }
  WalledBytes(const WalledBytes&) = delete;
  WalledBytes& operator=(const WalledBytes&) = delete;
  ~WalledBytes() { munmap(block_, mapped_); }

  [[nodiscard]] std::string_view bytes() const { return bytes_; }

 private:
  void* block_;
  std::size_t mapped_;
  std::string_view bytes_;
};

void ReadAllAt(const Reader& reader, std::int32_t index) {
  LongAt(reader, index);
  DoubleAt(reader, index);
  StringAt(reader, index);
  BinaryAt(reader, index);
}

// Reads values of every type, with existing and missing keys.
void ReadAll(const Reader& reader, int levels) {
  for (const char* key : {"a", "b", "c", "d", "e", "list", "none"}) {
    GetLong(reader, key);
    GetDouble(reader, key);
    GetString(reader, key);
    GetBinary(reader, key);
    CountElements(reader, key);
    OpenArray(reader, key);
    for (const std::int32_t index : {-1, 0, 1, 2}) ReadAllAt(reader, index);
    EXPECT_EQ(CloseArray(reader), 0);
    if (levels == 0) continue;
    const std::int32_t items = CountDicts(reader, key).value_or(1);
    for (std::int32_t index = 0; index < items; ++index) {
      OpenDict(reader, key, index);
      ReadAll(reader, levels - 1);
      EXPECT_EQ(CloseDict(reader), 0);
    }
  }
}

bool ReadAllOf(std::string_view document) {
  const WalledBytes walled(document);
  const Reader reader = Read(walled.bytes());
  if (reader == nullptr) return false;
  ReadAll(reader, 2);
  EXPECT_EQ(CloseDict(reader), -1);
  return true;
}

TEST(HostileInputTest, EveryPrefixOfADocumentIsRefused) {
  ASSERT_TRUE(ReadAllOf(kSample));
  const std::size_t end = kSample.size() - std::strlen("\n");
  EXPECT_TRUE(ReadAllOf(kSample.substr(0, end)));
  for (std::size_t length = 0; length < end; ++length) {
    EXPECT_FALSE(ReadAllOf(kSample.substr(0, length))) << length;
  }
}

TEST(HostileInputTest, EverySuffixOfADocumentIsRefusedUntilItsDeclarationAndCommentAreCut) {
  const std::size_t root = kSample.find("<document");
  for (std::size_t start = 1; start < kSample.size(); ++start) {
    const std::string_view suffix = kSample.substr(start);
    const bool is_document =
        start <= root && (suffix.starts_with("\n") || suffix.starts_with("<!--") || start == root);
    EXPECT_EQ(ReadAllOf(suffix), is_document) << start;
  }
}

TEST(HostileInputTest, EveryByteMayBeAnyOther) {
  std::string document(kSample);
  for (std::size_t i = 0; i < document.size(); ++i) {
    for (const char byte : "\0\t &;<>\"'/=!?-[]#x1\x7F\x80\xC3\xEF\xFF"s) {
      document[i] = byte;
      ReadAllOf(document);
    }
    document[i] = kSample[i];
  }
}

constexpr auto kParts = std::to_array<std::string_view>({
    "<dict key=\"list\">",
    "</dict>",
    "<array key=\"e\">",
    "</array>",
    "<long key=\"a\">",
    "</long>",
    "<![CDATA[",
    "]]>",
    "<!--",
    "-->",
    "&#0;",
    "&amp;",
    "&x;",
    "<?xml?>",
    "<!DOCTYPE a [",
    "]>",
    "key=\"\"",
    "\xEF\xBB\xBF",
    "<document version=\"1\">",
});

constexpr auto kWholes = std::to_array<std::string_view>({
    "<long key=\"a\">7</long>",
    "<long>8</long>",
    "<dict key=\"list\"/>",
    "<array key=\"e\"/>",
    "<dict><array key=\"e\"/></dict>",
    "<array key=\"a\"><long/><dict/></array>",
    "<!-- -->",
    "<![CDATA[]]>",
    "<?a?>",
    "&#xE9;",
    "2147483648",
    "1e999",
    "====",
    " ",
});

// Keeps markup together and often in its place, so that many of the documents stay well-formed.
std::string Mutate(std::string document, std::mt19937& random) {
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const std::size_t edits = 1 + below(3);
  for (std::size_t i = 0; i < edits && !document.empty(); ++i) {
    const std::size_t at = below(document.size());
    switch (below(6)) {
      case 0:
        document[at] = static_cast<char>(below(256));
        break;
      case 1:
        document[at] = static_cast<char>(' ' + below(0x5F));
        break;
      case 2:
        document.erase(at, 1 + below(8));
        break;
      case 3:
        document.insert(at, kParts[below(kParts.size())]);
        break;
      default:
        document.insert(document.find('>', at) + 1, kWholes[below(kWholes.size())]);
    }
  }
  return document;
}

TEST(HostileInputTest, MutatedDocumentsAreRefusedOrRead) {
  std::mt19937 random(20240229);
  int documents = 0;
  constexpr int kRounds = 20'000;
  for (int i = 0; i < kRounds; ++i) documents += ReadAllOf(Mutate(std::string(kSample), random));
  EXPECT_GT(documents, kRounds / 10) << "too few well-formed documents to prove anything";
  EXPECT_LT(documents, kRounds) << "nothing was damaged";
}

TEST(HostileInputTest, RandomBytesAreRefused) {
  std::mt19937 random(20240229);
  for (int i = 0; i < 5'000; ++i) {
    std::string bytes(random() % 200, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    EXPECT_FALSE(ReadAllOf(bytes));
  }
}

std::string Repeat(std::string_view text, std::size_t times) {
  std::string repeated;
  repeated.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) repeated += text;
  return repeated;
}

TEST(HostileInputTest, VeryDeepNestingIsRefusedWithoutRecursion) {
  for (const std::size_t levels : {10'000u, 600'000u}) {
    const std::string open = Repeat("<dict key=\"d\">", levels);
    EXPECT_EQ(Read(DocumentOf(open)), nullptr) << "not closed";
    EXPECT_EQ(Read(DocumentOf(open + Repeat("</dict>", levels))), nullptr);
    EXPECT_EQ(Read(DocumentOf(Repeat("<a>", levels) + Repeat("</a>", levels))), nullptr);
  }
}

TEST(HostileInputTest, NestedDocumentTypeBracketsAreRefusedWithoutRecursion) {
  EXPECT_EQ(
      Read("<!DOCTYPE a " + Repeat("<!", 500'000) + Repeat(">", 500'000) + ">" + DocumentOf("")),
      nullptr);
  EXPECT_EQ(Read("<!DOCTYPE a " + Repeat("<![", 500'000)), nullptr);
}

TEST(HostileInputTest, SixteenMebibytesAreADocumentAndOneByteMoreIsNone) {
  std::string document = DocumentOf("<long key=\"a\">5</long>");
  document.resize(kMaxBytes, ' ');
  EXPECT_EQ(GetLong(Read(document), "a"), 5);
  document += ' ';
  EXPECT_EQ(Read(document), nullptr);
}

TEST(HostileInputTest, LengthIsCheckedBeforeTheBytes) {
  const std::string document = DocumentOf("");
  // The block is far shorter than that.
  EXPECT_EQ(qvxmlwrapGet_New(document.data(), std::numeric_limits<std::int32_t>::max()), nullptr);
}

TEST(HostileInputTest, LargestTextIsReadWhole) {
  const std::size_t length = kMaxBytes - DocumentOf("<string key=\"c\"></string>").size();
  const Reader reader = ReadContent("<string key=\"c\">" + Repeat("x", length) + "</string>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetString(reader, "c").value_or("").size(), length);
}

TEST(HostileInputTest, TextInVeryManyPiecesIsReadWhole) {
  const Reader reader =
      ReadContent("<string key=\"c\">" + Repeat("x<!---->", 1'000'000) + "</string>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetString(reader, "c").value_or("").size(), 1'000'000u);
}

TEST(HostileInputTest, VeryManyReferencesAreResolved) {
  const Reader reader = ReadContent("<string key=\"c\">" + Repeat("&lt;", 3'000'000) + "</string>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetString(reader, "c").value_or("").size(), 3'000'000u);
}

TEST(HostileInputTest, VeryManyValuesUnderOneKeyAreRead) {
  const Reader reader = ReadContent(Repeat("<long key=\"a\">1</long>", 500'000) +
                                    Repeat("<dict key=\"list\"/>", 200'000));
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetLong(reader, "a"), 1);
  EXPECT_EQ(CountDicts(reader, "list"), 200'000);
}

TEST(HostileInputTest, VeryManyAttributesAreRead) {
  const Reader reader = ReadContent("<long" + Repeat(" b=\"\"", 1'000'000) + " key=\"a\">1</long>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetLong(reader, "a"), 1);
}

}  // namespace
}  // namespace ia_test
