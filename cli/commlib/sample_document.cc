#include "cli/commlib/sample_document.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "cli/commlib/reader.h"
#include "cli/commlib/trial.h"
#include "cli/printer/handles.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

// In the format of docs/document-format.md.
constexpr const char* kXml = R"(<?xml version="1.0" encoding="UTF-8"?>
<document version="1">
  <long key="number">42</long>
  <long key="lowest">-2147483648</long>
  <long key="highest">2147483647</long>
  <double key="ratio">-1.5</double>
  <string key="text"> &lt;A> &amp; "B"
	Grüße 日本 </string>
  <string key="empty"></string>
  <binary key="bytes">AAH/AA==</binary>
  <array key="numbers"><long>7</long><long>-8</long><long>9</long></array>
  <array key="texts"><string>one</string><string></string><string>three</string></array>
  <array key="mixed"><long>1</long><string>two</string><double>2.5</double>
    <binary>AAH/AA==</binary></array>
  <array key="nothing"></array>
  <dict key="list">
    <string key="name">item 0</string><long key="number">100</long>
    <array key="codes"><long>0</long></array>
  </dict>
  <dict key="list">
    <string key="name">item 1</string><long key="number">101</long>
    <array key="codes"><long>1</long></array>
  </dict>
  <dict key="list">
    <string key="name">item 2</string><long key="number">102</long>
    <array key="codes"><long>2</long></array>
  </dict>
</document>
)";

constexpr const char* kNoSample =
    "the library neither reads the format of document-format.md nor writes its own";

// A document that is being written. Each function throws Broken when the library refuses it.
class Writer {
 public:
  Writer(Trial& trial, BidiContext& library) : trial_(trial), library_(library) {
    trial.Begin("qvxmlwrapSet_New()");
    handle_ = Bidi_qvxmlwrapSet_New(&library);
    if (handle_ == nullptr) throw NotTested("qvxmlwrapSet_New() gives no writer");
  }

  template <class... Args>
  void Add(const char* function, std::int32_t (*add)(BidiContext*, QvXmlWriter*, Args...),
           std::type_identity_t<Args>... args) {
    trial_.Begin(std::string("qvxmlwrapSet_") + function + "()");
    trial_.Expect(std::to_string(add(&library_, handle_, args...)), "0");
  }

  [[nodiscard]] std::string Finish() {
    trial_.Begin("qvxmlwrapSet_Destroy()");
    char* text = nullptr;
    std::int32_t size = -1;
    const std::int32_t result =
        Bidi_qvxmlwrapSet_Destroy(&library_, handle_, reinterpret_cast<std::intptr_t>(&text),
                                  reinterpret_cast<std::intptr_t>(&size), 0);
    trial_.Expect(std::to_string(result), "0");
    if (text == nullptr || size < 0) throw NotTested("qvxmlwrapSet_Destroy() stores no document");
    const TextPtr owner(text);
    return {text, static_cast<std::size_t>(size)};
  }

 private:
  Trial& trial_;
  BidiContext& library_;
  QvXmlWriter* handle_;
};

void WriteValues(Writer& writer, const std::string& bytes) {
  constexpr auto kLongs = std::to_array<std::pair<const char*, std::int32_t>>(
      {{"number", 42}, {"lowest", INT32_MIN}, {"highest", INT32_MAX}});
  for (const auto& [key, value] : kLongs) writer.Add("Long", Bidi_qvxmlwrapSet_Long, key, value);
  writer.Add("Double", Bidi_qvxmlwrapSet_Double, "ratio", -1.5);
  writer.Add("String", Bidi_qvxmlwrapSet_String, "text", kSampleText, 0, 0);
  writer.Add("String", Bidi_qvxmlwrapSet_String, "empty", "", 0, 0);
  writer.Add("Binary", Bidi_qvxmlwrapSet_Binary, "bytes", bytes.data(),
             static_cast<std::int32_t>(bytes.size()));
}

void WriteArrays(Writer& writer, const std::string& bytes) {
  writer.Add("OpenArray", Bidi_qvxmlwrapSet_OpenArray, "numbers");
  for (const std::int32_t number : {7, -8, 9}) {
    writer.Add("LongToArray", Bidi_qvxmlwrapSet_LongToArray, number);
  }
  writer.Add("CloseArray", Bidi_qvxmlwrapSet_CloseArray);
  writer.Add("OpenArray", Bidi_qvxmlwrapSet_OpenArray, "texts");
  for (const char* const text : {"one", "", "three"}) {
    writer.Add("StringToArray", Bidi_qvxmlwrapSet_StringToArray, text, 0, 0);
  }
  writer.Add("CloseArray", Bidi_qvxmlwrapSet_CloseArray);
  writer.Add("OpenArray", Bidi_qvxmlwrapSet_OpenArray, "mixed");
  writer.Add("LongToArray", Bidi_qvxmlwrapSet_LongToArray, 1);
  writer.Add("StringToArray", Bidi_qvxmlwrapSet_StringToArray, "two", 0, 0);
  writer.Add("DoubleToArray", Bidi_qvxmlwrapSet_DoubleToArray, 2.5);
  writer.Add("BinaryToArray", Bidi_qvxmlwrapSet_BinaryToArray, bytes.data(),
             static_cast<std::int32_t>(bytes.size()));
  writer.Add("CloseArray", Bidi_qvxmlwrapSet_CloseArray);
  writer.Add("OpenArray", Bidi_qvxmlwrapSet_OpenArray, "nothing");
  writer.Add("CloseArray", Bidi_qvxmlwrapSet_CloseArray);
}

void WriteItem(Writer& writer, std::int32_t item) {
  const std::string name = "item " + std::to_string(item);
  writer.Add("OpenDict", Bidi_qvxmlwrapSet_OpenDict, "list", 0);
  writer.Add("String", Bidi_qvxmlwrapSet_String, "name", name.c_str(), 0, 0);
  writer.Add("Long", Bidi_qvxmlwrapSet_Long, "number", 100 + item);
  writer.Add("OpenArray", Bidi_qvxmlwrapSet_OpenArray, "codes");
  writer.Add("LongToArray", Bidi_qvxmlwrapSet_LongToArray, item);
  writer.Add("CloseArray", Bidi_qvxmlwrapSet_CloseArray);
  writer.Add("CloseDict", Bidi_qvxmlwrapSet_CloseDict);
}

}  // namespace

std::string SampleBytes() { return {"\0\1\xff\0", 4}; }

std::string WriteSample(Trial& trial, BidiContext& library) {
  const std::string bytes = SampleBytes();
  Writer writer(trial, library);
  WriteValues(writer, bytes);
  WriteArrays(writer, bytes);
  for (std::int32_t item = 0; item < kSampleItems; ++item) WriteItem(writer, item);
  return writer.Finish();
}

std::string FindSample(Trial& trial, BidiContext& library) {
  const auto is_read = [&](const std::string& document) {
    trial.Begin("qvxmlwrapGet_New() of a sample");
    QvXmlReader* const reader = Bidi_qvxmlwrapGet_New(&library, document.data(),
                                                      static_cast<std::int32_t>(document.size()));
    if (reader != nullptr) (void)Bidi_qvxmlwrapGet_Destroy(&library, reader);
    return reader != nullptr;
  };
  if (is_read(kXml)) return kXml;
  try {
    std::string written = WriteSample(trial, library);
    if (is_read(written)) return written;
  } catch (const Broken&) {
    throw NotTested(kNoSample);  // writing is a clause of its own
  }
  throw NotTested(kNoSample);
}

std::string FindSample(Trial& trial) { return FindSample(trial, trial.library()); }

Reader OpenSample(Trial& trial) { return Parse(trial, trial.library(), FindSample(trial)); }

void ExpectSample(const Reader& reader) {
  reader.Long("number", "42");
  reader.Long("lowest", "-2147483648");
  reader.Long("highest", "2147483647");
  reader.Double("ratio", "-1.5");
  reader.Text("text", Quoted(kSampleText));
  reader.Text("empty", Quoted(""));
  reader.Binary("bytes", Quoted(SampleBytes()));
  reader.ArrayCount("numbers", "3");
  reader.OpenArray("numbers", true);
  reader.LongAt(0, "7");
  reader.LongAt(2, "9");
  reader.CloseArray();
  reader.OpenArray("texts", true);
  reader.TextAt(0, Quoted("one"));
  reader.TextAt(1, Quoted(""));
  reader.CloseArray();
  reader.OpenArray("mixed", true);
  reader.DoubleAt(2, "2.5");
  reader.BinaryAt(3, Quoted(SampleBytes()));
  reader.CloseArray();
  reader.DictCount("list", std::to_string(kSampleItems));
  for (std::int32_t item = 0; item < kSampleItems; ++item) {
    reader.OpenDict("list", item, true);
    reader.Text("name", Quoted("item " + std::to_string(item)));
    reader.Long("number", std::to_string(100 + item));
    reader.OpenArray("codes", true);
    reader.LongAt(0, std::to_string(item));
    reader.CloseArray();
    reader.CloseDict();
  }
}

}  // namespace ia::cli
