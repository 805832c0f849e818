#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "info_analyze/analyzer.h"
#include "info_analyze/device_documents.h"
#include "tests/support/build_folders.h"
#include "tests/support/recording_library.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kPointer = sizeof(void*);
static_assert(std::is_standard_layout_v<XmlKeyDescriptor>);
static_assert(offsetof(XmlKeyDescriptor, document) == 0);
static_assert(offsetof(XmlKeyDescriptor, key) == kPointer);
static_assert(offsetof(XmlKeyDescriptor, type) == 2 * kPointer);
static_assert(offsetof(XmlKeyDescriptor, destination) == 3 * kPointer);
static_assert(offsetof(XmlKeyDescriptor, encoding) == 4 * kPointer);
static_assert(offsetof(XmlKeyDescriptor, auxiliary) == 5 * kPointer);
static_assert(offsetof(XmlKeyDescriptor, count) == 6 * kPointer);
static_assert(sizeof(XmlKeyDescriptor) == 7 * kPointer);

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kUntouched = 0x5A5A5A5A;

const char* const kUtf8 = "UTF-8";

XmlKeyDescriptor LongKey(const char* key, std::int32_t* number) {
  return {0, key, IA_KEY_LONG, number, nullptr, nullptr, nullptr};
}
XmlKeyDescriptor StringKey(const char* key, char** text, void* auxiliary = nullptr) {
  return {0, key, IA_KEY_STRING, text, &kUtf8, auxiliary, nullptr};
}
XmlKeyDescriptor LongElements(std::int32_t* numbers, std::int32_t* capacity = nullptr) {
  return {0, nullptr, IA_KEY_LONG_ELEMENTS, numbers, nullptr, nullptr, capacity};
}
XmlKeyDescriptor StringElements(char** texts, std::int32_t* capacity = nullptr,
                                void* auxiliary = nullptr) {
  return {0, nullptr, IA_KEY_STRING_ELEMENTS, texts, &kUtf8, auxiliary, capacity};
}
XmlKeyDescriptor ArrayKey(const char* key, XmlKeyDescriptor** element, std::int32_t* count) {
  return {0, key, IA_KEY_ARRAY, element, nullptr, nullptr, count};
}
XmlKeyDescriptor DictionaryKey(const char* key, XmlKeyDescriptor** nested, std::int32_t* count) {
  return {0, key, IA_KEY_DICTIONARY, nested, nullptr, nullptr, count};
}

// A text that is released with the test.
struct Text {
  ~Text() { free(text); }
  operator std::string() const { return text != nullptr ? text : "(null)"; }
  char* text = nullptr;
};

class KeyReader : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    context_.bidi = bidi_.get();
  }

  void TearDown() override {
    for (const auto& [reader, open] : recording_.readers) EXPECT_EQ(open->depth, 0);
    EXPECT_THAT(recording_.faults, IsEmpty());
  }

  QvXmlReader* Load(std::int32_t index, ScriptedDocument document) {
    return context_.documents[index].xml = recording_.Open(std::move(document));
  }

  template <std::size_t n>
  std::int32_t Read(const std::array<XmlKeyDescriptor, n>& keys) {
    return analyze_common_readxml(&context_, keys.data(), n);
  }
  std::int32_t ReadOne(QvXmlReader* reader, const XmlKeyDescriptor& key, std::int32_t elements) {
    return analyze_common_getxmlkeydata(&context_, reader, &key, elements);
  }
  template <std::size_t n>
  std::int32_t ReadNested(QvXmlReader* reader, const std::array<XmlKeyDescriptor, n>& keys,
                          std::int32_t index) {
    return analyze_common_getxmloneinfo(&context_, reader, keys.data(), n, index);
  }
  std::int32_t ReadItem(const XmlKeyDescriptor& key, std::int32_t index) {
    return analyze_common_readxml_for_list(&context_, &key, 1, index);
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
};

// Plain keys -------------------------------------------------------------------------------------

class PlainKeys : public KeyReader {
 protected:
  FlagInfo after_the_slots_ = {};
};

TEST_F(PlainKeys, AreReadInOrderFromTheirDocuments) {
  QvXmlReader* first = Load(0, {.longs = {{"number", 5}, {"text", 9}}});
  QvXmlReader* last = Load(8, {.longs = {{"number", -6}}, .strings = {{"text", "words"}}});
  std::int32_t numbers[2] = {};
  Text text;
  std::array keys = {LongKey("number", &numbers[0]), StringKey("text", &text.text, &text),
                     LongKey("number", &numbers[1])};
  keys[0].document = 8;
  keys[1].document = 8;
  EXPECT_EQ(Read(keys), 0);
  EXPECT_EQ(numbers[0], -6);
  EXPECT_EQ(numbers[1], 5);
  EXPECT_EQ(std::string(text), "words");
  EXPECT_THAT(
      recording_.calls,
      ElementsAre(CallTo("qvxmlwrapGet_Long", last, "number", &numbers[0], 0),
                  CallTo("qvxmlwrapGet_String", last, "text", &text.text, &text, "UTF-8", 0),
                  CallTo("qvxmlwrapGet_Long", first, "number", &numbers[1], 0)));
}

TEST_F(PlainKeys, AreReadFromEveryDocument) {
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) {
    Load(index, {.longs = {{"number", 100 + index}}});
  }
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) {
    std::int32_t number = 0;
    std::array keys = {LongKey("number", &number)};
    keys[0].document = index;
    EXPECT_EQ(Read(keys), 0);
    EXPECT_EQ(number, 100 + index);
  }
}

TEST_F(PlainKeys, HaveTheWholeRangeOfNumbers) {
  Load(0, {.longs = {{"lowest", kLowest}, {"highest", kHighest}, {"zero", 0}}});
  std::int32_t numbers[3] = {1, 1, 1};
  EXPECT_EQ(Read(std::array{LongKey("lowest", &numbers[0]), LongKey("highest", &numbers[1]),
                            LongKey("zero", &numbers[2])}),
            0);
  EXPECT_THAT(numbers, ElementsAre(kLowest, kHighest, 0));
}

TEST_F(PlainKeys, MayHoldLongTexts) {
  const std::string long_text(100 * 1024, 'x');
  Load(0, {.strings = {{"text", long_text}, {"empty", ""}}});
  Text text;
  Text empty;
  EXPECT_EQ(Read(std::array{StringKey("text", &text.text), StringKey("empty", &empty.text)}), 0);
  EXPECT_EQ(std::string(text), long_text);
  EXPECT_EQ(std::string(empty), "");
}

TEST_F(PlainKeys, MissingOnesLeaveTheirDestinations) {
  Load(0, {.longs = {{"there", 3}}});
  std::int32_t numbers[2] = {41, 42};
  char untouched[] = "untouched";
  char* text = untouched;
  EXPECT_EQ(Read(std::array{LongKey("missing", &numbers[0]), StringKey("missing", &text),
                            LongKey("there", &numbers[1])}),
            0);
  EXPECT_THAT(numbers, ElementsAre(41, 3));
  EXPECT_EQ(text, untouched);
}

TEST_F(PlainKeys, PassTheEncodingThatTheirDescriptorNames) {
  QvXmlReader* reader = Load(0, {});
  const char* const other = "Shift_JIS";
  char* text = nullptr;
  std::array keys = {StringKey("text", &text)};
  keys[0].encoding = &other;
  EXPECT_EQ(Read(keys), 0);
  void* const none = nullptr;
  EXPECT_EQ(
      recording_.calls,
      (std::vector{CallTo("qvxmlwrapGet_String", reader, "text", &text, none, "Shift_JIS", 0)}));
}

TEST_F(PlainKeys, RefuseNullArguments) {
  Load(0, {});
  std::int32_t number = kUntouched;
  const XmlKeyDescriptor key = LongKey("number", &number);
  EXPECT_EQ(analyze_common_readxml(nullptr, &key, 1), -1);
  EXPECT_EQ(analyze_common_readxml(&context_, nullptr, 1), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(PlainKeys, AreNotReadForACountBelowOne) {
  Load(0, {.longs = {{"number", 1}}});
  std::int32_t number = kUntouched;
  const XmlKeyDescriptor key = LongKey("number", &number);
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(analyze_common_readxml(&context_, &key, count), 0) << count;
  }
  EXPECT_EQ(number, kUntouched);
}

TEST_F(PlainKeys, StopAtADocumentThatIsNotLoaded) {
  Load(0, {.longs = {{"number", 1}}});
  std::int32_t numbers[3] = {kUntouched, kUntouched, kUntouched};
  std::array keys = {LongKey("number", &numbers[0]), LongKey("number", &numbers[1]),
                     LongKey("number", &numbers[2])};
  keys[1].document = 1;
  EXPECT_EQ(Read(keys), -1);
  EXPECT_THAT(numbers, ElementsAre(1, kUntouched, kUntouched));
}

TEST_F(PlainKeys, StopAtADocumentThatThereIsNot) {
  Load(0, {.longs = {{"number", 1}}});
  Load(8, {.longs = {{"number", 1}}});
  context_.media_type_flags = &after_the_slots_;
  for (const std::intptr_t document :
       {std::intptr_t{-1}, std::intptr_t{9}, std::intptr_t{kHighest}, std::intptr_t{kLowest},
        std::numeric_limits<std::intptr_t>::min(), std::numeric_limits<std::intptr_t>::max()}) {
    std::int32_t number = kUntouched;
    std::array keys = {LongKey("number", &number)};
    keys[0].document = document;
    EXPECT_EQ(Read(keys), -1) << document;
    EXPECT_EQ(number, kUntouched);
  }
}

TEST_F(PlainKeys, ReadNoElements) {
  Load(0, {.long_elements = {{0, 1}}, .string_elements = {{0, "text"}}});
  std::int32_t number = kUntouched;
  char* text = nullptr;
  EXPECT_EQ(Read(std::array{LongElements(&number), StringElements(&text)}), 0);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

class OtherTypes : public KeyReader, public testing::WithParamInterface<std::intptr_t> {};

TEST_P(OtherTypes, StopTheReadingOfPlainKeys) {
  Load(0, {.longs = {{"number", 1}}});
  std::int32_t numbers[2] = {kUntouched, kUntouched};
  char buffer[64] = {};
  std::int32_t count = 0;
  const XmlKeyDescriptor other = {0, "number", GetParam(), buffer, &kUtf8, nullptr, &count};
  EXPECT_EQ(Read(std::array{LongKey("number", &numbers[0]), other, LongKey("number", &numbers[1])}),
            -1);
  EXPECT_THAT(numbers, ElementsAre(1, kUntouched));
  EXPECT_THAT(recording_.NamesOfCalls(), ElementsAre("qvxmlwrapGet_Long"));
}

INSTANTIATE_TEST_SUITE_P(KeyTypes, OtherTypes,
                         testing::Values(0, 1, 3, 5, 6, 8, 10, -1, -2, kHighest, kLowest,
                                         std::numeric_limits<std::intptr_t>::min() + 2));

// One key ----------------------------------------------------------------------------------------

class OneKey : public KeyReader {};

TEST_F(OneKey, RefusesNullArguments) {
  QvXmlReader* reader = Load(0, {});
  std::int32_t number = 0;
  const XmlKeyDescriptor key = LongKey("number", &number);
  EXPECT_EQ(analyze_common_getxmlkeydata(nullptr, reader, &key, 0), -1);
  EXPECT_EQ(analyze_common_getxmlkeydata(&context_, nullptr, &key, 0), -1);
  EXPECT_EQ(analyze_common_getxmlkeydata(&context_, reader, nullptr, 0), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(OneKey, RefusesDescriptorsThatLackWhatTheirTypeNeeds) {
  QvXmlReader* reader = Load(0, {.longs = {{"", 1}},
                                 .strings = {{"", "text"}},
                                 .long_elements = {{0, 1}},
                                 .string_elements = {{0, "text"}}});
  std::int32_t number = 0;
  char* text = nullptr;
  XmlKeyDescriptor string_key = StringKey("text", &text);
  string_key.encoding = nullptr;
  XmlKeyDescriptor string_elements = StringElements(&text);
  string_elements.encoding = nullptr;
  for (const XmlKeyDescriptor& key :
       {LongKey(nullptr, &number), LongKey("number", nullptr), StringKey(nullptr, &text),
        StringKey("text", nullptr), string_key, LongElements(nullptr), StringElements(nullptr),
        string_elements}) {
    EXPECT_EQ(ReadOne(reader, key, 1), -1) << key.type;
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(OneKey, ReadsAPlainValueWhateverTheNumberOfElements) {
  QvXmlReader* reader = Load(0, {.longs = {{"number", 8}}});
  for (const std::int32_t elements : {-1, 0, 1, kHighest}) {
    std::int32_t number = 0;
    EXPECT_EQ(ReadOne(reader, LongKey("number", &number), elements), 0);
    EXPECT_EQ(number, 8);
  }
}

TEST_F(OneKey, IsReadFromTheGivenReaderNotFromItsDocument) {
  Load(0, {.longs = {{"number", 1}}});
  QvXmlReader* reader = recording_.Open({.longs = {{"number", 2}}});
  std::int32_t number = 0;
  EXPECT_EQ(ReadOne(reader, LongKey("number", &number), 0), 0);
  EXPECT_EQ(number, 2);
}

TEST_F(OneKey, ReadsElementsByTheirPosition) {
  QvXmlReader* reader = Load(0, {.long_elements = {{0, 10}, {1, kLowest}, {2, kHighest}, {3, 13}}});
  std::int32_t numbers[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
  EXPECT_EQ(ReadOne(reader, LongElements(numbers), 3), 0);
  EXPECT_THAT(numbers, ElementsAre(10, kLowest, kHighest, kUntouched));
  EXPECT_THAT(recording_.calls,
              ElementsAre(CallTo("qvxmlwrapGet_LongFromArray", reader, 0, &numbers[0], 0),
                          CallTo("qvxmlwrapGet_LongFromArray", reader, 1, &numbers[1], 0),
                          CallTo("qvxmlwrapGet_LongFromArray", reader, 2, &numbers[2], 0)));
}

TEST_F(OneKey, KeepsTheDestinationsOfMissingNumbers) {
  QvXmlReader* reader = Load(0, {.long_elements = {{1, 11}}});
  std::int32_t numbers[3] = {kUntouched, kUntouched, kUntouched};
  EXPECT_EQ(ReadOne(reader, LongElements(numbers), 3), 0);
  EXPECT_THAT(numbers, ElementsAre(kUntouched, 11, kUntouched));
}

TEST_F(OneKey, CopiesTextsOfElements) {
  const std::string long_text(100 * 1024, 'y');
  QvXmlReader* reader =
      Load(0, {.string_elements = {{0, "first"}, {1, ""}, {2, long_text}, {3, "beyond"}}});
  std::array<Text, 4> texts;
  std::array<char*, 4> destinations = {};
  EXPECT_EQ(ReadOne(reader, StringElements(destinations.data(), nullptr, this), 3), 0);
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i].text = destinations[i];
  EXPECT_EQ(std::string(texts[0]), "first");
  EXPECT_EQ(std::string(texts[1]), "");
  EXPECT_EQ(std::string(texts[2]), long_text);
  EXPECT_EQ(texts[3].text, nullptr);
  ASSERT_EQ(recording_.calls.size(), 3U);
  for (std::int32_t k = 0; k < 3; ++k) {
    const Call& call = recording_.calls[static_cast<std::size_t>(k)];
    EXPECT_EQ(call.name, "qvxmlwrapGet_StringFromArray");
    EXPECT_EQ(call.arguments[0], ArgumentOf(reader));
    EXPECT_EQ(call.arguments[1], ArgumentOf(k));
    EXPECT_EQ(call.arguments[3], ArgumentOf(this));
    EXPECT_EQ(call.arguments[4], ArgumentOf("UTF-8"));
    EXPECT_EQ(call.arguments[5], ArgumentOf(0));
  }
}

TEST_F(OneKey, KeepsTheDestinationsOfMissingTexts) {
  QvXmlReader* reader = Load(0, {.string_elements = {{1, "there"}, {2, std::nullopt}}});
  char untouched[] = "untouched";
  std::array<char*, 4> texts = {untouched, nullptr, untouched, untouched};
  EXPECT_EQ(ReadOne(reader, StringElements(texts.data()), 4), 0);
  EXPECT_EQ(texts[0], untouched);
  EXPECT_STREQ(texts[1], "there");
  EXPECT_EQ(texts[2], untouched);
  EXPECT_EQ(texts[3], untouched);
  free(texts[1]);
}

TEST_F(OneKey, ReadsNoElementsForANumberBelowOne) {
  QvXmlReader* reader = Load(0, {.long_elements = {{0, 1}}, .string_elements = {{0, "text"}}});
  std::int32_t number = kUntouched;
  char* text = nullptr;
  for (const std::int32_t elements : {0, -1, kLowest}) {
    EXPECT_EQ(ReadOne(reader, LongElements(&number), elements), 0);
    EXPECT_EQ(ReadOne(reader, StringElements(&text), elements), 0);
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
}

class OneKeyWithCapacity : public OneKey, public testing::WithParamInterface<std::int32_t> {};

TEST_P(OneKeyWithCapacity, ReadsNoMoreElementsThanFit) {
  ScriptedDocument document;
  for (std::int32_t k = 0; k < 8; ++k) {
    document.long_elements[k] = k;
    document.string_elements[k] = std::to_string(k);
  }
  QvXmlReader* reader = Load(0, document);
  for (const std::int32_t elements : {3, 4, 5, 6, kHighest}) {
    std::array<std::int32_t, 8> numbers;
    numbers.fill(kUntouched);
    std::array<char*, 8> texts = {};
    std::int32_t capacity = GetParam();
    EXPECT_EQ(ReadOne(reader, LongElements(numbers.data(), &capacity), elements), 0);
    EXPECT_EQ(ReadOne(reader, StringElements(texts.data(), &capacity), elements), 0);
    const std::int32_t expected = std::max(0, std::min(GetParam(), elements));
    for (std::int32_t k = 0; k < 8; ++k) {
      const auto i = static_cast<std::size_t>(k);
      EXPECT_EQ(numbers[i], k < expected ? k : kUntouched) << k << " of " << elements;
      EXPECT_EQ(texts[i] != nullptr, k < expected) << k << " of " << elements;
      free(texts[i]);
    }
    EXPECT_EQ(capacity, GetParam());
  }
}

INSTANTIATE_TEST_SUITE_P(Capacities, OneKeyWithCapacity, testing::Values(4, 1, 0, -1, kLowest));

// Arrays -----------------------------------------------------------------------------------------

class Arrays : public KeyReader {};

TEST_F(Arrays, AreOpenedReadAndClosed) {
  QvXmlReader* reader =
      Load(0, {.array_counts = {{"bins", 3}}, .long_elements = {{0, 7}, {1, 8}, {2, 9}, {3, 10}}});
  std::int32_t numbers[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
  XmlKeyDescriptor element = LongElements(numbers);
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 99;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("bins", &elements, &count)}, 0), 0);
  EXPECT_EQ(count, 3);
  EXPECT_THAT(numbers, ElementsAre(7, 8, 9, kUntouched));
  EXPECT_THAT(recording_.NamesOfCalls(),
              ElementsAre("qvxmlwrapGet_ArrayCount", "qvxmlwrapGet_OpenArray",
                          "qvxmlwrapGet_LongFromArray", "qvxmlwrapGet_LongFromArray",
                          "qvxmlwrapGet_LongFromArray", "qvxmlwrapGet_CloseArray"));
  EXPECT_EQ(recording_.calls[0].arguments[1], ArgumentOf("bins"));
  EXPECT_EQ(recording_.calls[1], CallTo("qvxmlwrapGet_OpenArray", reader, "bins"));
  EXPECT_EQ(recording_.calls[5], CallTo("qvxmlwrapGet_CloseArray", reader));
}

TEST_F(Arrays, OfTextsAreCopied) {
  QvXmlReader* reader =
      Load(0, {.array_counts = {{"names", 3}}, .string_elements = {{0, "a"}, {2, "c"}, {3, "d"}}});
  std::array<char*, 4> texts = {};
  XmlKeyDescriptor element = StringElements(texts.data());
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 0;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("names", &elements, &count)}, 0), 0);
  EXPECT_EQ(count, 3);
  EXPECT_STREQ(texts[0], "a");
  EXPECT_EQ(texts[1], nullptr);
  EXPECT_STREQ(texts[2], "c");
  EXPECT_EQ(texts[3], nullptr);
  free(texts[0]);
  free(texts[2]);
}

TEST_F(Arrays, AreSkippedWhenEmptyOrMissing) {
  QvXmlReader* reader = Load(0, {.longs = {{"number", 4}}, .array_counts = {{"empty", 0}}});
  std::int32_t number = kUntouched;
  std::int32_t after = 0;
  XmlKeyDescriptor element = LongElements(&number);
  XmlKeyDescriptor* elements = &element;
  std::int32_t counts[2] = {99, 99};
  EXPECT_EQ(
      ReadNested(reader,
                 std::array{ArrayKey("empty", &elements, &counts[0]),
                            ArrayKey("missing", &elements, &counts[1]), LongKey("number", &after)},
                 0),
      0);
  EXPECT_THAT(counts, ElementsAre(0, 0));
  EXPECT_EQ(number, kUntouched);
  EXPECT_EQ(after, 4);
  EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_OpenArray"), IsEmpty());
  EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_CloseArray"), IsEmpty());
}

TEST_F(Arrays, OfNegativeLengthHaveNoElements) {
  for (const std::int32_t length : {-1, kLowest}) {
    QvXmlReader* reader =
        Load(0, {.array_counts = {{"bins", length}}, .long_elements = {{0, 1}, {-1, 1}}});
    std::int32_t numbers[3] = {kUntouched, kUntouched, kUntouched};
    XmlKeyDescriptor element = LongElements(&numbers[1]);
    XmlKeyDescriptor* elements = &element;
    std::int32_t count = 99;
    EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("bins", &elements, &count)}, 0), 0);
    EXPECT_THAT(numbers, Each(kUntouched));
    EXPECT_LE(count, 0);
  }
}

TEST_F(Arrays, AreEnteredEvenWhenOpeningFails) {
  QvXmlReader* reader = Load(0, {.array_counts = {{"bins", 1}}, .long_elements = {{0, 7}}});
  recording_.results["qvxmlwrapGet_OpenArray"] = 0;
  std::int32_t number = kUntouched;
  XmlKeyDescriptor element = LongElements(&number);
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 0;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("bins", &elements, &count)}, 0), 0);
  EXPECT_EQ(number, 7);
  EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_CloseArray").size(), 1U);
}

TEST_F(Arrays, AreLeftWhenTheirElementsCannotBeRead) {
  QvXmlReader* reader = Load(0, {.longs = {{"number", 4}}, .array_counts = {{"bins", 1}}});
  std::int32_t after = kUntouched;
  XmlKeyDescriptor element = {0, "x", 3, &after, nullptr, nullptr, nullptr};
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 0;
  EXPECT_EQ(
      ReadNested(reader, std::array{ArrayKey("bins", &elements, &count), LongKey("number", &after)},
                 0),
      -1);
  EXPECT_EQ(after, kUntouched);
  EXPECT_THAT(
      recording_.NamesOfCalls(),
      ElementsAre("qvxmlwrapGet_ArrayCount", "qvxmlwrapGet_OpenArray", "qvxmlwrapGet_CloseArray"));
}

TEST_F(Arrays, OfArraysHandTheirLengthDown) {
  QvXmlReader* reader = Load(
      0, {.array_counts = {{"outer", 2}, {"inner", 3}}, .long_elements = {{0, 7}, {1, 8}, {2, 9}}});
  std::int32_t numbers[3] = {};
  std::int32_t counts[2] = {};
  XmlKeyDescriptor element = LongElements(numbers);
  XmlKeyDescriptor* elements = &element;
  XmlKeyDescriptor inner = ArrayKey("inner", &elements, &counts[1]);
  XmlKeyDescriptor* inners = &inner;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("outer", &inners, &counts[0])}, 0), 0);
  EXPECT_THAT(counts, ElementsAre(2, 3));
  EXPECT_THAT(numbers, ElementsAre(7, 8, 9));
}

TEST_F(Arrays, OfDictionariesEnterTheOneAtTheirLength) {
  QvXmlReader* reader = Load(0, {.array_counts = {{"outer", 2}}});
  std::int32_t number = 0;
  XmlKeyDescriptor nested = LongKey("number", &number);
  XmlKeyDescriptor* nested_keys = &nested;
  std::int32_t one = 1;
  XmlKeyDescriptor dictionary = DictionaryKey("inner", &nested_keys, &one);
  XmlKeyDescriptor* dictionaries = &dictionary;
  std::int32_t count = 0;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("outer", &dictionaries, &count)}, 0), 0);
  EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_OpenDict"),
            (std::vector{CallTo("qvxmlwrapGet_OpenDict", reader, "inner", 2)}));
}

class LyingArrays : public Arrays, public testing::WithParamInterface<std::int32_t> {};

TEST_P(LyingArrays, WriteNothingBeyondTheRoomForNumbers) {
  ScriptedDocument document = {.array_counts = {{"bins", GetParam()}}};
  for (std::int32_t k = -2; k < 16; ++k) document.long_elements[k] = k;
  QvXmlReader* reader = Load(0, document);
  std::array<std::int32_t, 8> values;
  values.fill(kUntouched);
  std::int32_t capacity = 4;
  XmlKeyDescriptor element = LongElements(&values[2], &capacity);
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 99;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("bins", &elements, &count)}, 0), 0);
  const std::int32_t expected = std::max(0, std::min(4, GetParam()));
  EXPECT_EQ(std::max(0, count), expected);
  for (std::int32_t k = -2; k < 6; ++k) {
    EXPECT_EQ(values[static_cast<std::size_t>(k + 2)], k >= 0 && k < expected ? k : kUntouched)
        << k;
  }
  EXPECT_EQ(capacity, 4);
}

TEST_P(LyingArrays, WriteNothingBeyondTheRoomForTexts) {
  ScriptedDocument document = {.array_counts = {{"names", GetParam()}}};
  for (std::int32_t k = -2; k < 16; ++k) document.string_elements[k] = std::to_string(k);
  QvXmlReader* reader = Load(0, document);
  std::array<char*, 8> values = {};
  std::int32_t capacity = 4;
  XmlKeyDescriptor element = StringElements(&values[2], &capacity);
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 99;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("names", &elements, &count)}, 0), 0);
  const std::int32_t expected = std::max(0, std::min(4, GetParam()));
  EXPECT_EQ(std::max(0, count), expected);
  for (std::int32_t k = -2; k < 6; ++k) {
    char*& text = values[static_cast<std::size_t>(k + 2)];
    EXPECT_EQ(text != nullptr, k >= 0 && k < expected) << k;
    free(text);
  }
}

INSTANTIATE_TEST_SUITE_P(Lengths, LyingArrays,
                         testing::Values(kLowest, -1, 0, 1, 3, 4, 5, 8, kHighest));

TEST_F(Arrays, MissTheElementsThatTheLibraryDoesNotHave) {
  QvXmlReader* reader = Load(0, {.array_counts = {{"bins", 4}}, .long_elements = {{2, 9}}});
  std::int32_t numbers[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
  std::int32_t capacity = 4;
  XmlKeyDescriptor element = LongElements(numbers, &capacity);
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 0;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("bins", &elements, &count)}, 0), 0);
  EXPECT_EQ(count, 4);
  EXPECT_THAT(numbers, ElementsAre(kUntouched, kUntouched, 9, kUntouched));
}

TEST_F(Arrays, RefuseDescriptorsWithoutElements) {
  QvXmlReader* reader = Load(0, {.array_counts = {{"bins", 1}}});
  std::int32_t count = 0;
  XmlKeyDescriptor* none = nullptr;
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("bins", nullptr, &count)}, 0), -1);
  EXPECT_EQ(ReadNested(reader, std::array{ArrayKey("bins", &none, &count)}, 0), -1);
}

// Dictionaries -----------------------------------------------------------------------------------

class Dictionaries : public KeyReader {};

TEST_F(Dictionaries, AreEnteredReadAndLeft) {
  QvXmlReader* reader = Load(0, {.longs = {{"id", 3}}, .strings = {{"type", "tray"}}});
  std::int32_t id = 0;
  Text type;
  std::array nested = {LongKey("id", &id), StringKey("type", &type.text, &type)};
  XmlKeyDescriptor* nested_keys = nested.data();
  std::int32_t nested_count = 2;
  EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", &nested_keys, &nested_count)}, 6),
            0);
  EXPECT_EQ(id, 3);
  EXPECT_EQ(std::string(type), "tray");
  EXPECT_EQ(nested_count, 2);
  EXPECT_THAT(recording_.calls, ElementsAre(CallTo("qvxmlwrapGet_OpenDict", reader, "list", 6),
                                            CallTo("qvxmlwrapGet_Long", reader, "id", &id, 0),
                                            CallTo("qvxmlwrapGet_String", reader, "type",
                                                   &type.text, &type, "UTF-8", 0),
                                            CallTo("qvxmlwrapGet_CloseDict", reader)));
}

TEST_F(Dictionaries, InsideOthersAreTheFirstOfTheirKey) {
  QvXmlReader* reader = Load(0, {});
  std::int32_t number = 0;
  XmlKeyDescriptor deepest = LongKey("number", &number);
  XmlKeyDescriptor* deepest_keys = &deepest;
  std::int32_t one = 1;
  std::array middle = {DictionaryKey("inner", &deepest_keys, &one),
                       DictionaryKey("second", &deepest_keys, &one)};
  XmlKeyDescriptor* middle_keys = middle.data();
  std::int32_t two = 2;
  EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", &middle_keys, &two)}, 5), 0);
  EXPECT_THAT(recording_.calls,
              ElementsAre(CallTo("qvxmlwrapGet_OpenDict", reader, "list", 5),
                          CallTo("qvxmlwrapGet_OpenDict", reader, "inner", 0),
                          CallTo("qvxmlwrapGet_Long", reader, "number", &number, 0),
                          CallTo("qvxmlwrapGet_CloseDict", reader),
                          CallTo("qvxmlwrapGet_OpenDict", reader, "second", 0),
                          CallTo("qvxmlwrapGet_Long", reader, "number", &number, 0),
                          CallTo("qvxmlwrapGet_CloseDict", reader),
                          CallTo("qvxmlwrapGet_CloseDict", reader)));
}

TEST_F(Dictionaries, HoldArrays) {
  QvXmlReader* reader = Load(0, {.array_counts = {{"bins", 2}}, .long_elements = {{0, 7}, {1, 8}}});
  std::int32_t numbers[2] = {};
  XmlKeyDescriptor element = LongElements(numbers);
  XmlKeyDescriptor* elements = &element;
  std::int32_t count = 0;
  XmlKeyDescriptor array = ArrayKey("bins", &elements, &count);
  XmlKeyDescriptor* nested = &array;
  std::int32_t one = 1;
  EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", &nested, &one)}, 1), 0);
  EXPECT_THAT(numbers, ElementsAre(7, 8));
  EXPECT_EQ(recording_.NamesOfCalls().front(), "qvxmlwrapGet_OpenDict");
  EXPECT_EQ(recording_.NamesOfCalls().back(), "qvxmlwrapGet_CloseDict");
}

TEST_F(Dictionaries, ReadNoElementsDirectly) {
  QvXmlReader* reader = Load(0, {.long_elements = {{0, 7}}});
  std::int32_t number = kUntouched;
  XmlKeyDescriptor element = LongElements(&number);
  XmlKeyDescriptor* nested = &element;
  std::int32_t one = 1;
  EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", &nested, &one)}, 4), 0);
  EXPECT_EQ(number, kUntouched);
}

TEST_F(Dictionaries, AreEnteredEvenWhenOpeningFails) {
  QvXmlReader* reader = Load(0, {.longs = {{"id", 3}}});
  recording_.results["qvxmlwrapGet_OpenDict"] = 0;
  std::int32_t id = 0;
  XmlKeyDescriptor nested = LongKey("id", &id);
  XmlKeyDescriptor* nested_keys = &nested;
  std::int32_t one = 1;
  EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", &nested_keys, &one)}, 0), 0);
  EXPECT_EQ(id, 3);
  EXPECT_THAT(recording_.NamesOfCalls(),
              ElementsAre("qvxmlwrapGet_OpenDict", "qvxmlwrapGet_Long", "qvxmlwrapGet_CloseDict"));
}

TEST_F(Dictionaries, AreLeftWhenTheirKeysCannotBeRead) {
  QvXmlReader* reader = Load(0, {.longs = {{"id", 3}}});
  std::int32_t id = kUntouched;
  std::int32_t after = kUntouched;
  std::array nested = {XmlKeyDescriptor{0, "id", 3, &id, nullptr, nullptr, nullptr},
                       LongKey("id", &id)};
  XmlKeyDescriptor* nested_keys = nested.data();
  std::int32_t two = 2;
  EXPECT_EQ(
      ReadNested(reader,
                 std::array{DictionaryKey("list", &nested_keys, &two), LongKey("id", &after)}, 0),
      -1);
  EXPECT_EQ(id, kUntouched);
  EXPECT_EQ(after, kUntouched);
  EXPECT_THAT(recording_.NamesOfCalls(),
              ElementsAre("qvxmlwrapGet_OpenDict", "qvxmlwrapGet_CloseDict"));
}

TEST_F(Dictionaries, WithoutKeysAreEnteredAndLeft) {
  QvXmlReader* reader = Load(0, {.longs = {{"id", 3}}});
  for (std::int32_t count : {0, -1, kLowest}) {
    recording_.calls.clear();
    std::int32_t id = kUntouched;
    XmlKeyDescriptor nested = LongKey("id", &id);
    XmlKeyDescriptor* nested_keys = &nested;
    EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", &nested_keys, &count)}, 0), 0);
    EXPECT_EQ(id, kUntouched);
    EXPECT_THAT(recording_.NamesOfCalls(),
                ElementsAre("qvxmlwrapGet_OpenDict", "qvxmlwrapGet_CloseDict"));
  }
}

TEST_F(Dictionaries, RefuseDescriptorsWithoutKeys) {
  QvXmlReader* reader = Load(0, {});
  std::int32_t one = 1;
  XmlKeyDescriptor* none = nullptr;
  EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", nullptr, &one)}, 0), -1);
  EXPECT_EQ(ReadNested(reader, std::array{DictionaryKey("list", &none, &one)}, 0), -1);
}

// Any keys ---------------------------------------------------------------------------------------

class NestedKeys : public KeyReader {};

TEST_F(NestedKeys, RefuseNullArguments) {
  QvXmlReader* reader = Load(0, {});
  std::int32_t number = 0;
  const XmlKeyDescriptor key = LongKey("number", &number);
  EXPECT_EQ(analyze_common_getxmloneinfo(nullptr, reader, &key, 1, 0), -1);
  EXPECT_EQ(analyze_common_getxmloneinfo(&context_, nullptr, &key, 1, 0), -1);
  EXPECT_EQ(analyze_common_getxmloneinfo(&context_, reader, nullptr, 1, 0), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(NestedKeys, AreNotReadForACountBelowOne) {
  QvXmlReader* reader = Load(0, {});
  std::int32_t number = 0;
  const XmlKeyDescriptor key = LongKey("number", &number);
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(analyze_common_getxmloneinfo(&context_, reader, &key, count, 0), 0);
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(NestedKeys, TakeTheIndexAsNumberOfElements) {
  QvXmlReader* reader =
      Load(0, {.long_elements = {{0, 7}, {1, 8}, {2, 9}}, .string_elements = {{0, "a"}}});
  std::int32_t numbers[3] = {kUntouched, kUntouched, kUntouched};
  std::array<char*, 2> texts = {};
  EXPECT_EQ(ReadNested(reader, std::array{LongElements(numbers), StringElements(texts.data())}, 2),
            0);
  EXPECT_THAT(numbers, ElementsAre(7, 8, kUntouched));
  EXPECT_STREQ(texts[0], "a");
  EXPECT_EQ(texts[1], nullptr);
  free(texts[0]);
}

TEST_F(NestedKeys, StopAtAnUnknownType) {
  QvXmlReader* reader = Load(0, {.longs = {{"number", 4}}});
  std::int32_t numbers[2] = {kUntouched, kUntouched};
  const XmlKeyDescriptor unknown = {0, "number", 3, &numbers[1], nullptr, nullptr, nullptr};
  EXPECT_EQ(
      ReadNested(
          reader,
          std::array{LongKey("number", &numbers[0]), unknown, LongKey("number", &numbers[1])}, 0),
      -1);
  EXPECT_THAT(numbers, ElementsAre(4, kUntouched));
}

// Items of lists ---------------------------------------------------------------------------------

class ListItems : public KeyReader {};

TEST_F(ListItems, AreEnteredByTheirIndex) {
  QvXmlReader* reader = Load(3, {.longs = {{"id", 3}}});
  std::int32_t id = 0;
  XmlKeyDescriptor nested = LongKey("id", &id);
  XmlKeyDescriptor* nested_keys = &nested;
  std::int32_t one = 1;
  XmlKeyDescriptor list = DictionaryKey("list", &nested_keys, &one);
  list.document = 3;
  for (const std::int32_t index : {0, 1, 17}) {
    recording_.calls.clear();
    id = 0;
    EXPECT_EQ(ReadItem(list, index), 0);
    EXPECT_EQ(id, 3);
    EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_OpenDict"),
              (std::vector{CallTo("qvxmlwrapGet_OpenDict", reader, "list", index)}));
  }
}

TEST_F(ListItems, AreReadFromTheDocumentsOfTheirDescriptors) {
  Load(4, {.longs = {{"number", 4}}});
  Load(5, {.longs = {{"number", 5}}});
  std::int32_t numbers[2] = {};
  std::array keys = {LongKey("number", &numbers[0]), LongKey("number", &numbers[1])};
  keys[0].document = 5;
  keys[1].document = 4;
  EXPECT_EQ(analyze_common_readxml_for_list(&context_, keys.data(), 2, 0), 0);
  EXPECT_THAT(numbers, ElementsAre(5, 4));
}

TEST_F(ListItems, StopAtTheFirstFailure) {
  Load(3, {.longs = {{"number", 4}}});
  std::int32_t numbers[3] = {kUntouched, kUntouched, kUntouched};
  std::array keys = {LongKey("number", &numbers[0]), LongKey("number", &numbers[1]),
                     LongKey("number", &numbers[2])};
  keys[0].document = keys[2].document = 3;
  keys[1].document = 4;
  EXPECT_EQ(analyze_common_readxml_for_list(&context_, keys.data(), 3, 0), -1);
  EXPECT_THAT(numbers, ElementsAre(4, kUntouched, kUntouched));
}

TEST_F(ListItems, RefuseNullArguments) {
  Load(0, {});
  std::int32_t number = 0;
  const XmlKeyDescriptor key = LongKey("number", &number);
  EXPECT_EQ(analyze_common_readxml_for_list(nullptr, &key, 1, 0), -1);
  EXPECT_EQ(analyze_common_readxml_for_list(&context_, nullptr, 1, 0), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(ListItems, RefuseDocumentsThatThereAreNot) {
  for (const std::intptr_t document : {std::intptr_t{-1}, std::intptr_t{0}, std::intptr_t{9},
                                       std::numeric_limits<std::intptr_t>::max()}) {
    std::int32_t number = 0;
    XmlKeyDescriptor key = LongKey("number", &number);
    key.document = document;
    EXPECT_EQ(ReadItem(key, 0), -1) << document;
  }
}

TEST_F(ListItems, AreNotReadForACountBelowOne) {
  Load(0, {});
  std::int32_t number = 0;
  const XmlKeyDescriptor key = LongKey("number", &number);
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(analyze_common_readxml_for_list(&context_, &key, count, 0), 0);
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
}

// The whole way over a real document -------------------------------------------------------------

constexpr char kTrays[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<document version="1">
  <dict key="list">
    <long key="id">1</long>
    <string key="type">Cassette</string>
  </dict>
  <dict key="list">
    <long key="id">2</long>
    <string key="type">Deck &#xE4; &amp; more</string>
    <array key="sizes"><long>297</long><long>-5</long></array>
    <array key="names"><string>A4</string><string></string><string>B5</string></array>
    <dict key="inner"><long key="depth">7</long></dict>
  </dict>
</document>
)";

class RealDocument : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr) << ia_test::kReferenceDriver;
    folder_.Write("Tray_list.xml", kTrays);
    context_.bidi = bidi_.get();
    context_.xml_folder = folder_.path().c_str();
    ASSERT_EQ(analyze_common_create_xmldata(&context_, IA_DOCUMENT_TRAY_LIST), 0);
  }
  void TearDown() override { analyze_common_destroy_all_xmldata(&context_); }

  TempFolder folder_;
  BidiPtr bidi_{Bidi_Create(ia_test::kReferenceDriver)};
  AnalyzeContext context_ = {};
};

TEST_F(RealDocument, HasItsListCounted) {
  EXPECT_EQ(context_.documents[IA_DOCUMENT_TRAY_LIST].count, 2);
}

TEST_F(RealDocument, IsReadItemByItem) {
  std::int32_t id = kUntouched;
  std::int32_t depth = kUntouched;
  Text type;
  std::int32_t sizes[4] = {kUntouched, kUntouched, kUntouched, kUntouched};
  std::array<Text, 4> names;
  std::array<char*, 4> name_texts = {};
  std::int32_t capacity = 4;
  std::int32_t counts[2] = {99, 99};
  std::int32_t one = 1;
  XmlKeyDescriptor size = LongElements(sizes, &capacity);
  XmlKeyDescriptor* size_elements = &size;
  XmlKeyDescriptor name = StringElements(name_texts.data(), &capacity);
  XmlKeyDescriptor* name_elements = &name;
  XmlKeyDescriptor inner = LongKey("depth", &depth);
  XmlKeyDescriptor* inner_keys = &inner;
  std::array nested = {LongKey("id", &id), StringKey("type", &type.text),
                       ArrayKey("sizes", &size_elements, &counts[0]),
                       ArrayKey("names", &name_elements, &counts[1]),
                       DictionaryKey("inner", &inner_keys, &one)};
  XmlKeyDescriptor* nested_keys = nested.data();
  std::int32_t nested_count = nested.size();
  XmlKeyDescriptor list = DictionaryKey("list", &nested_keys, &nested_count);
  list.document = IA_DOCUMENT_TRAY_LIST;

  EXPECT_EQ(analyze_common_readxml_for_list(&context_, &list, 1, 0), 0);
  EXPECT_EQ(id, 1);
  EXPECT_EQ(std::string(type), "Cassette");
  EXPECT_THAT(counts, ElementsAre(0, 0));
  EXPECT_THAT(sizes, Each(kUntouched));
  EXPECT_EQ(depth, kUntouched);

  free(type.text);
  type.text = nullptr;
  EXPECT_EQ(analyze_common_readxml_for_list(&context_, &list, 1, 1), 0);
  for (std::size_t i = 0; i < names.size(); ++i) names[i].text = name_texts[i];
  EXPECT_EQ(id, 2);
  EXPECT_EQ(std::string(type), "Deck \xC3\xA4 & more");
  EXPECT_THAT(counts, ElementsAre(2, 3));
  EXPECT_THAT(sizes, ElementsAre(297, -5, kUntouched, kUntouched));
  EXPECT_EQ(std::string(names[0]), "A4");
  EXPECT_EQ(std::string(names[1]), "");
  EXPECT_EQ(std::string(names[2]), "B5");
  EXPECT_EQ(names[3].text, nullptr);
  EXPECT_EQ(depth, 7);
}

TEST_F(RealDocument, HasNothingAfterItsLastItem) {
  std::int32_t id = kUntouched;
  XmlKeyDescriptor nested = LongKey("id", &id);
  XmlKeyDescriptor* nested_keys = &nested;
  std::int32_t one = 1;
  XmlKeyDescriptor list = DictionaryKey("list", &nested_keys, &one);
  list.document = IA_DOCUMENT_TRAY_LIST;
  for (const std::int32_t index : {2, -1, kHighest}) {
    EXPECT_EQ(analyze_common_readxml_for_list(&context_, &list, 1, index), 0);
    EXPECT_EQ(id, kUntouched) << index;
  }
  EXPECT_EQ(analyze_common_readxml_for_list(&context_, &list, 1, 1), 0);
  EXPECT_EQ(id, 2);
}

}  // namespace
}  // namespace ia_test
