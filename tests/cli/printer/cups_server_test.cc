// What a real print server reports about its queues.
#include <cups/cups.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/process.h"
#include "tests/cli/sample_printer.h"
#include "tests/integration/private_cupsd.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr int kQueue = 3;

class CupsServer : public SamplePrinter {
 protected:
  void SetUp() override {
    if (!ia_test::PrivateCupsd::IsInstalled()) GTEST_SKIP() << "no cupsd";
    ASSERT_TRUE(cupsd_.Start());
  }
  Finished Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), IA_TEST_TOOL);
    ia_test::Command command = ToolCommand(arguments);
    command.environment.emplace_back("CUPS_SERVER", cupsd_.socket());
    return RunProgram(command);
  }
  Finished RunVerb(const std::string& verb, const std::string& queue) const {
    return Run({verb, "--queue", queue, "--driver-folder", IA_TEST_DRIVER_FOLDER, "--device-info",
                device_info()});
  }
  // The failure of each verb that needs the PPD of the queue.
  void ExpectCause(const std::string& queue, const std::string& cause,
                   const std::string& fix) const {
    const auto message =
        AllOf(HasSubstr("cannot read PPD of queue \"" + queue + "\": " + cause), HasSubstr(fix));
    ExpectFailure(RunVerb("query", queue), kQueue, message);
    ExpectFailure(
        Run({"snapshot", root_ / "saved", "--queue", queue, "--device-info", device_info()}),
        kQueue, message);
    const Finished doctor = RunVerb("doctor", queue);
    EXPECT_EQ(doctor.status, 8);
    EXPECT_THAT(doctor.out, AllOf(HasSubstr(cause), HasSubstr("fix: ")));
  }
  // As CUPS does for a printer that it has found in the network.
  void AddDriverlessQueue(const std::string& name) const {
    http_t* const http = httpConnect2(cupsd_.socket().c_str(), 0, nullptr, AF_UNSPEC,
                                      HTTP_ENCRYPTION_NEVER, 1, 5000, nullptr);
    ASSERT_NE(http, nullptr);
    ipp_t* const request = ippNewRequest(IPP_OP_CUPS_CREATE_LOCAL_PRINTER);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr,
                 "ipp://localhost/");
    ippAddString(request, IPP_TAG_PRINTER, IPP_TAG_NAME, "printer-name", nullptr, name.c_str());
    ippAddString(request, IPP_TAG_PRINTER, IPP_TAG_URI, "device-uri", nullptr,
                 "ipp://127.0.0.1:9/ipp/print");
    ippDelete(cupsDoRequest(http, request, "/"));
    EXPECT_EQ(cupsLastError(), IPP_STATUS_OK) << cupsLastErrorString();
    httpClose(http);
  }

  ia_test::PrivateCupsd cupsd_;
};

TEST_F(CupsServer, ThatDoesNotRunIsNamed) {
  cupsd_.Stop();
  ExpectCause("office", "the CUPS server at " + cupsd_.socket() + " does not answer (",
              "start cups.service or pass --cups-root");
}

TEST_F(CupsServer, OnAnotherMachineThatDoesNotAnswerIsNamed) {
  ExpectFailure(RunTool({IA_TEST_TOOL, "query", "--queue", "office", "--driver-folder",
                         IA_TEST_DRIVER_FOLDER, "--device-info", device_info()}),
                kQueue,
                HasSubstr("the CUPS server at 127.0.0.2:9 does not answer (Connection refused); "
                          "correct CUPS_SERVER"));
}

TEST_F(CupsServer, WithoutTheQueueIsNamed) {
  ExpectCause("lobby", "the CUPS server at " + cupsd_.socket() + " has no such queue",
              "list the queues with `info-analyze queues cups`");
}

TEST_F(CupsServer, RawQueueIsNamed) {
  ASSERT_TRUE(cupsd_.AddRawQueue("labels"));
  ExpectCause("labels", "it is a raw queue, which has no PPD", "lpadmin -p labels -P FILE.ppd");
}

TEST_F(CupsServer, DriverlessQueueIsNamed) {
  AddDriverlessQueue("everywhere");
  ExpectCause("everywhere", "the queue is driverless (ipp://127.0.0.1:9/ipp/print), without a PPD",
              "lpadmin -p everywhere -P FILE.ppd");
}

TEST_F(CupsServer, QueueWhosePpdWasRemovedIsNamed) {
  ASSERT_TRUE(cupsd_.AddQueue("office", ppd()));
  std::filesystem::remove(cupsd_.server_root() + "/ppd/office.ppd");
  ExpectCause("office", "the CUPS server at " + cupsd_.socket() + " has no PPD of the queue",
              "lpadmin -p office -P FILE.ppd");
}

// Also where CUPS_SERVER names a host, so that the PPD cannot be read from the server's folder.
TEST_F(CupsServer, SendsThePpdOfAQueueWithANameInUtf8) {
  const std::string name = "b\xc3\xbc\x63herei-\xe5\x8d\xb0";
  ASSERT_TRUE(cupsd_.AddQueue(name, ppd()));
  const Finished run = RunVerb("query", name);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, RunQuery().out);
  for (const char* const verb : {"doctor", "explain"}) {
    EXPECT_EQ(RunVerb(verb, name).status, 0) << verb;
  }
  EXPECT_EQ(
      Run({"snapshot", root_ / "saved", "--queue", name, "--device-info", device_info()}).status,
      0);
}

TEST_F(CupsServer, AcceptsTheLpadminLineOfAQueueWithANameInUtf8) {
  const std::string name = "b\xc3\xbc\x63herei";
  const std::string other = IA_TEST_SOURCE "/examples/department-mfp";
  ASSERT_TRUE(cupsd_.AddQueue(name, ppd()));
  ASSERT_EQ(Run({"snapshot", root_ / "bare", "--queue", "department-mfp", "--cups-root", other,
                 "--device-info", other + "/device-info"})
                .status,
            0);
  const Finished diff =
      Run({"diff", "--lpadmin", root_ / "bare", "queue:" + name, "--driver-folder",
           IA_TEST_DRIVER_FOLDER, "--device-info", device_info()});
  ASSERT_THAT(diff.out, testing::StartsWith("lpadmin -p '" + name + "' -o ")) << diff.err;
  ia_test::Command command = ToolCommand({"/bin/sh", "-c", "PATH=$PATH:/usr/sbin; " + diff.out});
  command.environment.emplace_back("CUPS_SERVER", cupsd_.socket());
  const Finished set = RunProgram(command);
  EXPECT_EQ(set.status, 0) << set.err;
}

// Queues -----------------------------------------------------------------------------------------

TEST_F(CupsServer, ListsItsQueues) {
  ASSERT_TRUE(cupsd_.AddQueue("office", ppd()));
  ASSERT_TRUE(cupsd_.AddRawQueue("labels"));
  const Finished run = Run({"queues", "cups"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(Lines(run.out), testing::UnorderedElementsAre(
                                  "labels\t-", MatchesRegex("office\t20[0-9-]+T[0-9:]+Z")));
  const Json json = Json::parse(Run({"queues", "cups", "--format", "json"}).out);
  for (const Json& queue : json["queues"]) {
    const bool is_raw = queue["name"] == "labels";
    EXPECT_EQ(queue["modified"].is_null(), is_raw);
    if (is_raw) continue;
    EXPECT_NEAR(queue["modified"].get<double>(), static_cast<double>(std::time(nullptr)), 60);
  }
  EXPECT_EQ(json["queues"].size(), 2);
}

TEST_F(CupsServer, MayHaveNoQueues) {
  const Finished run = Run({"queues", "cups"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");
}

TEST_F(CupsServer, ThatDoesNotRunListsNothing) {
  cupsd_.Stop();
  ExpectFailure(Run({"queues", "cups"}), kQueue,
                AllOf(HasSubstr("cannot list the queues: the CUPS server at " + cupsd_.socket() +
                                " does not answer ("),
                      HasSubstr("pass --cups-root")));
}

}  // namespace
