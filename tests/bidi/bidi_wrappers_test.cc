#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "bidi/library_binding.h"
#include "info_analyze/bidi.h"
#include "tests/support/entry_points.h"
#include "tests/support/recording_library.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

// Words that do not survive being cut to 32 bits, and differ from each other.
constexpr std::intptr_t Word(std::intptr_t number) {
  return static_cast<std::intptr_t>(0x5A00000080000000U + static_cast<std::uintptr_t>(number));
}

// Things to point at; the recording library compares addresses only.
char g_things[4];
QvXmlWriter* const kWriter = reinterpret_cast<QvXmlWriter*>(&g_things[0]);
QvXmlReader* const kReader = reinterpret_cast<QvXmlReader*>(&g_things[1]);
void* const kSocket = &g_things[2];
const void* const kData = &g_things[3];
void* const kAuxiliary = &g_things[3];
std::int32_t g_number;
std::int32_t g_length;
double g_real;
char* g_text;
void* g_bytes;
char g_driver_folder[] = "/driver";

enum class Result { kPassedOn, kFound, kHandle, kStatusOfHandle };

struct Wrapper {
  const char* entry_point;
  Result result;
  std::intptr_t when_unbound;
  std::function<std::intptr_t(BidiContext*)> call;
  Call expected;
};

void PrintTo(const Wrapper& wrapper, std::ostream* out) { *out << wrapper.entry_point; }

std::intptr_t Handle(void* handle) { return reinterpret_cast<std::intptr_t>(handle); }

const std::vector<Wrapper>& Wrappers() {
  static const std::vector<Wrapper> wrappers = {
      {"qvsktwrapQueueListNew", Result::kPassedOn, -1,
       [](BidiContext* c) {
         return Bidi_qvsktwrapQueueListNew(c, Word(1), Word(2), Word(3), Word(4));
       },
       CallTo("qvsktwrapQueueListNew", static_cast<const char*>(g_driver_folder), Word(1), Word(2),
              Word(3), Word(4))},
      {"qvsktwrapQueueListDestroy", Result::kPassedOn, 0,
       [](BidiContext* c) {
         return Bidi_qvsktwrapQueueListDestroy(c, Word(1), Word(2), Word(3), Word(4));
       },
       CallTo("qvsktwrapQueueListDestroy", Word(1), Word(2), Word(3), Word(4))},
      {"qvsktwrapNew", Result::kStatusOfHandle, -1,
       [](BidiContext* c) { return Bidi_qvsktwrapNew(c, Word(1), Word(2)); },
       CallTo("qvsktwrapNew", Word(1), Word(2), static_cast<const char*>(g_driver_folder), 59790)},
      {"qvsktwrapControl", Result::kPassedOn, -1,
       [](BidiContext* c) {
         return Bidi_qvsktwrapControl(c, Word(1), Word(2), Word(3), Word(4), Word(5));
       },
       CallTo("qvsktwrapControl", kSocket, Word(1), Word(2), Word(3), Word(4), Word(5))},
      {"qvsktwrapDestroy", Result::kPassedOn, 0,
       [](BidiContext* c) { return Bidi_qvsktwrapDestroy(c); },
       CallTo("qvsktwrapDestroy", kSocket)},

      {"qvxmlwrapSet_New", Result::kHandle, 0,
       [](BidiContext* c) { return Handle(Bidi_qvxmlwrapSet_New(c)); }, CallTo("qvxmlwrapSet_New")},
      {"qvxmlwrapSet_OpenDict", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_OpenDict(c, kWriter, "key", Word(1)); },
       CallTo("qvxmlwrapSet_OpenDict", kWriter, "key", Word(1))},
      {"qvxmlwrapSet_Long", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_Long(c, kWriter, "key", kLowest); },
       CallTo("qvxmlwrapSet_Long", kWriter, "key", kLowest)},
      {"qvxmlwrapSet_Double", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_Double(c, kWriter, "key", -0.1); },
       CallTo("qvxmlwrapSet_Double", kWriter, "key", -0.1)},
      {"qvxmlwrapSet_String", Result::kPassedOn, -1,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapSet_String(c, kWriter, "key", "text", Word(1), Word(2));
       },
       CallTo("qvxmlwrapSet_String", kWriter, "key", "text", Word(1), Word(2))},
      {"qvxmlwrapSet_Binary", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_Binary(c, kWriter, "key", kData, kHighest); },
       CallTo("qvxmlwrapSet_Binary", kWriter, "key", kData, kHighest)},
      {"qvxmlwrapSet_OpenArray", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_OpenArray(c, kWriter, "key"); },
       CallTo("qvxmlwrapSet_OpenArray", kWriter, "key")},
      {"qvxmlwrapSet_LongToArray", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_LongToArray(c, kWriter, -7); },
       CallTo("qvxmlwrapSet_LongToArray", kWriter, -7)},
      {"qvxmlwrapSet_DoubleToArray", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_DoubleToArray(c, kWriter, 1e300); },
       CallTo("qvxmlwrapSet_DoubleToArray", kWriter, 1e300)},
      {"qvxmlwrapSet_StringToArray", Result::kPassedOn, -1,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapSet_StringToArray(c, kWriter, "text", Word(1), Word(2));
       },
       CallTo("qvxmlwrapSet_StringToArray", kWriter, "text", Word(1), Word(2))},
      {"qvxmlwrapSet_BinaryToArray", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_BinaryToArray(c, kWriter, kData, 3); },
       CallTo("qvxmlwrapSet_BinaryToArray", kWriter, kData, 3)},
      {"qvxmlwrapSet_CloseArray", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_CloseArray(c, kWriter); },
       CallTo("qvxmlwrapSet_CloseArray", kWriter)},
      {"qvxmlwrapSet_CloseDict", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapSet_CloseDict(c, kWriter); },
       CallTo("qvxmlwrapSet_CloseDict", kWriter)},
      {"qvxmlwrapSet_Destroy", Result::kPassedOn, -1,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapSet_Destroy(c, kWriter, Word(1), Word(2), Word(3));
       },
       CallTo("qvxmlwrapSet_Destroy", kWriter, Word(1), Word(2), Word(3))},

      {"qvxmlwrapGet_New", Result::kHandle, 0,
       [](BidiContext* c) { return Handle(Bidi_qvxmlwrapGet_New(c, kData, -1)); },
       CallTo("qvxmlwrapGet_New", kData, -1)},
      {"qvxmlwrapGet_DictCount", Result::kFound, 0,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_DictCount(c, kReader, "key", &g_number); },
       CallTo("qvxmlwrapGet_DictCount", kReader, "key", &g_number)},
      {"qvxmlwrapGet_OpenDict", Result::kFound, 0,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_OpenDict(c, kReader, "key", 5); },
       CallTo("qvxmlwrapGet_OpenDict", kReader, "key", 5)},
      {"qvxmlwrapGet_Long", Result::kFound, 0,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_Long(c, kReader, "key", &g_number, Word(1)); },
       CallTo("qvxmlwrapGet_Long", kReader, "key", &g_number, Word(1))},
      {"qvxmlwrapGet_Double", Result::kFound, 0,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_Double(c, kReader, "key", &g_real, 2.5); },
       CallTo("qvxmlwrapGet_Double", kReader, "key", &g_real, 2.5)},
      {"qvxmlwrapGet_String", Result::kFound, 0,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapGet_String(c, kReader, "key", &g_text, kAuxiliary, "UTF-8", Word(1));
       },
       CallTo("qvxmlwrapGet_String", kReader, "key", &g_text, kAuxiliary, "UTF-8", Word(1))},
      {"qvxmlwrapGet_Binary", Result::kFound, 0,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapGet_Binary(c, kReader, "key", &g_bytes, &g_length);
       },
       CallTo("qvxmlwrapGet_Binary", kReader, "key", &g_bytes, &g_length)},
      {"qvxmlwrapGet_ArrayCount", Result::kFound, 0,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_ArrayCount(c, kReader, "key", &g_number); },
       CallTo("qvxmlwrapGet_ArrayCount", kReader, "key", &g_number)},
      {"qvxmlwrapGet_OpenArray", Result::kFound, 0,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_OpenArray(c, kReader, "key"); },
       CallTo("qvxmlwrapGet_OpenArray", kReader, "key")},
      {"qvxmlwrapGet_LongFromArray", Result::kFound, 0,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapGet_LongFromArray(c, kReader, 6, &g_number, Word(1));
       },
       CallTo("qvxmlwrapGet_LongFromArray", kReader, 6, &g_number, Word(1))},
      {"qvxmlwrapGet_DoubleFromArray", Result::kFound, 0,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapGet_DoubleFromArray(c, kReader, 7, &g_real, -2.5);
       },
       CallTo("qvxmlwrapGet_DoubleFromArray", kReader, 7, &g_real, -2.5)},
      {"qvxmlwrapGet_StringFromArray", Result::kFound, 0,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapGet_StringFromArray(c, kReader, 8, &g_text, kAuxiliary, "UTF-8",
                                                  Word(1));
       },
       CallTo("qvxmlwrapGet_StringFromArray", kReader, 8, &g_text, kAuxiliary, "UTF-8", Word(1))},
      {"qvxmlwrapGet_BinaryFromArray", Result::kFound, 0,
       [](BidiContext* c) {
         return Bidi_qvxmlwrapGet_BinaryFromArray(c, kReader, 9, &g_bytes, &g_length);
       },
       CallTo("qvxmlwrapGet_BinaryFromArray", kReader, 9, &g_bytes, &g_length)},
      {"qvxmlwrapGet_CloseArray", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_CloseArray(c, kReader); },
       CallTo("qvxmlwrapGet_CloseArray", kReader)},
      {"qvxmlwrapGet_CloseDict", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_CloseDict(c, kReader); },
       CallTo("qvxmlwrapGet_CloseDict", kReader)},
      {"qvxmlwrapGet_Destroy", Result::kPassedOn, -1,
       [](BidiContext* c) { return Bidi_qvxmlwrapGet_Destroy(c, kReader); },
       CallTo("qvxmlwrapGet_Destroy", kReader)},
  };
  return wrappers;
}

TEST(BidiWrappers, AreThereForEveryEntryPointButTheCleanup) {
  std::vector<std::string> wrapped;
  for (const Wrapper& wrapper : Wrappers()) wrapped.push_back(wrapper.entry_point);
  std::vector<std::string> expected(kEntryPoints.begin(), kEntryPoints.end());
  std::erase(expected, "qvxmlwrapCleanup");
  EXPECT_EQ(wrapped, expected);
}

class BidiWrapper : public testing::TestWithParam<Wrapper> {
 protected:
  void SetUp() override {
    bidi_.reset(Bidi_Create(RecordingFolder().c_str()));
    ASSERT_NE(bidi_, nullptr);
    binding_ = *bidi_->library;
  }

  std::intptr_t CallWrapper() { return GetParam().call(&context_); }
  void SetResult(std::int32_t result) { recording_.results[GetParam().entry_point] = result; }

  // Empties the wrapper's own slot, or all others.
  void Unbind(bool own) {
    std::array<void*, 37> slots = {};
    std::memcpy(slots.data(), &binding_, sizeof slots);
    for (std::size_t i = 0; i < kEntryPoints.size(); ++i) {
      if ((std::string(kEntryPoints[i]) == GetParam().entry_point) == own) slots[i + 1] = nullptr;
    }
    std::memcpy(&binding_, slots.data(), sizeof slots);
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_;
  BidiLibrary binding_ = {};
  BidiContext context_ = {&binding_, kSocket, g_driver_folder, 59790};
};

TEST_P(BidiWrapper, PassesItsArgumentsUnchangedAndInOrder) {
  CallWrapper();
  EXPECT_THAT(recording_.calls, ElementsAre(GetParam().expected));
}

TEST_P(BidiWrapper, LeavesOutputsToTheEntryPoint) {
  g_number = g_length = 41;
  g_real = 4.5;
  g_text = g_things;
  g_bytes = g_things;
  CallWrapper();
  EXPECT_EQ(g_number, 41);
  EXPECT_EQ(g_length, 41);
  EXPECT_EQ(g_real, 4.5);
  EXPECT_EQ(g_text, g_things);
  EXPECT_EQ(g_bytes, g_things);
}

TEST_P(BidiWrapper, MapsTheResultOfTheCall) {
  if (GetParam().result == Result::kHandle || GetParam().result == Result::kStatusOfHandle) return;
  for (const std::int32_t result : {0, 1, -1, 2, 256, 0x10000, kLowest, kHighest}) {
    SetResult(result);
    EXPECT_EQ(CallWrapper(), GetParam().result == Result::kFound ? result != 0 : result) << result;
  }
}

TEST_P(BidiWrapper, AnswersItsFailureValueWhenUnbound) {
  SetResult(7);
  recording_.socket = recording_.writer = kWriter;
  Unbind(true);
  EXPECT_EQ(CallWrapper(), GetParam().when_unbound);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_P(BidiWrapper, NeedsNoOtherEntryPoint) {
  Unbind(false);
  CallWrapper();
  EXPECT_THAT(recording_.calls, ElementsAre(GetParam().expected));
}

TEST_P(BidiWrapper, AnswersItsFailureValueWithoutLibrary) {
  context_.library = nullptr;
  EXPECT_EQ(CallWrapper(), GetParam().when_unbound);
}

TEST_P(BidiWrapper, AnswersItsFailureValueWithoutContext) {
  EXPECT_EQ(GetParam().call(nullptr), GetParam().when_unbound);
}

INSTANTIATE_TEST_SUITE_P(Each, BidiWrapper, testing::ValuesIn(Wrappers()),
                         [](const auto& info) { return std::string(info.param.entry_point); });

class BidiHandles : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(bidi_, nullptr); }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
};

TEST_F(BidiHandles, SocketIsKeptByTheContext) {
  recording_.socket = kSocket;
  EXPECT_EQ(Bidi_qvsktwrapNew(bidi_.get(), 1, 2), 0);
  EXPECT_EQ(bidi_->socket, kSocket);
  EXPECT_EQ(recording_.calls,
            (std::vector{CallTo("qvsktwrapNew", 1, 2,
                                static_cast<const char*>(bidi_->driver_folder), bidi_->port)}));
}

TEST_F(BidiHandles, SocketIsPassedToControlAndDestroy) {
  recording_.socket = kSocket;
  ASSERT_EQ(Bidi_qvsktwrapNew(bidi_.get(), 0, 0), 0);
  recording_.calls.clear();
  EXPECT_EQ(Bidi_qvsktwrapControl(bidi_.get(), 1, 2, 3, 4, 5), 0);
  EXPECT_EQ(Bidi_qvsktwrapDestroy(bidi_.get()), 0);
  EXPECT_THAT(recording_.calls, ElementsAre(CallTo("qvsktwrapControl", kSocket, 1, 2, 3, 4, 5),
                                            CallTo("qvsktwrapDestroy", kSocket)));
}

TEST_F(BidiHandles, SocketStaysInTheContextWhenDestroyed) {
  recording_.socket = kSocket;
  ASSERT_EQ(Bidi_qvsktwrapNew(bidi_.get(), 0, 0), 0);
  EXPECT_EQ(Bidi_qvsktwrapDestroy(bidi_.get()), 0);
  EXPECT_EQ(bidi_->socket, kSocket);
}

TEST_F(BidiHandles, NullSocketIsAFailure) {
  EXPECT_EQ(Bidi_qvsktwrapNew(bidi_.get(), 0, 0), -1);
  EXPECT_EQ(bidi_->socket, nullptr);
}

TEST_F(BidiHandles, NullSocketReplacesAnOldOne) {
  bidi_->socket = kSocket;
  EXPECT_EQ(Bidi_qvsktwrapNew(bidi_.get(), 0, 0), -1);
  EXPECT_EQ(bidi_->socket, nullptr);
}

TEST_F(BidiHandles, NullSocketIsPassedOnToo) {
  Bidi_qvsktwrapControl(bidi_.get(), 1, 2, 3, 4, 5);
  Bidi_qvsktwrapDestroy(bidi_.get());
  void* const none = nullptr;
  EXPECT_THAT(recording_.calls, ElementsAre(CallTo("qvsktwrapControl", none, 1, 2, 3, 4, 5),
                                            CallTo("qvsktwrapDestroy", none)));
}

TEST_F(BidiHandles, UnboundSocketMakerLeavesTheContextAlone) {
  BidiLibrary empty = {};
  BidiContext context = {&empty, kSocket, g_driver_folder, 0};
  EXPECT_EQ(Bidi_qvsktwrapNew(&context, 0, 0), -1);
  EXPECT_EQ(context.socket, kSocket);
}

TEST_F(BidiHandles, WriterIsThatOfTheLibrary) {
  EXPECT_EQ(Bidi_qvxmlwrapSet_New(bidi_.get()), nullptr);
  recording_.writer = kWriter;
  EXPECT_EQ(Bidi_qvxmlwrapSet_New(bidi_.get()), kWriter);
}

TEST_F(BidiHandles, ReaderIsThatOfTheLibrary) {
  recording_.documents["text"] = {};
  EXPECT_EQ(Bidi_qvxmlwrapGet_New(bidi_.get(), "tex", 3), nullptr);
  QvXmlReader* reader = Bidi_qvxmlwrapGet_New(bidi_.get(), "text", 4);
  EXPECT_NE(reader, nullptr);
  EXPECT_TRUE(recording_.readers.contains(reader));
}

TEST_F(BidiHandles, ValuesAndTextsComeBackFromTheLibrary) {
  QvXmlReader* reader = recording_.Open({.longs = {{"number", kLowest}},
                                         .strings = {{"text", "written"}},
                                         .dict_counts = {{"dictionary", 3}},
                                         .array_counts = {{"array", 4}},
                                         .long_elements = {{1, kHighest}},
                                         .string_elements = {{2, "element"}}});
  std::int32_t number = 0;
  EXPECT_EQ(Bidi_qvxmlwrapGet_Long(bidi_.get(), reader, "number", &number, 0), 1);
  EXPECT_EQ(number, kLowest);
  EXPECT_EQ(Bidi_qvxmlwrapGet_LongFromArray(bidi_.get(), reader, 1, &number, 0), 1);
  EXPECT_EQ(number, kHighest);
  EXPECT_EQ(Bidi_qvxmlwrapGet_DictCount(bidi_.get(), reader, "dictionary", &number), 1);
  EXPECT_EQ(number, 3);
  EXPECT_EQ(Bidi_qvxmlwrapGet_ArrayCount(bidi_.get(), reader, "array", &number), 1);
  EXPECT_EQ(number, 4);
  char* text = nullptr;
  EXPECT_EQ(Bidi_qvxmlwrapGet_String(bidi_.get(), reader, "text", &text, nullptr, "UTF-8", 0), 1);
  EXPECT_STREQ(text, "written");
  free(text);
  text = nullptr;
  EXPECT_EQ(Bidi_qvxmlwrapGet_StringFromArray(bidi_.get(), reader, 2, &text, nullptr, "UTF-8", 0),
            1);
  EXPECT_STREQ(text, "element");
  free(text);
}

}  // namespace
}  // namespace ia_test
