// The real folders of the system in which the library searches for queues. Each test runs in a
// child process that has other folders mounted there.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "info_analyze/info_analyze.h"
#include "tests/info_common/named_row.h"
#include "tests/integration/private_cupsd.h"
#include "tests/integration/queue_setting.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

const std::string kSamplePpd = IA_SOURCE_FOLDER "/examples/office-mfp/ppd/office-mfp.ppd";

class FixedPaths : public testing::Test {
 protected:
  FixedPaths() {
    for (const char* folder : {"etc", "cache"}) std::filesystem::create_directory(root_ / folder);
  }

  [[nodiscard]] Mounts mounts() const {
    return {{root_ / "etc", "/etc"}, {root_ / "cache", "/var/cache"}};
  }

  template <class Action>
  void ExpectAnswer(const std::string& right, Action action) const {
    const auto answer = AnswerWithFolders(mounts(), action);
    if (!answer) GTEST_SKIP() << kNoNamespaces;
    EXPECT_EQ(*answer, right);
  }

  TempFolder root_;
};

std::string NamesOf(QueueList* list) {
  std::string names;
  for (int32_t i = 0; list != nullptr && i < list->count; ++i) {
    names += std::string(CupsQueueList_GetQueueName(list, i)) + " ";
  }
  CupsQueueList_Terminate(list);
  return names;
}

std::string TextOf(char* text) {
  std::string copy = text != nullptr ? text : "(none)";
  std::free(text);
  return copy;
}

TEST_F(FixedPaths, SpoolerIsLookedForInEtcCupsPpd) {
  root_.Write("etc/cups/ppd/office.ppd", "");
  root_.Write("etc/cups/ppd/notes.txt", "");
  root_.Write("etc/cups/other.ppd", "");
  ExpectAnswer("1 office ", [] {
    int32_t count = -1;
    QueueList* const list = CupsQueueList_Initialize(&count);
    return std::to_string(count) + " " + NamesOf(list);
  });
}

TEST_F(FixedPaths, MissingSpoolerHasNoQueues) {
  ExpectAnswer("0", [] {
    int32_t count = -1;
    QueueList* const list = CupsQueueList_Initialize(&count);
    return (list != nullptr ? "" : "no list ") + std::to_string(count) + NamesOf(list);
  });
}

TEST_F(FixedPaths, QueuesOfARealSpoolerAreListed) {
  if (!PrivateCupsd::IsInstalled()) GTEST_SKIP() << "needs cups-daemon and cups-client";
  PrivateCupsd daemon;
  ASSERT_TRUE(daemon.Start());
  const auto before = std::chrono::system_clock::now() - std::chrono::seconds(2);
  ASSERT_TRUE(daemon.AddQueue("office", kSamplePpd));
  ASSERT_TRUE(daemon.AddQueue("lobby-2", kSamplePpd));
  std::filesystem::create_symlink(daemon.server_root(), root_ / "etc/cups");
  ExpectAnswer("lobby-2 office, recent", [before] {
    QueueList* const list = CupsQueueList_Initialize(nullptr);
    bool is_recent = true;
    for (int32_t i = 0; i < list->count; ++i) {
      const auto time =
          std::chrono::system_clock::from_time_t(CupsQueueList_GetQueueModifyTimeStamp(list, i));
      is_recent = is_recent && time > before && time < before + std::chrono::minutes(5);
      list->records[i].modification_time = 0;
    }
    return TakeShown(list) + (is_recent ? ", recent" : ", not recent");
  });
}

// Every family with a cache folder; SIGMA has no key.
struct FamilyRow : NamedRow {
  const char* key;
  const char* folder;
  const char* suffix;
};

class FixedPathsOfFamily : public FixedPaths, public testing::WithParamInterface<FamilyRow> {
 protected:
  FixedPathsOfFamily() {
    root_.Write("cache" + (GetParam().suffix + std::string("/MQPD/mqpd.conf")),
                "<Printer office>\nDevicePath " + uri() + "\n");
  }

  static std::string uri() { return std::string("net:192.0.2.10/PDLType=") + GetParam().key; }
};

TEST_P(FixedPathsOfFamily, LeadFromTheFolderToItsConfiguration) {
  ExpectAnswer("1 192.0.2.10 net:; 1 office ", [] {
    FolderConf* const conf = FolderPathForConf_Initialize(GetParam().folder);
    char* address = nullptr;
    char* protocol = nullptr;
    const int32_t found =
        FolderPathForConf_GetAddressAndProtocol(conf, "office", &address, &protocol);
    std::string answer =
        std::to_string(found) + " " + TextOf(address) + " " + TextOf(protocol) + "; ";
    int32_t count = -1;
    QueueList* const list = MqpdQueueList_Initialize(conf, &count);
    answer += std::to_string(count) + " " + NamesOf(list);
    FolderPathForConf_Terminate(conf);
    return answer;
  });
}

TEST_P(FixedPathsOfFamily, LeadFromTheUriToItsConfiguration) {
  const bool has_key = *GetParam().key != '\0';
  ExpectAnswer(has_key ? "0 office" : "-1 (none)", [] {
    char* name = nullptr;
    const int32_t status = MqpdUriToQueueName(uri().c_str(), &name);
    return std::to_string(status) + " " + TextOf(name);
  });
}

#define PRINTERS "/Library/Printers/Vorel/"

INSTANTIATE_TEST_SUITE_P(
    Table, FixedPathsOfFamily,
    Rows<FamilyRow>({{"Zeta6", "zeta6", PRINTERS "CUPSZETA6", "/Vorel/CUPSZETA6"},
                     {"Tau2", "tau2", PRINTERS "CUPSTAU2", "/Vorel/CUPSTAU2"},
                     {"Kappa2", "kappa2", PRINTERS "CUPSKAPPA2", "/Vorel/CUPSKAPPA2"},
                     {"Ps", "ps", PRINTERS "CUPSPS", "/Vorel/CUPSPS"},
                     {"Ps2", "ps2", PRINTERS "CUPSPS2", "/Vorel/CUPSPS2"},
                     {"Psmf", "psmf", PRINTERS "CUPSPSMF", "/Vorel/CUPSPSMF"},
                     {"Fax", "fax", PRINTERS "CUPSFAX", "/Vorel/CUPSFAX"},
                     {"Delta", "delta", PRINTERS "CUPSDELTA", "/Vorel/CUPSDELTA"},
                     {"Sigma", "", PRINTERS "CUPSSIGMA", "/Vorel/CUPSSIGMA"},
                     {"Omega", "omega", PRINTERS "CUPSOMEGA", "/Vorel/CUPSOMEGA"},
                     {"MfPrinter", "mf_printer", PRINTERS "CUPS_MF_Printer",
                      "/Vorel/CUPS_MF_Printer"},
                     {"Printer", "printer", PRINTERS "CUPS_Printer", "/Vorel/CUPS_Printer"}}),
    RowName<FamilyRow>);

TEST_F(FixedPaths, AMissingConfigurationIsAFailure) {
  ExpectAnswer("null -1 (none)", [] {
    FolderConf* const conf = FolderPathForConf_Initialize(kDriverFolder);
    char* name = nullptr;
    const int32_t status = MqpdUriToQueueName(kDeviceUri, &name);
    return std::string(conf == nullptr ? "null" : "not null") + " " + std::to_string(status) + " " +
           TextOf(name);
  });
}

TEST_F(FixedPaths, AFifoInPlaceOfTheConfigurationDoesNotBlock) {
  const std::string conf = root_ / "cache/Vorel/CUPSKAPPA2/MQPD/mqpd.conf";
  std::filesystem::create_directories(std::filesystem::path(conf).parent_path());
  ASSERT_EQ(mkfifo(conf.c_str(), 0600), 0);
  ExpectAnswer("null -1 (none)", [] {
    alarm(20);
    FolderConf* const conf = FolderPathForConf_Initialize(kDriverFolder);
    char* name = nullptr;
    const int32_t status = MqpdUriToQueueName(kDeviceUri, &name);
    return std::string(conf == nullptr ? "null" : "not null") + " " + std::to_string(status) + " " +
           TextOf(name);
  });
}

TEST_F(FixedPaths, AConfigurationThatCannotBeReadHasTheStatusOfTheStream) {
  std::filesystem::create_directories(root_ / "cache/Vorel/CUPSKAPPA2/MQPD/mqpd.conf");
  ExpectAnswer("empty 1 (none)", [] {
    FolderConf* const conf = FolderPathForConf_Initialize(kDriverFolder);
    char* name = nullptr;
    const int32_t status = MqpdUriToQueueName(kDeviceUri, &name);
    return std::string(conf != nullptr && conf->length == 0 ? "empty" : "not empty") + " " +
           std::to_string(status) + " " + TextOf(name);
  });
}

}  // namespace
}  // namespace ia_test
