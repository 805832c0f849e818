// A whole query for a queue of a running cupsd.
#include <cups/cups.h>
#include <cups/ppd.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <thread>

#include "info_analyze/info_analyze.h"
#include "tests/integration/call_faults.h"
#include "tests/integration/private_cupsd.h"
#include "tests/integration/sample_setting.h"
#include "tests/support/build_folders.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

const std::string kSample = IA_SOURCE_FOLDER "/examples/office-mfp";
const std::string kSamplePpd = kSample + "/ppd/office-mfp.ppd";
const std::string kSampleDocuments = kSample + "/device-info";

std::string ReadFile(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

using Environment = std::map<std::string, std::string>;

// Runs the action as a client with this environment. libcups reads the environment once in each
// thread, so the client is a thread.
template <class Action>
void AsClient(const Environment& environment, Action action) {
  for (const char* name : {"CUPS_SERVER", "CUPS_SERVERROOT"}) unsetenv(name);
  for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
  std::thread(action).join();
}

// The options of the queue's printer, queried three times; the last query reloads the documents.
std::string QueryThreeTimes(const std::string& queue) {
  BidiContext* bidi = Bidi_Create(ia_test::kReferenceDriver);
  AnalyzeContext* analyser = Analyze_Create(bidi, queue.c_str(), kSampleDocuments.c_str());
  EXPECT_NE(bidi, nullptr);
  EXPECT_NE(analyser, nullptr);
  std::string answers;
  for (const uint8_t reload : {0, 0, 1}) {
    const CallersList list;
    answers += std::to_string(Analyze_Info_FromPrinter(analyser, list.head(), reload)) + "\n";
    answers += list.Added();
  }
  Analyze_Destroy(analyser);
  Bidi_Destroy(bidi);
  return answers;
}

class CupsdQuery : public testing::Test {
 protected:
  void SetUp() override {
    if (!PrivateCupsd::IsInstalled()) {
      GTEST_SKIP() << "needs the packages cups-daemon and cups-client";
    }
    setenv("TMPDIR", temporary_.path().c_str(), 1);
    setenv("HOME", temporary_.path().c_str(), 1);
    ASSERT_TRUE(daemon_.Start());
    ASSERT_TRUE(daemon_.AddQueue("office", kSamplePpd));
    CallFaults::Instance().ForgetCalls();
  }

  [[nodiscard]] Environment OfDaemon() const { return {{"CUPS_SERVER", daemon_.socket()}}; }
  [[nodiscard]] Environment OfServerRoot() const {
    return {{"CUPS_SERVER", "localhost"}, {"CUPS_SERVERROOT", daemon_.server_root()}};
  }
  [[nodiscard]] std::string PpdOfDaemon() const {
    return daemon_.server_root() + "/ppd/office.ppd";
  }
  [[nodiscard]] std::ptrdiff_t TemporaryFiles() const { return CountEntries(temporary_.path()); }

  TempFolder temporary_;
  PrivateCupsd daemon_;
};

TEST_F(CupsdQuery, GivesTheSameOptionsThroughTheDaemonAsFromItsFolder) {
  std::string through_daemon;
  AsClient(OfDaemon(), [&] { through_daemon = QueryThreeTimes("office"); });
  std::string from_folder;
  AsClient(OfServerRoot(), [&] { from_folder = QueryThreeTimes("office"); });
  EXPECT_EQ(through_daemon, from_folder);
  const std::string once = "0\n" + ReadFile(kSample + "/expected-options.txt");
  EXPECT_EQ(through_daemon, once + once + once);
  EXPECT_EQ(TemporaryFiles(), 0);
}

TEST_F(CupsdQuery, ReadsTheSameTableAsFromTheOriginalPpd) {
  TempFolder root;
  root.Write("ppd/copy.ppd", ReadFile(kSamplePpd));
  std::string of_daemon;
  AsClient(OfDaemon(), [&] {
    OptTable* table = info_common_optlist_create("office");
    of_daemon = Shown(table);
    info_common_optlist_destroy(table);
  });
  std::string of_file;
  AsClient({{"CUPS_SERVER", "localhost"}, {"CUPS_SERVERROOT", root.path()}}, [&] {
    OptTable* table = info_common_optlist_create("copy");
    of_file = Shown(table);
    info_common_optlist_destroy(table);
  });
  EXPECT_EQ(of_daemon, of_file);
  EXPECT_NE(of_daemon.find("QVAnlz_DriverName="), std::string::npos);
}

TEST_F(CupsdQuery, AQueueThatTheDaemonDoesNotHaveGivesNullAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  AsClient(OfDaemon(), [] {
    BidiContext* bidi = Bidi_Create(ia_test::kReferenceDriver);
    errno = EMFILE;
    EXPECT_EQ(Analyze_Create(bidi, "no-such-queue", kSampleDocuments.c_str()), nullptr);
    errno = EMFILE;
    EXPECT_EQ(info_common_optlist_create("no-such-queue"), nullptr);
    Bidi_Destroy(bidi);
  });
  EXPECT_EQ(CallFaults::Instance().Seen(Callee::kCupsGetPpd), 2);
  EXPECT_EQ(CallFaults::Instance().Seen(Callee::kSleep), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(TemporaryFiles(), 0);
}

TEST_F(CupsdQuery, ADaemonThatIsGoneGivesNullAtOnce) {
  daemon_.Stop();
  AsClient(OfDaemon(), [] {
    errno = EMFILE;
    EXPECT_EQ(info_common_optlist_create("office"), nullptr);
  });
  EXPECT_EQ(CallFaults::Instance().Seen(Callee::kSleep), 0);
  EXPECT_EQ(TemporaryFiles(), 0);
}

// While it is open, the PPD is in the temporary folder.
TEST_F(CupsdQuery, TheTemporaryPpdIsInTheTemporaryFolderUntilItIsClosed) {
  for (const Environment& environment : {OfDaemon(), OfServerRoot()}) {
    AsClient(environment, [&] {
      char* path = nullptr;
      cups_file_t* file = wrapCupsFileOpen2("office", "r", &path);
      ASSERT_NE(file, nullptr);
      EXPECT_EQ(std::filesystem::path(path).parent_path(), temporary_.path());
      EXPECT_EQ(TemporaryFiles(), 1);
      EXPECT_EQ(wrapCupsFileClose2(file, path), 0);
      EXPECT_EQ(TemporaryFiles(), 0);
      CallFaults::Instance().Release(path);
    });
  }
}

// The temporary PPD may be a link to the daemon's file.
TEST_F(CupsdQuery, TheDaemonsOwnPpdStaysAsItIs) {
  struct stat before;
  ASSERT_EQ(stat(PpdOfDaemon().c_str(), &before), 0);
  const std::string content = ReadFile(PpdOfDaemon());
  AsClient(OfServerRoot(), [&] {
    char* path = nullptr;
    cups_file_t* file = wrapCupsFileOpen2("office", "r", &path);
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    wrapCupsFileClose2(file, path);
    CallFaults::Instance().Release(path);
    QueryThreeTimes("office");
  });
  struct stat after;
  ASSERT_EQ(stat(PpdOfDaemon().c_str(), &after), 0);
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(ReadFile(PpdOfDaemon()), content);
}

}  // namespace
}  // namespace ia_test
