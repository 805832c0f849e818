// When folders and files of print queues cannot be read, a function returns the documented failure
// or the right answer, and leaves no descriptor open.
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "info_analyze/info_analyze.h"
#include "tests/integration/call_faults.h"
#include "tests/integration/failing_call.h"
#include "tests/integration/fault_rounds.h"
#include "tests/integration/queue_setting.h"
#include "tests/integration/sample_setting.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

// Lists the spooler's queues. A failing call gives one of the lists `with_failure`.
Scenario ListsCupsQueues(const std::set<std::string>& with_failure) {
  const auto run = [with_failure](Round& round) {
    const std::string shown =
        TakeShown(round.Try([] { return CupsQueueList_Initialize(nullptr); }));
    round.Expect(shown == "a@7 office@7", with_failure.contains(shown), shown);
  };
  return {"ListsCupsQueues", run};
}

std::string Shown(const FolderConf* conf) {
  return conf != nullptr ? std::string(conf->text, conf->length) : "(none)";
}

Scenario ReadsConf(const std::string& with_failure) {
  const auto run = [with_failure](Round& round) {
    FolderConf* const conf = round.Try([] { return FolderPathForConf_Initialize(kDriverFolder); });
    // What was read before the failure.
    const std::string shown = Shown(conf);
    const bool is_begin = with_failure == "begin" && std::string(kConf).starts_with(shown);
    round.Expect(shown == kConf, shown == with_failure || is_begin, shown);
    FolderPathForConf_Terminate(conf);
  };
  return {"ReadsConf", run};
}

Scenario ReadsStream(int32_t failure) {
  const auto run = [failure](Round& round) {
    std::string text = kConf;
    std::FILE* const stream = fmemopen(text.data(), text.size(), "r");
    char* data = nullptr;
    uint32_t length = 0;
    const int32_t status = round.Try([&] { return zGetAllDataFromStream(stream, &data, &length); });
    const std::string read(data, length);
    round.Expect(status == 0 && read == kConf,
                 failure != 0 && status == failure && std::string(kConf).starts_with(read),
                 std::to_string(status) + " " + read);
    CallFaults::Instance().Release(data);
    std::fclose(stream);
  };
  return {"ReadsStream", run};
}

Scenario FindsQueueOfUri(int32_t failure) {
  const auto run = [failure](Round& round) {
    char* name = nullptr;
    const int32_t status = round.Try([&] { return MqpdUriToQueueName(kDeviceUri, &name); });
    const std::string shown = Take(name);
    round.Expect(status == 0 && shown == "lobby",
                 failure != 0 && status == failure && shown == "(none)",
                 std::to_string(status) + " " + shown);
  };
  return {"FindsQueueOfUri", run};
}

}  // namespace

std::vector<FailingCall> QueueCalls() {
  return {
      {"Scandir", ListsCupsQueues({""}), Failing(Callee::kScandir, EACCES)},
      {"ScandirWithoutMemory", ListsCupsQueues({""}), Failing(Callee::kScandir, ENOMEM)},
      {"Stat", ListsCupsQueues({"a office@7", "a@7 office"}), Failing(Callee::kStat, EACCES)},
      {"OpenOfConf", ReadsConf("(none)"), Failing(Callee::kOpen, EMFILE)},
      {"FstatOfConf", ReadsConf("(none)"), Failing(Callee::kFstat, EIO)},
      {"ReadOfConf", ReadsConf("begin"), Failing(Callee::kRead, EIO)},
      {"CloseOfConf", ReadsConf(kConf), Failing(Callee::kClose, EIO)},
      {"OpenInLookup", FindsQueueOfUri(-1), Failing(Callee::kOpen, EACCES)},
      {"FstatInLookup", FindsQueueOfUri(-1), Failing(Callee::kFstat, EIO)},
      {"ReadInLookup", FindsQueueOfUri(1), Failing(Callee::kRead, EIO)},
      {"CloseInLookup", FindsQueueOfUri(0), Failing(Callee::kClose, EIO)},
      // When it fails, only the buffer of the file's size is missing.
      {"FstatOfStream", ReadsStream(0), Failing(Callee::kFstat, EIO)},
      // The stream has no error of its own here.
      {"FreadOfStream", ReadsStream(-1), Failing(Callee::kFread, EIO)},
      // While cleaning up after a failure.
      {"CloseAfterRealloc",
       ReadsConf("(none)"),
       {.callees = {Callee::kRealloc, Callee::kClose}, .times = kFromThenOn}},
  };
}

namespace {

class FailingQueueCalls : public testing::TestWithParam<FailingCall> {
 protected:
  static void SetUpTestSuite() {
    SampleSetting::Get();
    QueueSetting::Get();
  }
};

TEST_P(FailingQueueCalls, GiveTheDocumentedFailureOrTheRightAnswer) {
  const auto& [name, scenario, fault] = GetParam();
  EXPECT_GT(RunWithEachCallFailing(scenario, fault), 0) << "nothing was made to fail";
}

INSTANTIATE_TEST_SUITE_P(Each, FailingQueueCalls, testing::ValuesIn(QueueCalls()),
                         [](const auto& info) { return std::string(info.param.name); });

// Opening a FIFO would wait for a writer for ever, and reading a device might never end.
TEST(ConfThatIsNoFile, IsNotOpened) {
  QueueSetting::Get();
  const TempFolder root;
  root.Write(kConfPath + 1, "");
  const std::string conf = root.path() + kConfPath;
  CallFaults::Instance().SetRoot(root.path());
  for (const mode_t type : {S_IFIFO, S_IFSOCK}) {
    SCOPED_TRACE(type);
    unlink(conf.c_str());
    ASSERT_EQ(mknod(conf.c_str(), type | 0600, 0), 0);
    const std::ptrdiff_t descriptors = CountOpenDescriptors();
    alarm(20);
    EXPECT_EQ(FolderPathForConf_Initialize(kDriverFolder), nullptr);
    char* name = nullptr;
    EXPECT_EQ(MqpdUriToQueueName(kDeviceUri, &name), -1);
    alarm(0);
    EXPECT_EQ(name, nullptr);
    EXPECT_EQ(CountOpenDescriptors(), descriptors);
  }
  QueueSetting::Get().Use();
}

TEST(ConfThatIsNoFile, LinkToADeviceIsRefused) {
  QueueSetting::Get();
  const TempFolder root;
  root.Write(kConfPath + 1, "");
  const std::string conf = root.path() + kConfPath;
  unlink(conf.c_str());
  ASSERT_EQ(symlink("/dev/zero", conf.c_str()), 0);
  CallFaults::Instance().SetRoot(root.path());
  EXPECT_EQ(FolderPathForConf_Initialize(kDriverFolder), nullptr);
  QueueSetting::Get().Use();
}

}  // namespace
}  // namespace ia_test
