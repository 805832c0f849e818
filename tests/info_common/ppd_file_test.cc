#include <cups/file.h>
#include <errno.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "info_analyze/option_table.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"
#include "tests/info_common/ppd_test.h"
#include "tests/support/print_queues.h"

namespace ia_test {
namespace {

using testing::Eq;
using testing::IsNull;
using testing::NotNull;
using testing::StartsWith;

char* const kUntouched = reinterpret_cast<char*>(0x10);

std::string TemporaryFolder() { return PrintQueues::Get().temporary_folder(); }

std::string FirstLine(cups_file_t* file) {
  char line[64];
  return cupsFileGets(file, line, sizeof line) == nullptr ? "" : line;
}

// A file for wrapCupsFileClose2() to delete.
std::string NewFile() {
  const std::string path = TemporaryFolder() + "/file";
  std::ofstream(path) << "line\n";
  return path;
}

class PpdFile : public PpdTest {};

TEST_F(PpdFile, OpensACopyInTheTemporaryFolderAndDeletesItWhenClosed) {
  char* path = nullptr;
  cups_file_t* file = wrapCupsFileOpen2(QueueOf("*QVA: 1\n").c_str(), "r", &path);
  const OwnedText owned_path(path);
  ASSERT_THAT(file, NotNull());
  EXPECT_THAT(path, StartsWith(TemporaryFolder() + "/"));
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(FirstLine(file), "*QVA: 1");

  EXPECT_EQ(wrapCupsFileClose2(file, path), 0);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(PpdFile, TwoFilesMayBeOpenAtOnce) {
  PrintQueues::Get().Add("first", "*QVA: 1\n");
  PrintQueues::Get().Add("second", "*QVB: 2\n");
  char* first_path = nullptr;
  char* second_path = nullptr;
  cups_file_t* first = wrapCupsFileOpen2("first", "r", &first_path);
  cups_file_t* second = wrapCupsFileOpen2("second", "r", &second_path);
  const OwnedText owned_first(first_path);
  const OwnedText owned_second(second_path);
  ASSERT_THAT(first, NotNull());
  ASSERT_THAT(second, NotNull());
  EXPECT_STRNE(first_path, second_path);
  EXPECT_EQ(FirstLine(first), "*QVA: 1");
  EXPECT_EQ(FirstLine(second), "*QVB: 2");
  EXPECT_EQ(wrapCupsFileClose2(first, first_path), 0);
  EXPECT_TRUE(std::filesystem::exists(second_path));
  EXPECT_EQ(wrapCupsFileClose2(second, second_path), 0);
}

TEST_F(PpdFile, ClosingLeavesThePpdOfTheQueueAlone) {
  char* path = nullptr;
  cups_file_t* file = wrapCupsFileOpen2(QueueOf("*QVA: 1\n").c_str(), "r", &path);
  ASSERT_THAT(file, NotNull());
  wrapCupsFileClose2(file, path);
  free(path);
  file = wrapCupsFileOpen2("queue", "r", &path);
  const OwnedText owned_path(path);
  ASSERT_THAT(file, NotNull());
  EXPECT_EQ(FirstLine(file), "*QVA: 1");
  wrapCupsFileClose2(file, path);
}

TEST_F(PpdFile, UnknownQueueGivesNull) {
  char* path = kUntouched;
  EXPECT_THAT(wrapCupsFileOpen2("no-such-queue", "r", &path), IsNull());
  EXPECT_EQ(path, kUntouched);
}

TEST_F(PpdFile, NullArgumentOfOpenGivesNull) {
  const std::string queue = QueueOf("*QVA: 1\n");
  char* path = kUntouched;
  EXPECT_THAT(wrapCupsFileOpen2(nullptr, "r", &path), IsNull());
  EXPECT_THAT(wrapCupsFileOpen2(queue.c_str(), nullptr, &path), IsNull());
  EXPECT_THAT(wrapCupsFileOpen2(queue.c_str(), "r", nullptr), IsNull());
  EXPECT_EQ(path, kUntouched);
}

TEST_F(PpdFile, LackOfDescriptorsGivesNullAndEmfile) {
  const std::string queue = QueueOf("*QVA: 1\n");
  char* path = kUntouched;
  NoFreeDescriptor shortage;
  errno = 0;
  const cups_file_t* file = wrapCupsFileOpen2(queue.c_str(), "r", &path);
  const int error = errno;
  shortage.Lift();
  EXPECT_THAT(file, IsNull());
  EXPECT_EQ(error, EMFILE);
  EXPECT_EQ(path, kUntouched);
  EXPECT_EQ(CountEntries(TemporaryFolder()), 0);
}

struct ModeRow : NamedRow {
  const char* mode;
};

class PpdFileMode : public PpdTest, public testing::WithParamInterface<ModeRow> {};

TEST_P(PpdFileMode, GivesNullAndDeletesTheTemporaryFile) {
  const std::string queue = QueueOf("*QVA: 1\n");
  char* path = kUntouched;
  EXPECT_THAT(wrapCupsFileOpen2(queue.c_str(), GetParam().mode, &path), IsNull());
  EXPECT_EQ(path, kUntouched);
  EXPECT_EQ(CountEntries(TemporaryFolder()), 0);
  EXPECT_THAT(ReadPpd("*QVA: 1\n"), testing::ElementsAre(testing::Pair("QVA", "1")));
}

// The temporary file is a link into the server's folder, which libcups refuses to write through.
INSTANTIATE_TEST_SUITE_P(
    Refused, PpdFileMode,
    Rows<ModeRow>({{"Empty", ""}, {"Unknown", "x"}, {"Write", "w"}, {"Append", "a"}}),
    RowName<ModeRow>);

TEST_F(PpdFile, NullFileClosesNothingAndKeepsTheFile) {
  const std::string path = NewFile();
  EXPECT_EQ(wrapCupsFileClose2(nullptr, path.c_str()), -1);
  EXPECT_TRUE(std::filesystem::remove(path));
}

TEST_F(PpdFile, NullPathClosesNothing) {
  const std::string path = NewFile();
  cups_file_t* file = cupsFileOpen(path.c_str(), "r");
  ASSERT_THAT(file, NotNull());
  EXPECT_EQ(wrapCupsFileClose2(file, nullptr), -1);
  EXPECT_EQ(FirstLine(file), "line");
  EXPECT_EQ(wrapCupsFileClose2(file, path.c_str()), 0);
}

TEST_F(PpdFile, ClosesAlsoWhenTheFileIsGone) {
  const std::string path = NewFile();
  cups_file_t* file = cupsFileOpen(path.c_str(), "r");
  ASSERT_THAT(file, NotNull());
  std::filesystem::remove(path);
  const auto before = CountOpenDescriptors();
  EXPECT_EQ(wrapCupsFileClose2(file, path.c_str()), 0);
  EXPECT_EQ(CountOpenDescriptors(), before - 1);
}

TEST_F(PpdFile, AnswersWhatClosingAnswers) {
  const std::string path = NewFile();
  cups_file_t* file = cupsFileOpen("/dev/full", "w");
  ASSERT_THAT(file, NotNull());
  cupsFilePuts(file, "does not fit");
  EXPECT_EQ(wrapCupsFileClose2(file, path.c_str()), -1);
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace ia_test
