#include "queue/queue_list.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "tests/info_common/named_row.h"
#include "tests/queue/conf_answers.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::Pair;
using testing::StrEq;
using testing::UnorderedElementsAre;

struct ListDeleter {
  void operator()(QueueList* list) const { CupsQueueList_Terminate(list); }
};
using List = std::unique_ptr<QueueList, ListDeleter>;

std::multimap<std::string, int32_t> Queues(const QueueList* list) {
  std::multimap<std::string, int32_t> queues;
  for (int32_t i = 0; i < list->count; ++i) {
    queues.emplace(CupsQueueList_GetQueueName(list, i),
                   CupsQueueList_GetQueueModifyTimeStamp(list, i));
  }
  return queues;
}

class CupsQueues : public testing::Test {
 protected:
  void Add(const std::string& name, std::int64_t seconds) const {
    folder_.Write(name, "*PPD-Adobe: \"4.3\"\n");
    const timespec times[2] = {{seconds, 999'999'999}, {seconds, 999'999'999}};
    ASSERT_EQ(utimensat(AT_FDCWD, (folder_ / name).c_str(), times, 0), 0);
  }

  [[nodiscard]] List Read() const { return List(ia::NewCupsQueueList(folder_.path().c_str())); }

  TempFolder folder_;
};

TEST_F(CupsQueues, AreThePpdsOfTheFolderWithTheirTimes) {
  Add("office.ppd", 1'700'000'000);
  Add("a.ppd", 7);
  Add("notes.txt", 8);
  EXPECT_THAT(Queues(Read().get()),
              UnorderedElementsAre(Pair("office", 1'700'000'000), Pair("a", 7)));
}

TEST_F(CupsQueues, AreNoneInAnEmptyFolder) {
  const List list = Read();
  ASSERT_THAT(list, NotNull());
  EXPECT_EQ(list->count, 0);
  EXPECT_THAT(list->records, IsNull());
}

TEST_F(CupsQueues, AreNoneInAMissingFolder) {
  const List list(ia::NewCupsQueueList((folder_ / "nowhere").c_str()));
  ASSERT_THAT(list, NotNull());
  EXPECT_EQ(list->count, 0);
  EXPECT_THAT(list->records, IsNull());
}

TEST_F(CupsQueues, AreNoneInAFile) {
  folder_.Write("office.ppd", "");
  const List list(ia::NewCupsQueueList((folder_ / "office.ppd").c_str()));
  ASSERT_THAT(list, NotNull());
  EXPECT_EQ(list->count, 0);
}

struct FileRow : NamedRow {
  std::string file;
  const char* queue;  // null: none
};

class CupsQueueOfFile : public CupsQueues, public testing::WithParamInterface<FileRow> {};

TEST_P(CupsQueueOfFile, IsNamedAfterIt) {
  Add(GetParam().file, 5);
  const List list = Read();
  ASSERT_THAT(list, NotNull());
  if (GetParam().queue == nullptr) {
    EXPECT_EQ(list->count, 0);
  } else {
    EXPECT_THAT(Queues(list.get()), ElementsAre(Pair(GetParam().queue, 5)));
  }
}

INSTANTIATE_TEST_SUITE_P(Files, CupsQueueOfFile,
                         Rows<FileRow>({{"Ppd", "office.ppd", "office"},
                                        {"OneLetter", "a.ppd", "a"},
                                        {"Hidden", ".a.ppd", ".a"},
                                        {"PpdTwice", "a.ppd.ppd", "a.ppd"},
                                        {"OnlyDots", "..ppd", "."},
                                        {"Blank", " .ppd", " "},
                                        {"BytesAbove127", "B\xC3\xBCro.ppd", "B\xC3\xBCro"},
                                        {"SuffixAlone", ".ppd", nullptr},
                                        {"SuffixWithoutDot", "appd", nullptr},
                                        {"UpperCase", "OFFICE.PPD", nullptr},
                                        {"MixedCase", "office.Ppd", nullptr},
                                        {"OlderPpd", "office.ppd.O", nullptr},
                                        {"SuffixShort", "office.pp", nullptr},
                                        {"SuffixLong", "office.ppdx", nullptr},
                                        {"NoDot", "officeppd", nullptr},
                                        {"Text", "notes.txt", nullptr}}),
                         RowName<FileRow>);

TEST_F(CupsQueues, MayHaveTheLongestPossibleName) {
  const std::string name(251, 'n');
  Add(name + ".ppd", 5);
  EXPECT_THAT(Queues(Read().get()), ElementsAre(Pair(name, 5)));
}

TEST_F(CupsQueues, MayBeFoldersAndLinks) {
  Add("a.ppd", 5);
  std::filesystem::create_directory(folder_ / "folder.ppd");
  std::filesystem::create_symlink(folder_ / "a.ppd", folder_ / "link.ppd");
  EXPECT_THAT(Queues(Read().get()),
              UnorderedElementsAre(Pair("a", 5), Pair("link", 5), Pair("folder", testing::Gt(5))));
}

// stat() fails for a dangling link.
TEST_F(CupsQueues, HaveNoTimeWhenItCannotBeRead) {
  std::filesystem::create_symlink(folder_ / "nowhere", folder_ / "link.ppd");
  EXPECT_THAT(Queues(Read().get()), ElementsAre(Pair("link", 0)));
}

TEST_F(CupsQueues, HaveTheNearestTimeThatFits) {
  Add("late.ppd", std::int64_t{INT32_MAX} + 1);
  Add("last.ppd", INT32_MAX);
  Add("old.ppd", -5);
  struct stat status;
  ASSERT_EQ(stat((folder_ / "late.ppd").c_str(), &status), 0);
  if (status.st_mtime <= INT32_MAX) GTEST_SKIP() << "no such times in " << folder_.path();
  EXPECT_THAT(Queues(Read().get()), UnorderedElementsAre(Pair("late", INT32_MAX),
                                                         Pair("last", INT32_MAX), Pair("old", -5)));
}

TEST_F(CupsQueues, AreFoundInAnyNumber) {
  for (int i = 0; i < 1000; ++i) Add("q" + std::to_string(i) + ".ppd", i);
  const auto queues = Queues(Read().get());
  ASSERT_EQ(queues.size(), 1000u);
  for (const auto& [name, time] : queues) EXPECT_EQ(name, "q" + std::to_string(time));
}

// A path of 2048 bytes or more is too long.
TEST_F(CupsQueues, AreRefusedWhereTheirPathsAreTooLong) {
  std::string folder = folder_.path();
  for (int i = 0; i < 9; ++i) folder += "/" + std::string(200, 'd');
  folder += "/" + std::string(2047 - folder.size() - 2 - 5, 'e');
  folder_.Write(folder.substr(folder_.path().size() + 1) + "/a.ppd", "");
  const List accepted(ia::NewCupsQueueList(folder.c_str()));
  ASSERT_THAT(accepted, NotNull());
  EXPECT_THAT(CupsQueueList_GetQueueName(accepted.get(), 0), StrEq("a"));
  EXPECT_NE(CupsQueueList_GetQueueModifyTimeStamp(accepted.get(), 0), 0);
  folder_.Write(folder.substr(folder_.path().size() + 1) + "/ab.ppd", "");
  EXPECT_THAT(List(ia::NewCupsQueueList(folder.c_str())), IsNull());
}

// Reads the queues of this machine's spooler, if any.
TEST(CupsQueueList, GivesItsCount) {
  int32_t count = -1;
  const List list(CupsQueueList_Initialize(&count));
  ASSERT_THAT(list, NotNull());
  EXPECT_EQ(count, list->count);
  EXPECT_THAT(List(CupsQueueList_Initialize(nullptr)), NotNull());
}

TEST(MqpdQueueList, NamesTheQueuesAndNoTimes) {
  ConfOf conf("<Printer b>\nDevicePath net:h\n<Printer a>\n");
  int32_t count = -1;
  QueueList* const list = MqpdQueueList_Initialize(conf.get(), &count);
  ASSERT_THAT(list, NotNull());
  EXPECT_EQ(count, 2);
  EXPECT_EQ(list->count, 2);
  EXPECT_THAT(CupsQueueList_GetQueueName(list, 0), StrEq("b"));
  EXPECT_THAT(CupsQueueList_GetQueueName(list, 1), StrEq("a"));
  EXPECT_EQ(CupsQueueList_GetQueueModifyTimeStamp(list, 0), 0);
  EXPECT_EQ(CupsQueueList_GetQueueModifyTimeStamp(list, 1), 0);
  MqpdQueueList_Terminate(list);
}

TEST(MqpdQueueList, IsEmptyWithoutQueues) {
  ConfOf conf("# <Printer a>\n");
  int32_t count = -1;
  const List list(MqpdQueueList_Initialize(conf.get(), &count));
  ASSERT_THAT(list, NotNull());
  EXPECT_EQ(count, 0);
  EXPECT_EQ(list->count, 0);
  EXPECT_THAT(list->records, IsNull());
}

TEST(MqpdQueueList, RefusesNullArgumentsAndAHandleWithoutText) {
  int32_t count = 5;
  EXPECT_THAT(MqpdQueueList_Initialize(nullptr, &count), IsNull());
  EXPECT_EQ(count, 0);
  ConfOf conf("<Printer a>\n");
  EXPECT_THAT(MqpdQueueList_Initialize(conf.get(), nullptr), IsNull());
  EXPECT_EQ(conf.text(), "<Printer a>\n");
  FolderConf without_text = {nullptr, 100};
  count = 5;
  EXPECT_THAT(MqpdQueueList_Initialize(&without_text, &count), IsNull());
  EXPECT_EQ(count, 0);
}

TEST(QueueListTerminate, IgnoresNull) {
  CupsQueueList_Terminate(nullptr);
  MqpdQueueList_Terminate(nullptr);
}

TEST(QueueListTerminate, TakesAListFromTheOtherSource) {
  ConfOf conf("<Printer a>\n");
  int32_t count = 0;
  CupsQueueList_Terminate(MqpdQueueList_Initialize(conf.get(), &count));
  MqpdQueueList_Terminate(CupsQueueList_Initialize(nullptr));
}

class QueueIndex : public testing::TestWithParam<int32_t> {};

TEST_P(QueueIndex, HasNoNameAndNoTime) {
  char name[] = "name";
  QueueRecord records[] = {{name, 5}, {name, 6}, {name, 7}};
  const QueueList list = {2, records};  // with room for one more
  EXPECT_THAT(CupsQueueList_GetQueueName(&list, GetParam()), IsNull());
  EXPECT_EQ(CupsQueueList_GetQueueModifyTimeStamp(&list, GetParam()), 0);
  EXPECT_THAT(CupsQueueList_GetQueueName(nullptr, GetParam()), IsNull());
  EXPECT_EQ(CupsQueueList_GetQueueModifyTimeStamp(nullptr, GetParam()), 0);
}

INSTANTIATE_TEST_SUITE_P(OutOfRange, QueueIndex, testing::Values(INT32_MIN, -1, 2, 3, INT32_MAX));

TEST(QueueIndexOfNullList, HasNoNameAndNoTime) {
  EXPECT_THAT(CupsQueueList_GetQueueName(nullptr, 0), IsNull());
  EXPECT_EQ(CupsQueueList_GetQueueModifyTimeStamp(nullptr, 0), 0);
}

TEST(QueueIndexInRange, HasNameAndTime) {
  char name[] = "name";
  QueueRecord records[] = {{name, 5}, {name, -6}};
  const QueueList list = {2, records};
  EXPECT_EQ(CupsQueueList_GetQueueName(&list, 1), name);
  EXPECT_EQ(CupsQueueList_GetQueueModifyTimeStamp(&list, 1), -6);
}

}  // namespace
}  // namespace ia_test
