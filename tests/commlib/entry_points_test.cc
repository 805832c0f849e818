// Properties of all 36 entry points.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdio.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"
#include "tests/support/entry_points.h"

namespace ia_test {
namespace {

std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  std::array<char, 4096> buffer;
  while (const std::size_t length = fread(buffer.data(), 1, buffer.size(), pipe)) {
    output.append(buffer.data(), length);
  }
  pclose(pipe);
  return output;
}

// Symbols that the library defines for others, "T name@@NODE"; the node is a symbol of its own.
std::vector<std::string> ExportedSymbols() {
  std::istringstream lines(
      OutputOf("nm -D --defined-only --with-symbol-versions '" IA_COMMLIB_FILE "'"));
  std::vector<std::string> symbols;
  std::string address;
  std::string type;
  std::string name;
  while (lines >> address >> type >> name) {
    if (type != "A") symbols.push_back(type + " " + name);
  }
  return symbols;
}

TEST(EntryPointsTest, LibraryExportsTheEntryPointsAndNothingElse) {
  std::vector<std::string> expected;
  for (const char* name : kEntryPoints) {
    expected.push_back("T " + std::string(name) + "@@MQPD_UTIL_1");
  }
  EXPECT_THAT(ExportedSymbols(), testing::UnorderedElementsAreArray(expected));
}

TEST(EntryPointsTest, LibraryIsLoadedByItsNameInTheDriverFolder) {
  EXPECT_TRUE(std::string(IA_COMMLIB_FILE).ends_with("/driver/Bidi/libmqpd_util.so"));
  void* const library = dlopen(IA_COMMLIB_FILE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  for (const char* name : kEntryPoints) EXPECT_NE(dlsym(library, name), nullptr) << name;
  EXPECT_EQ(dlclose(library), 0);
}

TEST(EntryPointsTest, SocketsHaveNoTransport) {
  EXPECT_EQ(qvsktwrapNew(0, 0, "/driver", 9100), nullptr);
  EXPECT_EQ(qvsktwrapControl(nullptr, 0, 0, 0, 0, 0), -1);
  EXPECT_EQ(qvsktwrapQueueListNew("/driver", 0, 0, 0, 0), -1);
  EXPECT_EQ(qvsktwrapQueueListDestroy(0, 0, 0, 0), -1);
  EXPECT_EQ(qvsktwrapDestroy(nullptr), 0);
  EXPECT_EQ(qvsktwrapNew(0, 0, nullptr, -1), nullptr);
  EXPECT_EQ(qvsktwrapQueueListNew(nullptr, 0, 0, 0, 0), -1);
}

TEST(EntryPointsTest, CleanupMayBeCalledAtAnyTime) {
  const Reader reader = ReadContent("<long key=\"a\">1</long>");
  qvxmlwrapCleanup();
  qvxmlwrapCleanup();
  EXPECT_EQ(GetLong(reader, "a"), 1);
}

TEST(EntryPointsTest, NullWriterIsRefused) {
  char* text = nullptr;
  std::int32_t length = 0;
  EXPECT_EQ(qvxmlwrapSet_OpenDict(nullptr, "a", 0), -1);
  EXPECT_EQ(qvxmlwrapSet_Long(nullptr, "a", 1), -1);
  EXPECT_EQ(qvxmlwrapSet_Double(nullptr, "a", 1), -1);
  EXPECT_EQ(qvxmlwrapSet_String(nullptr, "a", "x", 0, 0), -1);
  EXPECT_EQ(qvxmlwrapSet_Binary(nullptr, "a", "x", 1), -1);
  EXPECT_EQ(qvxmlwrapSet_OpenArray(nullptr, "a"), -1);
  EXPECT_EQ(qvxmlwrapSet_LongToArray(nullptr, 1), -1);
  EXPECT_EQ(qvxmlwrapSet_DoubleToArray(nullptr, 1), -1);
  EXPECT_EQ(qvxmlwrapSet_StringToArray(nullptr, "x", 0, 0), -1);
  EXPECT_EQ(qvxmlwrapSet_BinaryToArray(nullptr, "x", 1), -1);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(nullptr), -1);
  EXPECT_EQ(qvxmlwrapSet_CloseDict(nullptr), -1);
  EXPECT_EQ(qvxmlwrapSet_Destroy(nullptr, AddressWord(&text), AddressWord(&length), 0), -1);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(length, 0);
}

TEST(EntryPointsTest, NullReaderHoldsNothing) {
  std::int32_t number = 0;
  double factor = 0;
  char* text = nullptr;
  void* data = nullptr;
  EXPECT_EQ(qvxmlwrapGet_DictCount(nullptr, "a", &number), 0);
  EXPECT_EQ(qvxmlwrapGet_OpenDict(nullptr, "a", 0), 0);
  EXPECT_EQ(qvxmlwrapGet_Long(nullptr, "a", &number, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_Double(nullptr, "a", &factor, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_String(nullptr, "a", &text, nullptr, "UTF-8", 0), 0);
  EXPECT_EQ(qvxmlwrapGet_Binary(nullptr, "a", &data, &number), 0);
  EXPECT_EQ(qvxmlwrapGet_ArrayCount(nullptr, "a", &number), 0);
  EXPECT_EQ(qvxmlwrapGet_OpenArray(nullptr, "a"), 0);
  EXPECT_EQ(qvxmlwrapGet_LongFromArray(nullptr, 0, &number, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_DoubleFromArray(nullptr, 0, &factor, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_StringFromArray(nullptr, 0, &text, nullptr, "UTF-8", 0), 0);
  EXPECT_EQ(qvxmlwrapGet_BinaryFromArray(nullptr, 0, &data, &number), 0);
  EXPECT_EQ(qvxmlwrapGet_CloseArray(nullptr), -1);
  EXPECT_EQ(qvxmlwrapGet_CloseDict(nullptr), -1);
  EXPECT_EQ(qvxmlwrapGet_Destroy(nullptr), -1);
}

class NullArgumentsTest : public testing::Test {
 protected:
  const Reader reader_ = ReadContent(
      "<long key=\"a\">1</long><double key=\"a\">1</double><string key=\"a\">x</string>"
      "<binary key=\"a\">AAAA</binary><dict key=\"a\"/><array key=\"a\"><long>1</long>"
      "<double>1</double><string>x</string><binary>AAAA</binary></array>");
};

TEST_F(NullArgumentsTest, NullKeyIsMissing) {
  EXPECT_EQ(GetLong(reader_, nullptr), std::nullopt);
  EXPECT_EQ(GetDouble(reader_, nullptr), std::nullopt);
  EXPECT_EQ(GetString(reader_, nullptr), std::nullopt);
  EXPECT_EQ(GetBinary(reader_, nullptr), std::nullopt);
  EXPECT_EQ(CountDicts(reader_, nullptr), std::nullopt);
  EXPECT_EQ(CountElements(reader_, nullptr), std::nullopt);
}

TEST_F(NullArgumentsTest, NullDestinationReceivesNothing) {
  QvXmlReader* const reader = reader_.get();
  EXPECT_EQ(qvxmlwrapGet_DictCount(reader, "a", nullptr), 0);
  EXPECT_EQ(qvxmlwrapGet_ArrayCount(reader, "a", nullptr), 0);
  EXPECT_EQ(qvxmlwrapGet_Long(reader, "a", nullptr, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_Double(reader, "a", nullptr, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_String(reader, "a", nullptr, nullptr, "UTF-8", 0), 0);
  ASSERT_TRUE(OpenArray(reader_, "a"));
  EXPECT_EQ(qvxmlwrapGet_LongFromArray(reader, 0, nullptr, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_DoubleFromArray(reader, 1, nullptr, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_StringFromArray(reader, 2, nullptr, nullptr, "UTF-8", 0), 0);
}

TEST_F(NullArgumentsTest, BytesNeedBothDestinations) {
  QvXmlReader* const reader = reader_.get();
  void* data = nullptr;
  std::int32_t length = -1;
  EXPECT_EQ(qvxmlwrapGet_Binary(reader, "a", nullptr, &length), 0);
  EXPECT_EQ(qvxmlwrapGet_Binary(reader, "a", &data, nullptr), 0);
  EXPECT_EQ(qvxmlwrapGet_Binary(reader, "a", nullptr, nullptr), 0);
  ASSERT_TRUE(OpenArray(reader_, "a"));
  EXPECT_EQ(qvxmlwrapGet_BinaryFromArray(reader, 3, nullptr, &length), 0);
  EXPECT_EQ(qvxmlwrapGet_BinaryFromArray(reader, 3, &data, nullptr), 0);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(length, -1);
}

}  // namespace
}  // namespace ia_test
