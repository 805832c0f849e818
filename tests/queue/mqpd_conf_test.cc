// Reading configuration files, and queries that find one by the folder of a driver family.
#include "queue/mqpd_conf.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "info_analyze/queue_list.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"
#include "tests/queue/conf_answers.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::IsNull;
using testing::NotNull;

char g_other[] = "other";

struct StreamCloser {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

Stream Open(const std::string& path, const char* mode = "r") {
  return Stream(std::fopen(path.c_str(), mode));
}

struct ConfDeleter {
  void operator()(FolderConf* conf) const { FolderPathForConf_Terminate(conf); }
};
using Conf = std::unique_ptr<FolderConf, ConfDeleter>;

// Bytes of all values, so that none is taken for an end.
std::string Bytes(std::size_t length) {
  std::string bytes(length, '\0');
  for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(i * 7 % 256);
  return bytes;
}

// What zGetAllDataFromStream() returns.
struct Data {
  int32_t status;
  OwnedText owner;
  uint32_t length;

  std::string bytes() const { return {owner.get(), length}; }
};

Data ReadAll(std::FILE* stream) {
  char* data = g_other;
  uint32_t length = 12345;
  const int32_t status = zGetAllDataFromStream(stream, &data, &length);
  return {status, OwnedText(data), length};
}

class AllDataFromStream : public testing::TestWithParam<std::size_t> {
 protected:
  TempFolder folder_;
};

TEST_P(AllDataFromStream, AreReadToTheEnd) {
  const std::string bytes = Bytes(GetParam());
  folder_.Write("file", bytes);
  const Stream stream = Open(folder_ / "file");
  const Data data = ReadAll(stream.get());
  EXPECT_EQ(data.status, 0);
  ASSERT_THAT(data.owner, NotNull());
  EXPECT_EQ(data.bytes(), bytes);
}

TEST_P(AllDataFromStream, AreReadFromTheStreamPosition) {
  const std::string bytes = Bytes(GetParam());
  folder_.Write("file", bytes);
  const Stream stream = Open(folder_ / "file");
  std::fgetc(stream.get());
  const Data data = ReadAll(stream.get());
  EXPECT_EQ(data.status, 0);
  EXPECT_EQ(data.bytes(), bytes.empty() ? "" : bytes.substr(1));
}

TEST_P(AllDataFromStream, AreReadFromAPipe) {
  const std::string command = "yes | head -c " + std::to_string(GetParam());
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  const Data data = ReadAll(pipe.get());
  EXPECT_EQ(data.status, 0);
  ASSERT_EQ(data.length, GetParam());
  for (std::size_t i = 0; i < GetParam(); ++i) ASSERT_EQ(data.owner.get()[i], "y\n"[i % 2]);
}

INSTANTIATE_TEST_SUITE_P(Bytes, AllDataFromStream,
                         testing::Values(0, 1, 63, 64, 65, 127, 128, 129, 4095, 4096, 4097,
                                         100'000));

class UnreadableStream : public testing::Test {
 protected:
  TempFolder folder_;
};

TEST_F(UnreadableStream, GivesTheErrorAndNoBytesForAFolder) {
  const Stream stream = Open(folder_.path());
  const Data data = ReadAll(stream.get());
  EXPECT_EQ(data.status, std::ferror(stream.get()));
  EXPECT_NE(data.status, 0);
  EXPECT_THAT(data.owner, NotNull());
  EXPECT_EQ(data.length, 0u);
}

TEST_F(UnreadableStream, GivesTheErrorForOneThatIsOpenForWriting) {
  const Stream stream = Open(folder_ / "file", "w");
  const Data data = ReadAll(stream.get());
  EXPECT_NE(data.status, 0);
  EXPECT_EQ(data.length, 0u);
}

// A cookie gives some bytes and then fails.
TEST_F(UnreadableStream, GivesTheErrorAndTheBytesBeforeIt) {
  for (const std::size_t length : {1, 63, 64, 65, 100, 5000}) {
    SCOPED_TRACE(length);
    std::size_t left = length;
    const auto read = [](void* cookie, char* buffer, std::size_t size) -> ssize_t {
      auto& rest = *static_cast<std::size_t*>(cookie);
      if (rest == 0) return -1;
      const std::size_t count = std::min(rest, size);
      std::fill_n(buffer, count, 'x');
      rest -= count;
      return static_cast<ssize_t>(count);
    };
    const Stream stream(
        fopencookie(&left, "r", {.read = read, .write = {}, .seek = {}, .close = {}}));
    const Data data = ReadAll(stream.get());
    EXPECT_NE(data.status, 0);
    EXPECT_EQ(data.bytes(), std::string(length, 'x'));
  }
}

TEST_F(UnreadableStream, StaysOpen) {
  folder_.Write("file", "text");
  const Stream stream = Open(folder_ / "file");
  ReadAll(stream.get());
  EXPECT_EQ(std::fseek(stream.get(), 0, SEEK_SET), 0);
  EXPECT_EQ(ReadAll(stream.get()).bytes(), "text");
}

TEST_F(UnreadableStream, NullArgumentsAreRefused) {
  folder_.Write("file", "text");
  const Stream stream = Open(folder_ / "file");
  char* data = g_other;
  uint32_t length = 5;
  EXPECT_EQ(zGetAllDataFromStream(nullptr, &data, &length), -1);
  EXPECT_THAT(data, IsNull());
  EXPECT_EQ(length, 0u);
  length = 5;
  EXPECT_EQ(zGetAllDataFromStream(stream.get(), nullptr, &length), -1);
  EXPECT_EQ(length, 0u);
  data = g_other;
  EXPECT_EQ(zGetAllDataFromStream(stream.get(), &data, nullptr), -1);
  EXPECT_THAT(data, IsNull());
}

// /dev/zero has no end.
TEST(LargestBuffer, EndsTheReading) {
  const Stream endless = Open("/dev/zero");
  const ia::StreamData data = ia::ReadToEnd(endless.get(), 1 << 20);
  EXPECT_THAT(data.bytes, IsNull());
  EXPECT_EQ(data.length, 0u);
}

TEST(LargestBuffer, TakesOneByteLessThanItsSize) {
  for (const std::size_t length : {127, 128}) {
    const TempFolder folder;
    folder.Write("file", Bytes(length));
    const Stream stream = Open(folder / "file");
    const ia::StreamData data = ia::ReadToEnd(stream.get(), 128);
    EXPECT_EQ(data.bytes != nullptr, length < 128) << length;
  }
}

// Reading does not begin with a buffer of a size that is above it.
TEST(LargestBuffer, IsAllThatALargerFileGets) {
  const TempFolder folder;
  folder.Write("file", "");
  std::filesystem::resize_file(folder / "file", std::uintmax_t{1} << 40);
  const Stream stream = Open(folder / "file");
  EXPECT_THAT(ia::ReadToEnd(stream.get(), 128).bytes, IsNull());
  EXPECT_EQ(std::ftell(stream.get()), 128);
}

TEST(LargestBuffer, IsTwoGibibytes) { EXPECT_EQ(ia::kLargestConfBuffer, 2147483648u); }

constexpr char kText[] =
    "<Printer office>\nDevicePath net:192.0.2.10/PDLType=kappa2\n</Printer>\n"
    "<Printer lobby>\nDevicePath usb://Vorel/X1/PDLType=kappa2\n</Printer>\n";

class ConfOfFolder : public testing::Test {
 protected:
  static constexpr char kFile[] = "MQPD/mqpd.conf";

  [[nodiscard]] Conf Read() const { return Conf(ia::NewConf(folder_.path())); }

  // The name, or the status when there is none.
  [[nodiscard]] std::string Find(const std::string& uri) const {
    char* name = nullptr;
    const int32_t status = ia::FindQueueOfUri(folder_.path(), uri, &name);
    const auto text = TakeText(name);
    return text && status == 0 ? *text : std::to_string(status);
  }

  TempFolder folder_;
};

TEST_F(ConfOfFolder, HoldsTheWholeText) {
  folder_.Write(kFile, kText);
  const Conf conf = Read();
  ASSERT_THAT(conf, NotNull());
  EXPECT_EQ(std::string(conf->text, conf->length), kText);
}

TEST_F(ConfOfFolder, HoldsAnEmptyText) {
  folder_.Write(kFile, "");
  const Conf conf = Read();
  ASSERT_THAT(conf, NotNull());
  EXPECT_THAT(conf->text, NotNull());
  EXPECT_EQ(conf->length, 0u);
  int32_t count = -1;
  EXPECT_THAT(TakeNames(MqpdQueueList_Initialize(conf.get(), &count), count),
              testing::Optional(testing::IsEmpty()));
  EXPECT_EQ(count, 0);
}

TEST_F(ConfOfFolder, AnswersLookups) {
  folder_.Write(kFile, kText);
  const Conf conf = Read();
  char* address = nullptr;
  char* protocol = nullptr;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(conf.get(), "lobby", &address, &protocol), 1);
  EXPECT_EQ(TakeText(address), "Vorel/X1");
  EXPECT_EQ(TakeText(protocol), "usb://");
}

TEST_F(ConfOfFolder, IsNullWithoutAFile) {
  EXPECT_THAT(Read(), IsNull());
  EXPECT_EQ(Find("net:192.0.2.10/PDLType=kappa2"), "-1");
}

// It can be opened, and reading it fails.
TEST_F(ConfOfFolder, HoldsNothingOfAFolder) {
  std::filesystem::create_directories(folder_ / kFile);
  const Conf conf = Read();
  ASSERT_THAT(conf, NotNull());
  EXPECT_EQ(conf->length, 0u);
  const Stream stream = Open(folder_ / kFile);
  const int32_t error = ReadAll(stream.get()).status;
  EXPECT_EQ(Find("net:192.0.2.10/PDLType=kappa2"), std::to_string(error));
}

TEST_F(ConfOfFolder, FindsTheQueueOfAUri) {
  folder_.Write(kFile, kText);
  EXPECT_EQ(Find("net:192.0.2.10/PDLType=kappa2"), "office");
  EXPECT_EQ(Find("usb://Vorel/X1/PDLType=kappa2"), "lobby");
  EXPECT_EQ(Find("net:192.0.2.11/PDLType=kappa2"), "-1");
}

// A daemon may have no standard input; the file then gets its descriptor.
TEST_F(ConfOfFolder, IsReadThroughDescriptorZero) {
  folder_.Write(kFile, kText);
  const int standard_input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  const Conf conf = Read();
  const bool is_closed = fcntl(STDIN_FILENO, F_GETFD) == -1;
  if (standard_input >= 0) {
    dup2(standard_input, STDIN_FILENO);
    close(standard_input);
  }
  ASSERT_THAT(conf, NotNull());
  EXPECT_EQ(std::string(conf->text, conf->length), kText);
  EXPECT_TRUE(is_closed);
}

TEST_F(ConfOfFolder, LeavesNoDescriptorOpen) {
  folder_.Write(kFile, kText);
  const std::ptrdiff_t before = CountOpenDescriptors();
  EXPECT_THAT(Read(), NotNull());
  EXPECT_EQ(Find("net:192.0.2.10/PDLType=kappa2"), "office");
  EXPECT_EQ(CountOpenDescriptors(), before);
}

// Paths have room for 2047 bytes and their NUL, and such a folder can be opened.
class ConfPath : public testing::TestWithParam<std::size_t> {
 protected:
  ConfPath() {
    const std::string file = "/MQPD/mqpd.conf";
    const std::size_t length = GetParam() - file.size();
    folder_ = root_.path();
    while (length - folder_.size() > 202) folder_ += "/" + std::string(200, 'd');
    folder_ += "/" + std::string(length - folder_.size() - 1, 'e');
    root_.Write((folder_ + file).substr(root_.path().size() + 1), kText);
    EXPECT_EQ((folder_ + file).size(), GetParam());
  }

  [[nodiscard]] bool IsAccepted() const { return GetParam() < 2048; }

  TempFolder root_;
  std::string folder_;
};

TEST_P(ConfPath, OfAHandle) {
  const Conf conf(ia::NewConf(folder_));
  EXPECT_EQ(conf != nullptr, IsAccepted());
}

TEST_P(ConfPath, OfALookup) {
  char* name = nullptr;
  EXPECT_EQ(ia::FindQueueOfUri(folder_, "net:192.0.2.10/PDLType=kappa2", &name),
            IsAccepted() ? 0 : -1);
  EXPECT_EQ(TakeText(name).has_value(), IsAccepted());
}

INSTANTIATE_TEST_SUITE_P(Bytes, ConfPath, testing::Values(2046, 2047, 2048, 2049, 3000));

TEST(ConfOfDriverFolder, IsNullForAnUnknownFolder) {
  EXPECT_THAT(FolderPathForConf_Initialize("/Library/Printers/Vorel/CUPSOTHER"), IsNull());
  EXPECT_THAT(FolderPathForConf_Initialize("/usr/lib/Vorel/CUPS_SFP"), IsNull());
  EXPECT_THAT(FolderPathForConf_Initialize(""), IsNull());
}

TEST(ConfOfDriverFolder, IsNullForNull) {
  EXPECT_THAT(FolderPathForConf_Initialize(nullptr), IsNull());
}

TEST(ConfTerminate, IgnoresNull) { FolderPathForConf_Terminate(nullptr); }

TEST(ConfTerminate, TakesAHandleWithoutText) {
  FolderPathForConf_Terminate(static_cast<FolderConf*>(std::calloc(1, sizeof(FolderConf))));
}

TEST(AddressAndProtocol, NullArgumentsAreRefused) {
  ConfOf conf(kText);
  char* address = g_other;
  char* protocol = g_other;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(nullptr, "office", &address, &protocol), 0);
  EXPECT_THAT(address, IsNull());
  EXPECT_THAT(protocol, IsNull());
  address = protocol = g_other;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(conf.get(), nullptr, &address, &protocol), 0);
  EXPECT_THAT(address, IsNull());
  EXPECT_THAT(protocol, IsNull());
  protocol = g_other;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(conf.get(), "office", nullptr, &protocol), 0);
  EXPECT_THAT(protocol, IsNull());
  address = g_other;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(conf.get(), "office", &address, nullptr), 0);
  EXPECT_THAT(address, IsNull());
}

TEST(AddressAndProtocol, AHandleWithoutTextHasNoQueues) {
  const FolderConf conf = {nullptr, 100};
  char* address = g_other;
  char* protocol = g_other;
  EXPECT_EQ(FolderPathForConf_GetAddressAndProtocol(&conf, "office", &address, &protocol), 0);
  EXPECT_THAT(address, IsNull());
  EXPECT_THAT(protocol, IsNull());
}

struct UriRow : NamedRow {
  const char* uri;
};

class QueueNameOfUri : public testing::TestWithParam<UriRow> {};

TEST_P(QueueNameOfUri, IsNotFoundWithoutACacheFolder) {
  char* name = g_other;
  EXPECT_EQ(MqpdUriToQueueName(GetParam().uri, &name), -1);
  EXPECT_THAT(name, IsNull());
}

INSTANTIATE_TEST_SUITE_P(Uris, QueueNameOfUri,
                         Rows<UriRow>({{"Null", nullptr},
                                       {"Empty", ""},
                                       {"NoPdlType", "net:192.0.2.10"},
                                       {"UnknownFamily", "net:h/PDLType=ps2x"},
                                       {"Sfp", "net:h/PDLType=sfp"},
                                       {"Nsu", "net:h/PDLType=nsu/opt"},
                                       {"Drv", "net:h/PDLType=drv/opt"}}),
                         RowName<UriRow>);

TEST(QueueNameOfUriNull, IsRefused) {
  EXPECT_EQ(MqpdUriToQueueName("net:h/PDLType=ps", nullptr), -1);
}

}  // namespace
}  // namespace ia_test
