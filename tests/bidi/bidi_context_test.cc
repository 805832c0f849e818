#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <type_traits>

#include "info_analyze/bidi.h"
#include "tests/support/build_folders.h"
#include "tests/support/recording_library.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

static_assert(std::is_standard_layout_v<BidiContext>);
static_assert(offsetof(BidiContext, library) == 0);
static_assert(offsetof(BidiContext, socket) == sizeof(void*));
static_assert(offsetof(BidiContext, driver_folder) == 2 * sizeof(void*));
static_assert(offsetof(BidiContext, port) == 3 * sizeof(void*));
static_assert(std::is_same_v<decltype(BidiContext::port), std::int32_t>);
static_assert(sizeof(BidiContext) == 4 * sizeof(void*));

// The same folder in a path of `length` bytes.
std::string Lengthened(std::string folder, std::size_t length) {
  if ((length - folder.size()) % 2 != 0) folder += "/";
  while (folder.size() < length) folder += "/.";
  return folder;
}

TEST(BidiCreate, RefusesNull) { EXPECT_EQ(Bidi_Create(nullptr), nullptr); }

TEST(BidiCreate, FillsTheContext) {
  const std::string folder = RecordingFolder();
  const BidiPtr context(Bidi_Create(folder.c_str()));
  ASSERT_NE(context, nullptr);
  EXPECT_NE(context->library, nullptr);
  EXPECT_EQ(context->socket, nullptr);
  EXPECT_STREQ(context->driver_folder, folder.c_str());
  EXPECT_EQ(context->port, 0);
}

TEST(BidiCreate, CopiesTheFolder) {
  std::string folder = RecordingFolder();
  const BidiPtr context(Bidi_Create(folder.c_str()));
  ASSERT_NE(context, nullptr);
  folder.assign(folder.size(), 'x');
  EXPECT_EQ(context->driver_folder, RecordingFolder());
}

TEST(BidiCreate, KeepsTheFolderAsItIsWritten) {
  const std::string folder = RecordingFolder() + "//./";
  const BidiPtr context(Bidi_Create(folder.c_str()));
  ASSERT_NE(context, nullptr);
  EXPECT_EQ(context->driver_folder, folder);
}

TEST(BidiCreate, RefusesAFolderWithoutLibrary) {
  const TempFolder folder;
  EXPECT_EQ(Bidi_Create(folder.path().c_str()), nullptr);
  EXPECT_EQ(Bidi_Create(""), nullptr);
}

TEST(BidiCreate, RefusesALibraryThatIsNone) {
  const TempFolder folder;
  folder.Write("Bidi/libmqpd_util.so", "not a library");
  const auto descriptors = CountOpenDescriptors();
  EXPECT_EQ(Bidi_Create(folder.path().c_str()), nullptr);
  EXPECT_EQ(CountOpenDescriptors(), descriptors);
}

TEST(BidiCreate, LooksForTheLibraryInTheBidiFolderOnly) {
  const TempFolder folder;
  std::filesystem::copy_file(RecordingPath(), folder / "libmqpd_util.so");
  EXPECT_EQ(Bidi_Create(folder.path().c_str()), nullptr);
}

TEST(BidiCreate, TakesLibraryPathsBelow2048Bytes) {
  const std::size_t rest = std::strlen("/Bidi/libmqpd_util.so");
  const BidiPtr fits(Bidi_Create(Lengthened(RecordingFolder(), 2047 - rest).c_str()));
  EXPECT_NE(fits, nullptr);
  EXPECT_EQ(Bidi_Create(Lengthened(RecordingFolder(), 2048 - rest).c_str()), nullptr);
  EXPECT_EQ(Bidi_Create(Lengthened(RecordingFolder(), 2049 - rest).c_str()), nullptr);
}

TEST(BidiCreate, CallsNoEntryPoint) {
  RecordingLibrary library;
  const BidiPtr context(Bidi_Create(RecordingFolder().c_str()));
  ASSERT_NE(context, nullptr);
  EXPECT_TRUE(library.recording.calls.empty());
}

TEST(BidiCreate, LoadsTheReferenceLibrary) {
  const BidiPtr context(Bidi_Create(ia_test::kReferenceDriver));
  EXPECT_NE(context, nullptr);
}

struct FamilyRow {
  const char* folder;
  std::int32_t port;
};

class PortOfDriverFolder : public testing::TestWithParam<FamilyRow> {};

// The port of a context that a child process creates under this root; below 0 on failure.
std::int32_t PortInNewRoot(const std::string& root, const char* folder) {
  int ends[2];
  if (pipe(ends) != 0) return -1;
  const pid_t child = fork();
  if (child == 0) {
    std::int32_t port = -2;
    if (chroot(root.c_str()) == 0 && chdir("/") == 0) {
      const BidiPtr context(Bidi_Create(folder));
      port = context != nullptr ? context->port : -3;
    }
    _exit(write(ends[1], &port, sizeof port) == sizeof port ? 0 : 1);
  }
  close(ends[1]);
  std::int32_t port = -4;
  if (read(ends[0], &port, sizeof port) != sizeof port) port = -5;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return port;
}

TEST_P(PortOfDriverFolder, IsThatOfTheFamily) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can build the fixed folders elsewhere";
  const TempFolder root;
  const std::string bidi = root.path() + GetParam().folder + "/Bidi";
  std::filesystem::create_directories(bidi);
  std::filesystem::copy_file(RecordingPath(), bidi + "/libmqpd_util.so");
  EXPECT_EQ(PortInNewRoot(root.path(), GetParam().folder), GetParam().port);
}

INSTANTIATE_TEST_SUITE_P(EachFamily, PortOfDriverFolder,
                         testing::Values(FamilyRow{"/Library/Printers/Vorel/CUPSZETA6", 59788},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSTAU2", 59789},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSKAPPA2", 59790},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSPS", 59791},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSPS2", 59794},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSPSMF", 0},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSFAX", 59792},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSDELTA", 59793},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSSIGMA", 59787},
                                         FamilyRow{"/Library/Printers/Vorel/CUPSOMEGA", 0},
                                         FamilyRow{"/usr/lib/Vorel/CUPS_SFP", 0}));

TEST(BidiDestroy, IgnoresNull) { Bidi_Destroy(nullptr); }

TEST(BidiDestroy, CleansUpAndUnloads) {
  BidiContext* context = Bidi_Create(RecordingFolder().c_str());
  ASSERT_NE(context, nullptr);
  EXPECT_TRUE(IsLoaded(RecordingPath()));
  Recording recording;
  AttachRecording(&recording);
  Bidi_Destroy(context);
  EXPECT_EQ(recording.calls, (std::vector{CallTo("qvxmlwrapCleanup"), CallTo(kUnloaded)}));
  EXPECT_FALSE(IsLoaded(RecordingPath()));
}

TEST(BidiDestroy, LeavesTheSocketToTheCaller) {
  RecordingLibrary library;
  library.recording.socket = &library;
  BidiContext* context = Bidi_Create(RecordingFolder().c_str());
  ASSERT_NE(context, nullptr);
  ASSERT_EQ(Bidi_qvsktwrapNew(context, 0, 0), 0);
  library.recording.calls.clear();
  Bidi_Destroy(context);
  EXPECT_EQ(library.recording.calls, (std::vector{CallTo("qvxmlwrapCleanup")}));
}

TEST(BidiDestroy, OnlyFreesAContextWithoutLibrary) {
  auto* context = static_cast<BidiContext*>(calloc(1, sizeof(BidiContext)));
  context->driver_folder = strdup("/nowhere");
  Bidi_Destroy(context);
}

TEST(BidiDestroy, FreesAnEmptyContext) {
  Bidi_Destroy(static_cast<BidiContext*>(calloc(1, sizeof(BidiContext))));
}

TEST(BidiContexts, OfOneFolderLiveApart) {
  RecordingLibrary library;
  BidiContext* first = Bidi_Create(RecordingFolder().c_str());
  const BidiPtr second(Bidi_Create(RecordingFolder().c_str()));
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first->library, second->library);
  library.recording.socket = &library;
  EXPECT_EQ(Bidi_qvsktwrapNew(first, 0, 0), 0);
  EXPECT_EQ(second->socket, nullptr);
  Bidi_Destroy(first);
  EXPECT_EQ(Bidi_qvxmlwrapSet_CloseDict(second.get(), nullptr), 0);
}

}  // namespace
}  // namespace ia_test
