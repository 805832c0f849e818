// Folders and files of print queues that cannot be read: the told failure or the right answer, and
// nothing left open.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <set>
#include <string>

#include "info_analyze/info_analyze.h"
#include "tests/integration/call_faults.h"
#include "tests/integration/fault_rounds.h"
#include "tests/integration/queue_setting.h"
#include "tests/integration/sample_setting.h"

namespace ia_test {
namespace {

struct FailingCall {
  const char* name;
  Scenario scenario;
  Fault fault;
};

void PrintTo(const FailingCall& call, std::ostream* out) { *out << call.name; }

// Lists the spooler's queues. A failing call cannot be hidden, and then there are these.
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

Fault Failing(Callee callee, int error) { return {.callees = {callee}, .error = error}; }

class FailingQueueCalls : public testing::TestWithParam<FailingCall> {
 protected:
  static void SetUpTestSuite() {
    SampleSetting::Get();
    QueueSetting::Get();
  }
};

TEST_P(FailingQueueCalls, GiveTheToldFailureOrTheRightAnswer) {
  const auto& [name, scenario, fault] = GetParam();
  EXPECT_GT(RunWithEachCallFailing(scenario, fault), 0) << "nothing was made to fail";
}

INSTANTIATE_TEST_SUITE_P(
    Each, FailingQueueCalls,
    testing::Values(
        FailingCall{"Scandir", ListsCupsQueues({""}), Failing(Callee::kScandir, EACCES)},
        FailingCall{"ScandirWithoutMemory", ListsCupsQueues({""}),
                    Failing(Callee::kScandir, ENOMEM)},
        FailingCall{"Stat", ListsCupsQueues({"a office@7", "a@7 office"}),
                    Failing(Callee::kStat, EACCES)},
        FailingCall{"Fopen", ReadsConf("(none)"), Failing(Callee::kFopen, EMFILE)},
        // Only a buffer of the file's size is missed.
        FailingCall{"Fstat", ReadsConf(kConf), Failing(Callee::kFstat, EIO)},
        FailingCall{"Fread", ReadsConf("begin"), Failing(Callee::kFread, EIO)},
        FailingCall{"Fclose", ReadsConf(kConf), Failing(Callee::kFclose, EIO)},
        FailingCall{"FopenInLookup", FindsQueueOfUri(-1), Failing(Callee::kFopen, EACCES)},
        // The stream has no error of its own here.
        FailingCall{"FreadInLookup", FindsQueueOfUri(-1), Failing(Callee::kFread, EIO)},
        FailingCall{"FcloseInLookup", FindsQueueOfUri(0), Failing(Callee::kFclose, EIO)}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace ia_test
