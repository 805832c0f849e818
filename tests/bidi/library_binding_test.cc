#include "bidi/library_binding.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <ios>
#include <string>

#include "tests/support/build_folders.h"
#include "tests/support/entry_points.h"
#include "tests/support/recording_library.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::ValuesIn;

constexpr auto kSlotOffsets = std::to_array<std::size_t>({
    offsetof(BidiLibrary, handle),
#define X(name) offsetof(BidiLibrary, name),
#include "tests/support/entry_points.inc"
#undef X
});

constexpr bool SlotsFollowEachOther() {
  for (std::size_t slot = 0; slot < kSlotOffsets.size(); ++slot) {
    if (kSlotOffsets[slot] != slot * sizeof(void*)) return false;
  }
  return true;
}
static_assert(SlotsFollowEachOther());
static_assert(sizeof(BidiLibrary) == 37 * sizeof(void*));

// For records made by hand: z_FreeBidiLibrary() frees them.
BidiLibrary* NewBinding() { return static_cast<BidiLibrary*>(calloc(1, sizeof(BidiLibrary))); }

int g_cleanups = 0;
void CountCleanup() { ++g_cleanups; }

int CallsTo(void* library, const std::string& entry_point) {
  return *static_cast<int*>(dlsym(library, ("calls_" + entry_point).c_str()));
}

TEST(LoadBidiLibrary, RefusesNull) { EXPECT_EQ(z_LoadBidiLibrary(nullptr), nullptr); }

TEST(LoadBidiLibrary, BindsEachSlotToTheEntryPointOfItsName) {
  BidiLibrary* library = z_LoadBidiLibrary(RecordingPath().c_str());
  ASSERT_NE(library, nullptr);
  ASSERT_NE(library->handle, nullptr);
  std::array<void*, 37> slots = {};
  std::memcpy(slots.data(), library, sizeof slots);
  for (std::size_t i = 0; i < kEntryPoints.size(); ++i) {
    EXPECT_NE(slots[i + 1], nullptr) << kEntryPoints[i];
    EXPECT_EQ(slots[i + 1], dlsym(library->handle, kEntryPoints[i])) << kEntryPoints[i];
  }
  z_FreeBidiLibrary(library);
}

TEST(LoadBidiLibrary, CallsNothingWhileBinding) {
  RecordingLibrary recording;
  BidiLibrary* library = z_LoadBidiLibrary(RecordingPath().c_str());
  ASSERT_NE(library, nullptr);
  EXPECT_TRUE(recording.recording.calls.empty());
  z_FreeBidiLibrary(library);
}

TEST(LoadBidiLibrary, KeepsTheEntryPointsOutOfTheProcess) {
  BidiLibrary* library = z_LoadBidiLibrary(RecordingPath().c_str());
  ASSERT_NE(library, nullptr);
  EXPECT_EQ(dlsym(RTLD_DEFAULT, "qvxmlwrapGet_New"), nullptr);
  z_FreeBidiLibrary(library);
}

TEST(LoadBidiLibrary, RefusesAMissingFile) {
  const TempFolder folder;
  EXPECT_EQ(z_LoadBidiLibrary((folder / "libmqpd_util.so").c_str()), nullptr);
}

TEST(LoadBidiLibrary, RefusesFilesThatAreNoLibrary) {
  const TempFolder folder;
  folder.Write("text.so", "not a library");
  folder.Write("empty.so", "");
  std::filesystem::create_directory(folder / "folder.so");
  std::string half;
  std::getline(std::ifstream(RecordingPath(), std::ios::binary), half, '\0');
  folder.Write("first-part.so", half);
  const auto descriptors = CountOpenDescriptors();
  for (const char* name : {"text.so", "empty.so", "folder.so", "first-part.so"}) {
    EXPECT_EQ(z_LoadBidiLibrary((folder / name).c_str()), nullptr) << name;
  }
  EXPECT_EQ(CountOpenDescriptors(), descriptors);
}

TEST(LoadBidiLibrary, RefusesALibraryWithACallThatCannotBeResolved) {
  const std::string path =
      std::string(ia_test::kSupportDrivers) + "/unresolved/Bidi/libmqpd_util.so";
  void* lazily = dlopen(path.c_str(), RTLD_LAZY);
  ASSERT_NE(lazily, nullptr) << dlerror();
  dlclose(lazily);
  EXPECT_EQ(z_LoadBidiLibrary(path.c_str()), nullptr);
}

class LibraryWithoutOneEntryPoint : public testing::TestWithParam<const char*> {
 protected:
  std::string folder() const {
    return std::string(ia_test::kSupportDrivers) + "/lacking/" + std::string(GetParam());
  }
  std::string path() const { return folder() + "/Bidi/libmqpd_util.so"; }
};

TEST_P(LibraryWithoutOneEntryPoint, LacksThatOneOnly) {
  void* library = dlopen(path().c_str(), RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();
  for (const char* entry_point : kEntryPoints) {
    const bool is_missing = dlsym(library, entry_point) == nullptr;
    EXPECT_EQ(is_missing, std::string(entry_point) == GetParam()) << entry_point;
  }
  dlclose(library);
}

TEST_P(LibraryWithoutOneEntryPoint, IsRefusedAsAWhole) {
  const auto descriptors = CountOpenDescriptors();
  EXPECT_EQ(z_LoadBidiLibrary(path().c_str()), nullptr);
  EXPECT_EQ(Bidi_Create(folder().c_str()), nullptr);
  EXPECT_FALSE(IsLoaded(path()));
  EXPECT_EQ(CountOpenDescriptors(), descriptors);
}

// The cleanup is the sixth entry point: when one before it is missing, it may be bound or not.
TEST_P(LibraryWithoutOneEntryPoint, IsCleanedUpWhenThatIsBound) {
  void* library = dlopen(path().c_str(), RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();
  EXPECT_EQ(z_LoadBidiLibrary(path().c_str()), nullptr);
  const auto* const cleanup = std::ranges::find(kEntryPoints, std::string("qvxmlwrapCleanup"));
  const auto* const missing = std::ranges::find(kEntryPoints, std::string(GetParam()));
  for (const auto* entry_point = kEntryPoints.begin(); entry_point < kEntryPoints.end();
       ++entry_point) {
    if (entry_point == cleanup && missing < cleanup) continue;
    EXPECT_EQ(CallsTo(library, *entry_point), entry_point == cleanup && missing != cleanup ? 1 : 0)
        << *entry_point;
  }
  dlclose(library);
}

INSTANTIATE_TEST_SUITE_P(EachEntryPoint, LibraryWithoutOneEntryPoint, ValuesIn(kEntryPoints),
                         [](const auto& info) { return std::string(info.param); });

TEST(FreeBidiLibrary, IgnoresNull) { z_FreeBidiLibrary(nullptr); }

TEST(FreeBidiLibrary, CleansUpBeforeUnloading) {
  BidiLibrary* library = z_LoadBidiLibrary(RecordingPath().c_str());
  ASSERT_NE(library, nullptr);
  Recording recording;
  AttachRecording(&recording);
  z_FreeBidiLibrary(library);
  EXPECT_EQ(recording.calls, (std::vector{CallTo("qvxmlwrapCleanup"), CallTo(kUnloaded)}));
  EXPECT_FALSE(IsLoaded(RecordingPath()));
}

TEST(FreeBidiLibrary, SkipsACleanupThatIsNotBound) {
  BidiLibrary* library = NewBinding();
  library->handle = dlopen(RecordingPath().c_str(), RTLD_NOW);
  ASSERT_NE(library->handle, nullptr);
  Recording recording;
  AttachRecording(&recording);
  z_FreeBidiLibrary(library);
  EXPECT_EQ(recording.calls, (std::vector{CallTo(kUnloaded)}));
}

TEST(FreeBidiLibrary, CleansUpWithoutHandle) {
  BidiLibrary* library = NewBinding();
  library->qvxmlwrapCleanup = CountCleanup;
  g_cleanups = 0;
  z_FreeBidiLibrary(library);
  EXPECT_EQ(g_cleanups, 1);
}

TEST(FreeBidiLibrary, FreesAnEmptyBinding) { z_FreeBidiLibrary(NewBinding()); }

TEST(EntryPointNames, AreThoseThatAreBoundInTheirOrder) {
  std::int32_t index = 0;
#define IA_ENTRY_POINT(name, ...) EXPECT_STREQ(Bidi_GetEntryPointName(index++), #name);
#include "bidi/entry_points.inc"
#undef IA_ENTRY_POINT
  EXPECT_EQ(index, 36);
}

TEST(EntryPointNames, EndOutOfRange) {
  for (const std::int32_t index : {-1, 36, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Bidi_GetEntryPointName(index), nullptr) << index;
  }
}

}  // namespace
}  // namespace ia_test
