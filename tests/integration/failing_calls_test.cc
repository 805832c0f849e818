// When files, libraries or the print server fail, a function returns the documented failure or the
// right answer, and leaves no descriptor or file.
#include <cups/file.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "info_analyze/info_analyze.h"
#include "tests/integration/allocation_scenarios.h"
#include "tests/integration/call_faults.h"
#include "tests/integration/failing_call.h"
#include "tests/integration/fault_rounds.h"
#include "tests/integration/sample_setting.h"
#include "tests/support/build_folders.h"
#include "tests/support/print_queues.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

constexpr int kNoErrno = 0;

CallFaults& Faults() { return CallFaults::Instance(); }

// Loads a document. If the failing call makes it fail, it returns the given status.
Scenario LoadsDocument(int32_t failure) {
  const auto run = [failure](Round& round) {
    const SampleAnalyser analyser;
    AnalyzeContext* context = analyser.context();
    const int32_t status =
        round.Try([&] { return analyze_common_create_xmldata(context, IA_DOCUMENT_TRAY_LIST); });
    const auto& [xml, count] = context->documents[IA_DOCUMENT_TRAY_LIST];
    round.Expect(status == 0 && xml != nullptr && count == 3,
                 failure != 0 && status == failure && xml == nullptr && count == 0,
                 std::to_string(status));
  };
  return {"LoadsDocument", run};
}

// If the last document fails, the query returns its status and adds nothing. If an earlier one
// fails, its options are missing or have their defaults. A handler of plain values whose own
// document failed, but which runs because a different one is loaded, ends the query with -1.
Scenario AsksPrinter(int32_t failure) {
  const auto ask = [](Round& round, CallersList& list) {
    const SampleAnalyser analyser;
    return round.Try([&] { return Analyze_Info_FromPrinter(analyser.context(), list.head(), 0); });
  };
  const auto run = [failure, ask](Round& round) {
    Round undisturbed;
    CallersList right;
    ask(undisturbed, right);
    CallersList list;
    const int32_t status = ask(round, list);
    round.Expect(status == 0 && list.Added() == right.Added(),
                 (status == failure && list.Added().empty()) ||
                     ((status == 0 || status == -1) && AreOptions(list.Added())),
                 std::to_string(status) + "\n" + list.Added());
  };
  return {"AsksPrinter", run};
}

Scenario BindsLibrary() {
  const auto run = [](Round& round) {
    BidiContext* context = round.Try([] { return Bidi_Create(ia_test::kReferenceDriver); });
    round.Expect(context != nullptr, context == nullptr, "a binding");
    Bidi_Destroy(context);
  };
  return {"BindsLibrary", run};
}

Scenario UnbindsLibrary() {
  const auto run = [](Round& round) {
    BidiContext* context = Bidi_Create(ia_test::kReferenceDriver);
    round.Try([&] { return Bidi_Destroy(context), 0; });
  };
  return {"UnbindsLibrary", run};
}

Scenario ReadsPpdOrNothing() {
  const auto run = [](Round& round) {
    OptTable* table = round.Try([] { return info_common_optlist_create(kQueue); });
    round.Expect(Shown(table) == kPpdTable, table == nullptr, Shown(table));
    info_common_optlist_destroy(table);
  };
  return {"ReadsPpdOrNothing", run};
}

// A failure after the last line does not matter.
Scenario ReadsPpdAnyway() {
  const auto run = [](Round& round) {
    OptTable* table = round.Try([] { return info_common_optlist_create(kQueue); });
    round.Expect(Shown(table) == kPpdTable, false, Shown(table));
    info_common_optlist_destroy(table);
  };
  return {"ReadsPpdAnyway", run};
}

Scenario ClosesPpd() {
  const auto run = [](Round& round) {
    char* path = nullptr;
    cups_file_t* const file = wrapCupsFileOpen2(kQueue, "r", &path);
    const int32_t status = round.Try([&] { return wrapCupsFileClose2(file, path); });
    round.Expect(status == 0, status == -1, std::to_string(status));
    CallFaults::Instance().Release(path);
  };
  return {"ClosesPpd", run};
}

// An empty document counts as absent.
Scenario LoadsEmptyDocument() {
  const auto run = [](Round& round) {
    static const TempFolder folder;
    folder.Write("Accessories.xml", "");
    AnalyzeContext* context =
        Analyze_Create(SampleSetting::Get().bidi(), kQueue, folder.path().c_str());
    const int32_t status =
        round.Try([&] { return analyze_common_create_xmldata(context, IA_DOCUMENT_ACCESSORIES); });
    const bool is_absent = context->documents[IA_DOCUMENT_ACCESSORIES].xml == nullptr;
    round.Expect(status == 0 && is_absent, false, std::to_string(status));
    Analyze_Destroy(context);
  };
  return {"LoadsEmptyDocument", run};
}

// The tables of the PPD when it ends after each of its lines.
std::set<std::string> TablesOfBegins() {
  std::set<std::string> tables;
  const std::string_view ppd(kPpd);
  for (std::size_t end = 0; end < ppd.size(); end = ppd.find('\n', end) + 1) {
    PrintQueues::Get().Add("cut", ppd.substr(0, end));
    OptTable* table = info_common_optlist_create("cut");
    tables.insert(Shown(table));
    info_common_optlist_destroy(table);
  }
  return tables;
}

// libcups reports a read error as the end of the file.
Scenario ReadsPpdUpToSomeLine() {
  const auto run = [](Round& round) {
    static const std::set<std::string> begins = TablesOfBegins();
    OptTable* table = round.Try([] { return info_common_optlist_create(kQueue); });
    round.Expect(Shown(table) == kPpdTable, begins.contains(Shown(table)), Shown(table));
    info_common_optlist_destroy(table);
  };
  return {"ReadsPpdUpToSomeLine", run};
}

Scenario LeavingFiles(Scenario scenario) {
  scenario.leaves_files = true;
  return scenario;
}

Fault EndingEarly() {
  return {.callees = {Callee::kRead}, .error = kNoErrno, .manner = Fault::Manner::kReadsEnd};
}

// The first call fails, and so does the call that cleans up after it.
Fault FailingWithCleanUp(Callee first, Callee clean_up, int error) {
  return {.callees = {first, clean_up}, .times = kFromThenOn, .error = error};
}

// A document that gets descriptor 0, as where there is no standard input, is refused and closed.
Scenario RefusesDescriptorZero() {
  const auto run = [](Round& round) {
    const SampleAnalyser analyser;
    const int standard_input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    const int32_t status =
        round.Try([&] { return analyze_common_create_xmldata(analyser.context(), 0); });
    const bool is_closed = fcntl(STDIN_FILENO, F_GETFD) == -1;
    dup2(standard_input, STDIN_FILENO);
    close(standard_input);
    round.Expect(status == -1 && is_closed, false, std::to_string(status));
  };
  return {"RefusesDescriptorZero", run};
}

// The first text is made in one go, the second when its buffer has grown.
Scenario Formats(std::size_t length) {
  const auto run = [length](Round& round) {
    const std::string text(length, 'x');
    std::string buffer(length + 1, '~');
    const std::string untouched = buffer;
    const int32_t result =
        round.Try([&] { return util_sprintf(buffer.data(), "%s", text.c_str()); });
    round.Expect(result == static_cast<int32_t>(length) && buffer.c_str() == text,
                 result == -1 && buffer == untouched, std::to_string(result));
  };
  return {"Formats", run};
}

}  // namespace

std::vector<FailingCall> DocumentAndPpdCalls() {
  return {
      {"OpenWithoutDescriptors", LoadsDocument(-1), Failing(Callee::kOpen, EMFILE)},
      {"OpenOfBadDisk", LoadsDocument(-1), Failing(Callee::kOpen, EIO)},
      {"InterruptedOpen", LoadsDocument(-1), Failing(Callee::kOpen, EINTR)},
      {"Fstat", LoadsDocument(-1), Failing(Callee::kFstat, EIO)},
      {"Lseek", LoadsDocument(-1), Failing(Callee::kLseek, EIO)},
      {"ReadOfBadDisk", LoadsDocument(EIO), Failing(Callee::kRead, EIO)},
      {"InterruptedRead", LoadsDocument(EINTR), Failing(Callee::kRead, EINTR)},
      {"ReadWithoutErrno", LoadsDocument(-1), Failing(Callee::kRead, kNoErrno)},
      {"ShrinkingFile", LoadsDocument(-1), EndingEarly()},
      {"CloseOfBadDisk", LoadsDocument(0), Failing(Callee::kClose, EIO)},
      {"InterruptedClose", LoadsDocument(0), Failing(Callee::kClose, EINTR)},
      {"OpenInQuery", AsksPrinter(-1), Failing(Callee::kOpen, EMFILE)},
      {"ReadInQuery", AsksPrinter(EIO), Failing(Callee::kRead, EIO)},
      {"ShrinkingFileInQuery", AsksPrinter(-1), EndingEarly()},
      {"Dlopen", BindsLibrary(), Failing(Callee::kDlopen, kNoErrno)},
      {"Dlsym", BindsLibrary(), Failing(Callee::kDlsym, kNoErrno)},
      {"Dlclose", UnbindsLibrary(), Failing(Callee::kDlclose, kNoErrno)},
      {"CupsGetPpd", ReadsPpdOrNothing(), Failing(Callee::kCupsGetPpd, EIO)},
      {"CupsGetPpdWithoutErrno", ReadsPpdOrNothing(), Failing(Callee::kCupsGetPpd, kNoErrno)},
      {"CupsFileOpen", ReadsPpdOrNothing(), Failing(Callee::kCupsFileOpen, EIO)},
      {"CupsFileOpenWithoutErrno", ReadsPpdOrNothing(), Failing(Callee::kCupsFileOpen, kNoErrno)},
      {"CupsFileClose", ReadsPpdAnyway(), Failing(Callee::kCupsFileClose, EIO)},
      {"CupsFileCloseByItself", ClosesPpd(), Failing(Callee::kCupsFileClose, EIO)},
      {"UnlinkByItself", LeavingFiles(ClosesPpd()), Failing(Callee::kUnlink, EACCES)},
      {"Unlink", LeavingFiles(ReadsPpdAnyway()), Failing(Callee::kUnlink, EACCES)},
      // While cleaning up after a failure.
      {"CloseAfterFstat", LoadsDocument(-1),
       FailingWithCleanUp(Callee::kFstat, Callee::kClose, EIO)},
      {"CloseAfterLseek", LoadsDocument(-1),
       FailingWithCleanUp(Callee::kLseek, Callee::kClose, EIO)},
      {"CloseAfterRead", LoadsDocument(EIO),
       FailingWithCleanUp(Callee::kRead, Callee::kClose, EIO)},
      {"CloseAfterEnd",
       LoadsDocument(-1),
       {.callees = {Callee::kRead, Callee::kClose},
        .times = kFromThenOn,
        .error = kNoErrno,
        .manner = Fault::Manner::kReadsEnd}},
      {"CloseAfterMalloc", LoadsDocument(-1),
       FailingWithCleanUp(Callee::kMalloc, Callee::kClose, ENOMEM)},
      {"CloseOfEmptyDocument", LoadsEmptyDocument(), Failing(Callee::kClose, EIO)},
      {"CloseOfDescriptorZero", RefusesDescriptorZero(), Failing(Callee::kClose, EIO)},
      {"CupsFileCloseAfterMalloc", ReadsPpdOrNothing(),
       FailingWithCleanUp(Callee::kMalloc, Callee::kCupsFileClose, ENOMEM)},
      {"UnlinkAfterMalloc", LeavingFiles(ReadsPpdOrNothing()),
       FailingWithCleanUp(Callee::kMalloc, Callee::kUnlink, ENOMEM)},
      {"UnlinkAfterCupsFileOpen", LeavingFiles(ReadsPpdOrNothing()),
       FailingWithCleanUp(Callee::kCupsFileOpen, Callee::kUnlink, EIO)},
      {"CupsFileGets", ReadsPpdUpToSomeLine(), Failing(Callee::kCupsFileGets, EIO)},
      {"InterruptedSleep",
       ReadsPpdAnyway(),
       {.callees = {Callee::kCupsFileOpen, Callee::kSleep}, .times = 2, .error = EMFILE}},
      {"Vsnprintf", Formats(100), Failing(Callee::kVsnprintf, EOVERFLOW)},
      {"VsnprintfOfLongText", Formats(600), Failing(Callee::kVsnprintf, EOVERFLOW)},
  };
}

namespace {

class FailingCalls : public testing::TestWithParam<FailingCall> {
 protected:
  static void SetUpTestSuite() { SampleSetting::Get(); }
  static void TearDownTestSuite() {
    for (const auto& file :
         std::filesystem::directory_iterator(PrintQueues::Get().temporary_folder())) {
      std::filesystem::remove(file);
    }
  }
};

TEST_P(FailingCalls, GiveTheDocumentedFailureOrTheRightAnswer) {
  const auto& [name, scenario, fault] = GetParam();
  EXPECT_GT(RunWithEachCallFailing(scenario, fault), 0) << "nothing was made to fail";
}

INSTANTIATE_TEST_SUITE_P(Each, FailingCalls, testing::ValuesIn(DocumentAndPpdCalls()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(FailingCalls, AllThirtySixNamesAreLookedUp) {
  Faults().ForgetCalls();
  Bidi_Destroy(Bidi_Create(ia_test::kReferenceDriver));
  EXPECT_EQ(Faults().Seen(Callee::kDlsym), 36);
}

TEST_F(FailingCalls, ClosingAPpdPassesOnTheResultOfCupsFileClose) {
  char* path = nullptr;
  cups_file_t* file = wrapCupsFileOpen2(kQueue, "r", &path);
  Faults().Arm(Failing(Callee::kCupsFileClose, EIO), 1);
  EXPECT_EQ(wrapCupsFileClose2(file, path), -1);
  EXPECT_EQ(Faults().Disarm(), 1);
  EXPECT_NE(access(path, F_OK), 0);
  Faults().Release(path);
}

// libcups reports a read error as the end of the file.
TEST_F(FailingCalls, APpdEndsWhereItsReadingFails) {
  const std::string_view ppd(kPpd);
  int line = 1;
  for (std::size_t end = 0; end <= ppd.size(); end = ppd.find('\n', end) + 1, ++line) {
    SCOPED_TRACE(line);
    PrintQueues::Get().Add("cut", ppd.substr(0, end));
    OptTable* right = info_common_optlist_create("cut");
    Faults().Arm(Failing(Callee::kCupsFileGets, EIO), line);
    OptTable* answer = info_common_optlist_create(kQueue);
    EXPECT_EQ(Faults().Disarm(), 1);
    EXPECT_EQ(Shown(answer), Shown(right));
    EXPECT_EQ(answer == nullptr, right == nullptr);
    info_common_optlist_destroy(right);
    info_common_optlist_destroy(answer);
    if (end == ppd.size()) break;
  }
  EXPECT_GT(line, 20);
}

// Waiting for a free descriptor. The patched library counts its sleeps instead of sleeping.
class PpdRetry : public testing::TestWithParam<Callee> {
 protected:
  static void SetUpTestSuite() { SampleSetting::Get(); }
  void SetUp() override { Faults().ForgetCalls(); }
  void TearDown() override {
    Faults().OnSleep(nullptr);
    EXPECT_EQ(CountEntries(PrintQueues::Get().temporary_folder()), 0);
  }

  static std::string ReadPpd(const char* queue = kQueue) {
    OptTable* table = info_common_optlist_create(queue);
    std::string shown = table != nullptr ? Shown(table) : "(none)";
    info_common_optlist_destroy(table);
    return shown;
  }

  static void ExpectSleeps(int sleeps) {
    EXPECT_EQ(Faults().Seen(Callee::kSleep), sleeps);
    EXPECT_EQ(Faults().SecondsSlept(), static_cast<unsigned>(sleeps));
  }
};

TEST_P(PpdRetry, SixtyOneAttemptsAMinuteApartFromTheFirstToTheLast) {
  Faults().Arm({.callees = {GetParam()}, .times = kFromThenOn, .error = EMFILE}, 1);
  EXPECT_EQ(ReadPpd(), "(none)");
  EXPECT_EQ(Faults().Disarm(), 61);
  ExpectSleeps(60);
}

TEST_P(PpdRetry, ADescriptorThatComesFreeIsUsed) {
  for (const int failures : {1, 2, 59, 60}) {
    SCOPED_TRACE(failures);
    Faults().ForgetCalls();
    Faults().Arm({.callees = {GetParam()}, .times = failures, .error = EMFILE}, 1);
    EXPECT_EQ(ReadPpd(), kPpdTable);
    EXPECT_EQ(Faults().Disarm(), failures);
    ExpectSleeps(failures);
  }
}

TEST_P(PpdRetry, AnyOtherErrorEndsTheAttemptsAtOnce) {
  for (const int error : {ENFILE, EAGAIN, ENOENT, EIO, ENOMEM}) {
    SCOPED_TRACE(error);
    Faults().Arm({.callees = {GetParam()}, .times = kFromThenOn, .error = error}, 1);
    EXPECT_EQ(ReadPpd(), "(none)");
    EXPECT_EQ(Faults().Disarm(), 1);
    ExpectSleeps(0);
  }
}

TEST_P(PpdRetry, ADifferentErrorAfterTheFirstWaitEndsTheAttempts) {
  for (const int error : {EIO, kNoErrno}) {
    SCOPED_TRACE(error);
    Faults().ForgetCalls();
    Faults().OnSleep([error] { Faults().Arm(Failing(GetParam(), error), 1); });
    Faults().Arm(Failing(GetParam(), EMFILE), 1);
    EXPECT_EQ(ReadPpd(), "(none)");
    EXPECT_EQ(Faults().Disarm(), 1);
    ExpectSleeps(1);
  }
}

TEST_P(PpdRetry, AnErrnoFromBeforeTheCallIsNotTheReason) {
  Faults().Arm({.callees = {GetParam()}, .times = kFromThenOn, .error = kNoErrno}, 1);
  errno = EMFILE;
  EXPECT_EQ(ReadPpd(), "(none)");
  EXPECT_EQ(Faults().Disarm(), 1);
  ExpectSleeps(0);
}

INSTANTIATE_TEST_SUITE_P(Each, PpdRetry,
                         testing::Values(Callee::kCupsGetPpd, Callee::kCupsFileOpen),
                         [](const auto& info) {
                           return info.param == Callee::kCupsGetPpd ? "CupsGetPpd" : "CupsFileOpen";
                         });

TEST_F(PpdRetry, AnUnknownQueueIsNotWaitedFor) {
  errno = EMFILE;
  EXPECT_EQ(ReadPpd("unknown"), "(none)");
  ExpectSleeps(0);
}

TEST_F(PpdRetry, AnEmptyPpdIsNotWaitedFor) {
  PrintQueues::Get().Add("empty", "");
  errno = EMFILE;
  EXPECT_EQ(ReadPpd("empty"), "(none)");
  ExpectSleeps(0);
}

// In a process of its own; it answers with its exit status.
class WithoutDescriptors : public PpdRetry {
 protected:
  static void SetDescriptorLimit(rlim_t limit) {
    rlimit limits;
    getrlimit(RLIMIT_NOFILE, &limits);
    limits.rlim_cur = limit;
    setrlimit(RLIMIT_NOFILE, &limits);
  }

  static void UseUpDescriptors() {
    const int lowest_free = dup(STDERR_FILENO);
    close(lowest_free);
    SetDescriptorLimit(static_cast<rlim_t>(lowest_free));
  }

  [[noreturn]] static void ExitWith(bool succeeded) { _exit(succeeded ? 0 : 1); }
};

TEST_F(WithoutDescriptors, ThePpdIsTriedForAMinute) {
  EXPECT_EXIT(
      {
        UseUpDescriptors();
        ExitWith(ReadPpd() == "(none)" && Faults().Seen(Callee::kSleep) == 60);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(WithoutDescriptors, ThePpdIsReadAsSoonAsOneIsFree) {
  EXPECT_EXIT(
      {
        rlimit before;
        getrlimit(RLIMIT_NOFILE, &before);
        Faults().OnSleep([&] {
          if (Faults().Seen(Callee::kSleep) == 3) SetDescriptorLimit(before.rlim_cur);
        });
        UseUpDescriptors();
        ExitWith(ReadPpd() == kPpdTable && Faults().Seen(Callee::kSleep) == 3);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(WithoutDescriptors, NoAnalyserIsMadeAndNoDocumentRead) {
  EXPECT_EXIT(
      {
        const SampleSetting& setting = SampleSetting::Get();
        const SampleAnalyser analyser;
        const CallersList list;
        UseUpDescriptors();
        AnalyzeContext* other = Analyze_Create(setting.bidi(), kQueue, setting.document_folder());
        const int32_t status = Analyze_Info_FromPrinter(analyser.context(), list.head(), 0);
        ExitWith(other == nullptr && status == -1 && list.Added().empty());
      },
      testing::ExitedWithCode(0), "");
}

// Descriptor 0 is what open() gives to a process that runs without standard input.
TEST_F(WithoutDescriptors, ADocumentUnderDescriptorZeroIsRefusedAndClosed) {
  EXPECT_EXIT(
      {
        const SampleAnalyser analyser;
        close(STDIN_FILENO);
        const int32_t status = analyze_common_create_xmldata(analyser.context(), 0);
        ExitWith(status == -1 && fcntl(STDIN_FILENO, F_GETFD) == -1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ia_test
