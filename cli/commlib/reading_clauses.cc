#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "cli/commlib/clauses.h"
#include "cli/commlib/reader.h"
#include "cli/commlib/sample_document.h"
#include "cli/commlib/trial.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

// Lists
// --------------------------------------------------------------------------------------------

void TryListCount(Trial& trial) { OpenSample(trial).DictCount("list", "3"); }

void TryMissingList(Trial& trial) { OpenSample(trial).DictCount("absent", kMissing); }

void TryItems(Trial& trial) {
  const Reader reader = OpenSample(trial);
  for (const std::int32_t item : {2, 0, 1, 1}) {
    reader.OpenDict("list", item, true);
    reader.Text("name", Quoted("item " + std::to_string(item)));
    reader.CloseDict();
  }
}

void TryItemBeyond(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenDict("list", kSampleItems, false);
  reader.Long("number", kMissing);
  reader.CloseDict();
  reader.Long("number", "42");
}

void TryNegativeItem(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenDict("list", -1, false);
  reader.CloseDict();
  reader.Long("number", "42");
}

void TryFailedOpenDict(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenDict("absent", 0, false);
  reader.Long("number", kMissing);
  reader.DictCount("list", kMissing);
  reader.CloseDict();
  reader.Long("number", "42");
}

void TryCloseDict(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenDict("list", 1, true);
  reader.Long("number", "101");
  reader.CloseDict();
  reader.Long("number", "42");
}

void TryCloseTooMany(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.CloseDict(-1);
  reader.CloseArray(-1);
  ExpectSample(reader);
}

// Values
// -------------------------------------------------------------------------------------------

void TryLong(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.Long("number", "42");
  reader.Long("lowest", "-2147483648");
  reader.Long("highest", "2147483647");
}

void TryMissingLong(Trial& trial) { OpenSample(trial).Long("absent", kMissing); }

void TryDouble(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.Double("ratio", "-1.5");
  reader.Double("absent", kMissing);
}

void TryText(Trial& trial) { OpenSample(trial).Text("text", Quoted(kSampleText)); }

void TryEmptyText(Trial& trial) { OpenSample(trial).Text("empty", Quoted("")); }

void TryMissingText(Trial& trial) { OpenSample(trial).Text("absent", kMissing); }

// Each call writes over its text and releases it. See BlockAnswer().
void TryOwnedText(Trial& trial) {
  const Reader reader = OpenSample(trial);
  for (int i = 0; i < 3; ++i) {
    reader.Text("text", Quoted(kSampleText));
    reader.Text("empty", Quoted(""));
  }
  char* text = nullptr;
  trial.Begin("qvxmlwrapGet_String() of text, released after its reader");
  (void)Bidi_qvxmlwrapGet_String(&reader.library(), reader.handle(), "text", &text, nullptr, kUtf8,
                                 0);
  reader.Destroy();
  trial.Expect(Quoted(text != nullptr ? text : "NULL"), Quoted(kSampleText));
  std::free(text);
}

void TryEncoding(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.Text("text", kMissing, "no such encoding");
  reader.Text("text", Quoted(kSampleText));
}

void TryBinary(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.Binary("bytes", Quoted(SampleBytes()));
  reader.Binary("absent", kMissing);
}

void TryWrongType(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.Long("text", kMissing);
  reader.Long("numbers", kMissing);
  reader.Text("number", kMissing);
  reader.Double("text", kMissing);
  reader.Binary("number", kMissing);
  reader.ArrayCount("number", kMissing);
  reader.DictCount("number", kMissing);
}

// Arrays
// -------------------------------------------------------------------------------------------

void TryArrayCount(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.ArrayCount("numbers", "3");
  reader.ArrayCount("mixed", "4");
}

void TryEmptyArray(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.ArrayCount("nothing", "0");
  reader.OpenArray("nothing", true);
  reader.LongAt(0, kMissing);
  reader.CloseArray();
}

void TryMissingArray(Trial& trial) { OpenSample(trial).ArrayCount("absent", kMissing); }

void TryElements(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenArray("numbers", true);
  reader.LongAt(0, "7");
  reader.LongAt(1, "-8");
  reader.LongAt(2, "9");
  reader.LongAt(0, "7");
  reader.CloseArray();
  reader.OpenArray("texts", true);
  reader.TextAt(0, Quoted("one"));
  reader.TextAt(1, Quoted(""));
  reader.TextAt(2, Quoted("three"));
  reader.CloseArray();
}

void TryMixedElements(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenArray("mixed", true);
  reader.LongAt(0, "1");
  reader.LongAt(1, kMissing);
  reader.TextAt(0, kMissing);
  reader.TextAt(1, Quoted("two"));
  reader.DoubleAt(2, "2.5");
  reader.BinaryAt(3, Quoted(SampleBytes()));
  reader.CloseArray();
}

void TryElementBeyond(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenArray("numbers", true);
  for (const std::int32_t index : {3, 1000000, -1}) reader.LongAt(index, kMissing);
  reader.CloseArray();
  reader.OpenArray("texts", true);
  for (const std::int32_t index : {3, 1000000, -1}) reader.TextAt(index, kMissing);
  reader.CloseArray();
}

void TryFailedOpenArray(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenArray("absent", false);
  reader.LongAt(0, kMissing);
  reader.Long("number", kMissing);
  reader.CloseArray();
  reader.Long("number", "42");
}

void TryCloseArray(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenDict("list", 1, true);
  reader.OpenArray("codes", true);
  reader.LongAt(0, "1");
  reader.CloseArray();
  reader.Long("number", "101");
  reader.CloseDict();
  reader.Long("number", "42");
}

// Null arguments
// -----------------------------------------------------------------------------------

void TryNullReader(Trial& trial) {
  const Reader reader(trial, nullptr);
  reader.DictCount("list", kMissing);
  reader.OpenDict("list", 0, false);
  reader.CloseDict(-1);
  reader.Long("number", kMissing);
  reader.Double("ratio", kMissing);
  reader.Text("text", kMissing);
  reader.Binary("bytes", kMissing);
  reader.ArrayCount("numbers", kMissing);
  reader.OpenArray("numbers", false);
  reader.LongAt(0, kMissing);
  reader.DoubleAt(0, kMissing);
  reader.TextAt(0, kMissing);
  reader.BinaryAt(0, kMissing);
  reader.CloseArray(-1);
  reader.Destroy(-1);
}

void TryNullKey(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.DictCount(nullptr, kMissing);
  reader.Long(nullptr, kMissing);
  reader.Double(nullptr, kMissing);
  reader.Text(nullptr, kMissing);
  reader.Binary(nullptr, kMissing);
  reader.ArrayCount(nullptr, kMissing);
  reader.OpenDict(nullptr, 0, false);
  reader.CloseDict();
  reader.OpenArray(nullptr, false);
  reader.CloseArray();
  reader.Long("number", "42");
}

void TryNullOutput(Trial& trial) {
  const Reader reader = OpenSample(trial);
  BidiContext* const library = &reader.library();
  QvXmlReader* const handle = reader.handle();
  trial.Begin("qvxmlwrapGet_DictCount() into NULL");
  trial.Expect(std::to_string(Bidi_qvxmlwrapGet_DictCount(library, handle, "list", nullptr)), "0");
  trial.Begin("qvxmlwrapGet_Long() into NULL");
  trial.Expect(std::to_string(Bidi_qvxmlwrapGet_Long(library, handle, "number", nullptr, 0)), "0");
  trial.Begin("qvxmlwrapGet_String() into NULL");
  trial.Expect(
      std::to_string(Bidi_qvxmlwrapGet_String(library, handle, "text", nullptr, nullptr, kUtf8, 0)),
      "0");
  trial.Begin("qvxmlwrapGet_ArrayCount() into NULL");
  trial.Expect(std::to_string(Bidi_qvxmlwrapGet_ArrayCount(library, handle, "numbers", nullptr)),
               "0");
}

// With a null encoding the library may give the text or not.
void TryNullEncoding(Trial& trial) {
  const Reader reader = OpenSample(trial);
  trial.Begin("qvxmlwrapGet_String() with the encoding NULL");
  char* text = nullptr;
  (void)Bidi_qvxmlwrapGet_String(&reader.library(), reader.handle(), "text", &text, nullptr,
                                 nullptr, 0);
  std::free(text);
}

constexpr auto kClauses = std::to_array<Clause>({
    {"list.count", "qvxmlwrapGet_DictCount() counts the dictionaries under a key", TryListCount},
    {"list.missing", "qvxmlwrapGet_DictCount() of a missing key stores nothing", TryMissingList},
    {"list.items", "Items of a list are entered by their numbers, in any order", TryItems},
    {"list.beyond", "No item is entered beyond the last", TryItemBeyond},
    {"list.negative", "No item is entered by a negative number", TryNegativeItem},
    {"list.failed-open", "A dictionary that cannot be entered is empty until it is closed",
     TryFailedOpenDict},
    {"list.close", "qvxmlwrapGet_CloseDict() returns 0 and goes back", TryCloseDict},
    {"list.close-too-many", "Without an open level, closing fails and changes nothing",
     TryCloseTooMany},
    {"value.long", "Numbers of 32 bits are read exactly", TryLong},
    {"value.long-missing", "A missing number stores nothing", TryMissingLong},
    {"value.double", "Floating-point numbers are read exactly", TryDouble},
    {"value.text", "Texts are read exactly, in UTF-8", TryText},
    {"value.text-empty", "An empty text is a text", TryEmptyText},
    {"value.text-missing", "A missing text stores nothing", TryMissingText},
    {"value.text-owned", "Each text is a block of malloc() that the caller owns", TryOwnedText},
    {"value.encoding", "A text in an unknown encoding counts as missing", TryEncoding},
    {"value.binary", "Bytes are read exactly", TryBinary},
    {"value.wrong-type", "A value of a different type counts as missing", TryWrongType},
    {"array.count", "qvxmlwrapGet_ArrayCount() counts the elements", TryArrayCount},
    {"array.empty", "An empty array has 0 elements, and is entered", TryEmptyArray},
    {"array.missing", "qvxmlwrapGet_ArrayCount() of a missing key stores nothing", TryMissingArray},
    {"array.elements", "Elements are read by their positions, in any order", TryElements},
    {"array.mixed", "An element of a different type counts as missing", TryMixedElements},
    {"array.beyond", "No element is read outside the array", TryElementBeyond},
    {"array.failed-open", "An array that cannot be entered is empty until it is closed",
     TryFailedOpenArray},
    {"array.close", "qvxmlwrapGet_CloseArray() returns 0 and goes back", TryCloseArray},
    {"null.reader", "Functions of a reader fail for the reader NULL", TryNullReader},
    {"null.key", "The key NULL counts as missing", TryNullKey},
    {"null.output", "Nothing is stored at the address NULL", TryNullOutput},
    {"null.encoding", "The encoding NULL does no harm", TryNullEncoding},
});

}  // namespace

std::span<const Clause> ReadingClauses() { return kClauses; }

}  // namespace ia::cli
