#include "cli/commlib/reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "cli/commlib/trial.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

// Outputs hold these values before a call, so that a change is noticed.
constexpr std::int32_t kUntouchedLong = -1234567;
constexpr double kUntouchedDouble = -1234567.25;
char untouched_block;

// The result of a Get function and its output, as a text.
[[nodiscard]] std::string Answer(std::int32_t result, bool is_changed, const std::string& value) {
  if (result == 0) return is_changed ? "0 and a changed output" : kMissing;
  return is_changed ? value : "1 and an unchanged output";
}

[[nodiscard]] std::string LongAnswer(std::int32_t result, std::int32_t value) {
  return Answer(result, value != kUntouchedLong, std::to_string(value));
}

[[nodiscard]] std::string DoubleAnswer(std::int32_t result, double value) {
  std::ostringstream text;
  text.precision(17);
  text << value;
  return Answer(result, value != kUntouchedDouble, text.str());
}

// Releases the block as the callers of the library do.
[[nodiscard]] std::string BlockAnswer(std::int32_t result, void* block, std::int32_t length) {
  const bool is_changed = block != &untouched_block;
  if (!is_changed || block == nullptr || result == 0) return Answer(result, is_changed, "NULL");
  if (length < 0) return "a length of " + std::to_string(length);
  const std::string value(static_cast<const char*>(block), static_cast<std::size_t>(length));
  std::memset(block, 'x', static_cast<std::size_t>(length));  // the caller owns it
  std::free(block);
  return Quoted(value);
}

[[nodiscard]] std::string TextAnswer(std::int32_t result, char* text) {
  const bool has_text = result != 0 && text != nullptr && text != &untouched_block;
  return BlockAnswer(result, text, has_text ? static_cast<std::int32_t>(std::strlen(text)) : 0);
}

// "qvxmlwrapGet_Long() of number"
[[nodiscard]] std::string CallOf(const char* function, const char* key) {
  return std::string("qvxmlwrapGet_") + function + "() of " + (key != nullptr ? key : "NULL");
}

[[nodiscard]] std::string CallOf(const char* function, std::int32_t index) {
  return std::string("qvxmlwrapGet_") + function + "() of element " + std::to_string(index);
}

}  // namespace

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

void Reader::DictCount(const char* key, const std::string& expected) const {
  trial_.Begin(CallOf("DictCount", key));
  std::int32_t count = kUntouchedLong;
  const std::int32_t result = Bidi_qvxmlwrapGet_DictCount(&library_, handle_, key, &count);
  trial_.Expect(LongAnswer(result, count), expected);
}

void Reader::OpenDict(const char* key, std::int32_t index, bool is_entered) const {
  trial_.Begin(CallOf("OpenDict", key) + ", item " + std::to_string(index) + ",");
  const std::int32_t result = Bidi_qvxmlwrapGet_OpenDict(&library_, handle_, key, index);
  trial_.Expect(std::to_string(result), is_entered ? "1" : "0");
}

void Reader::CloseDict(std::int32_t expected) const {
  trial_.Begin("qvxmlwrapGet_CloseDict()");
  trial_.Expect(std::to_string(Bidi_qvxmlwrapGet_CloseDict(&library_, handle_)),
                std::to_string(expected));
}

void Reader::ArrayCount(const char* key, const std::string& expected) const {
  trial_.Begin(CallOf("ArrayCount", key));
  std::int32_t count = kUntouchedLong;
  const std::int32_t result = Bidi_qvxmlwrapGet_ArrayCount(&library_, handle_, key, &count);
  trial_.Expect(LongAnswer(result, count), expected);
}

void Reader::OpenArray(const char* key, bool is_entered) const {
  trial_.Begin(CallOf("OpenArray", key));
  trial_.Expect(std::to_string(Bidi_qvxmlwrapGet_OpenArray(&library_, handle_, key)),
                is_entered ? "1" : "0");
}

void Reader::CloseArray(std::int32_t expected) const {
  trial_.Begin("qvxmlwrapGet_CloseArray()");
  trial_.Expect(std::to_string(Bidi_qvxmlwrapGet_CloseArray(&library_, handle_)),
                std::to_string(expected));
}

void Reader::Long(const char* key, const std::string& expected) const {
  trial_.Begin(CallOf("Long", key));
  std::int32_t value = kUntouchedLong;
  const std::int32_t result = Bidi_qvxmlwrapGet_Long(&library_, handle_, key, &value, 0);
  trial_.Expect(LongAnswer(result, value), expected);
}

void Reader::Double(const char* key, const std::string& expected) const {
  trial_.Begin(CallOf("Double", key));
  double value = kUntouchedDouble;
  const std::int32_t result = Bidi_qvxmlwrapGet_Double(&library_, handle_, key, &value, 0);
  trial_.Expect(DoubleAnswer(result, value), expected);
}

void Reader::Text(const char* key, const std::string& expected, const char* encoding) const {
  trial_.Begin(CallOf("String", key));
  char* text = &untouched_block;
  const std::int32_t result =
      Bidi_qvxmlwrapGet_String(&library_, handle_, key, &text, nullptr, encoding, 0);
  trial_.Expect(TextAnswer(result, text), expected);
}

void Reader::Binary(const char* key, const std::string& expected) const {
  trial_.Begin(CallOf("Binary", key));
  void* data = &untouched_block;
  std::int32_t length = -1;
  const std::int32_t result = Bidi_qvxmlwrapGet_Binary(&library_, handle_, key, &data, &length);
  trial_.Expect(BlockAnswer(result, data, length), expected);
}

void Reader::LongAt(std::int32_t index, const std::string& expected) const {
  trial_.Begin(CallOf("LongFromArray", index));
  std::int32_t value = kUntouchedLong;
  const std::int32_t result = Bidi_qvxmlwrapGet_LongFromArray(&library_, handle_, index, &value, 0);
  trial_.Expect(LongAnswer(result, value), expected);
}

void Reader::DoubleAt(std::int32_t index, const std::string& expected) const {
  trial_.Begin(CallOf("DoubleFromArray", index));
  double value = kUntouchedDouble;
  const std::int32_t result =
      Bidi_qvxmlwrapGet_DoubleFromArray(&library_, handle_, index, &value, 0);
  trial_.Expect(DoubleAnswer(result, value), expected);
}

void Reader::TextAt(std::int32_t index, const std::string& expected) const {
  trial_.Begin(CallOf("StringFromArray", index));
  char* text = &untouched_block;
  const std::int32_t result =
      Bidi_qvxmlwrapGet_StringFromArray(&library_, handle_, index, &text, nullptr, kUtf8, 0);
  trial_.Expect(TextAnswer(result, text), expected);
}

void Reader::BinaryAt(std::int32_t index, const std::string& expected) const {
  trial_.Begin(CallOf("BinaryFromArray", index));
  void* data = &untouched_block;
  std::int32_t length = -1;
  const std::int32_t result =
      Bidi_qvxmlwrapGet_BinaryFromArray(&library_, handle_, index, &data, &length);
  trial_.Expect(BlockAnswer(result, data, length), expected);
}

void Reader::Destroy(std::int32_t expected) const {
  trial_.Begin("qvxmlwrapGet_Destroy()");
  trial_.Expect(std::to_string(Bidi_qvxmlwrapGet_Destroy(&library_, handle_)),
                std::to_string(expected));
}

Reader Parse(Trial& trial, BidiContext& library, const std::string& document) {
  trial.Begin("qvxmlwrapGet_New()");
  QvXmlReader* const handle =
      Bidi_qvxmlwrapGet_New(&library, document.data(), static_cast<std::int32_t>(document.size()));
  if (handle == nullptr) throw Broken("qvxmlwrapGet_New() refuses a valid document");
  return {trial, library, handle};
}

}  // namespace ia::cli
