#include "fuzz/lying_library.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/input.h"
#include "info_analyze/communication_library.h"

// In memory of its own, so that the address sanitizer sees a reader that is used when it is gone.
struct QvXmlReader {
  int depth;  // dictionaries and arrays entered and not left
};

namespace {

using ia_fuzz::Input;
using ia_fuzz::Require;

constexpr std::size_t kLongText = 65'536;
constexpr int kMaxLongTexts = 4;     // in a script: they take time
constexpr std::int32_t kFound = -1;  // any number but 0 means found

std::string g_script;
std::string_view g_verdicts;
std::size_t g_next_verdict = 0;
Input g_answers(nullptr, 0);
std::int32_t g_max_items = 0;
int g_long_texts = 0;

bool Verdict() {
  if (g_verdicts.empty()) return true;
  return g_verdicts[g_next_verdict++ % g_verdicts.size()] != '0';
}

std::int32_t Status() { return Verdict() ? 0 : -1; }

// Exactly as large as it must be.
void* Allocate(const void* bytes, std::size_t size) {
  void* const block = std::malloc(size);
  Require(block != nullptr);
  return std::memcpy(block, bytes, size);
}

char* NewText(std::string_view text) {
  const std::string terminated(text);
  return static_cast<char*>(Allocate(terminated.c_str(), terminated.size() + 1));
}

char* NewLongText(std::string_view piece) {
  std::string text(piece);
  if (++g_long_texts > kMaxLongTexts) return NewText(text);
  while (!text.empty() && text.size() < kLongText) text += text;
  return NewText(text);
}

// Answers a call with the next line; make(value) returns what is stored in *output.
template <class T>
std::int32_t Answer(T* output, auto make) {
  Require(output != nullptr);
  std::string_view answer = g_answers.TakeText();
  if (answer.empty()) return 0;
  if (answer == "?") return kFound;
  const bool is_denied = answer.starts_with('!');
  if (is_denied) answer.remove_prefix(1);
  *output = answer == "~" ? T{} : make(answer);
  return is_denied ? 0 : kFound;
}

std::int32_t AnswerNumber(std::int32_t* number) {
  return Answer(number, [](std::string_view answer) { return ia_fuzz::NumberOf(answer); });
}

std::int32_t AnswerReal(double* number) {
  return Answer(number, [](std::string_view answer) {
    return std::strtod(std::string(answer).c_str(), nullptr);
  });
}

std::int32_t AnswerText(char** text, const char* encoding) {
  Require(encoding != nullptr && std::strcmp(encoding, "UTF-8") == 0);
  return Answer(text, [](std::string_view answer) {
    return answer.starts_with('*') ? NewLongText(answer.substr(1)) : NewText(answer);
  });
}

// The length is a lie of its own; the bytes are those of the answer.
std::int32_t AnswerBytes(void** data, std::int32_t* length) {
  const std::int32_t found =
      Answer(data, [](std::string_view answer) { return static_cast<void*>(NewText(answer)); });
  AnswerNumber(length);
  return found;
}

// What libinfo_analyze must keep to: open readers, terminated keys, leaving what was entered.
void Look(const QvXmlReader* reader) { Require(reader->depth >= 0); }

void Look(const QvXmlReader* reader, const char* key) {
  Look(reader);
  Require(key != nullptr && std::strlen(key) > 0);
}

std::int32_t Leave(QvXmlReader* reader) {
  --reader->depth;
  Look(reader);
  return Status();
}

}  // namespace

extern "C" {

void lying_attach(const char* script, std::size_t length, std::int32_t max_items) {
  g_script.assign(script, length);
  g_answers = Input(reinterpret_cast<const std::uint8_t*>(g_script.data()), g_script.size());
  g_verdicts = g_answers.TakeLine();
  g_next_verdict = 0;
  g_long_texts = 0;
  g_max_items = max_items;
}

int32_t qvsktwrapQueueListNew(const char*, intptr_t, intptr_t, intptr_t, intptr_t) {
  return Status();
}
int32_t qvsktwrapQueueListDestroy(intptr_t, intptr_t, intptr_t, intptr_t) { return Status(); }
void* qvsktwrapNew(intptr_t, intptr_t, const char*, int32_t) {
  return Verdict() ? &g_answers : nullptr;
}
int32_t qvsktwrapControl(void*, intptr_t, intptr_t, intptr_t, intptr_t, intptr_t) {
  return Status();
}
int32_t qvsktwrapDestroy(void*) { return Status(); }

void qvxmlwrapCleanup(void) {}

QvXmlWriter* qvxmlwrapSet_New(void) { return nullptr; }
int32_t qvxmlwrapSet_OpenDict(QvXmlWriter*, const char*, intptr_t) { return Status(); }
int32_t qvxmlwrapSet_Long(QvXmlWriter*, const char*, int32_t) { return Status(); }
int32_t qvxmlwrapSet_Double(QvXmlWriter*, const char*, double) { return Status(); }
int32_t qvxmlwrapSet_String(QvXmlWriter*, const char*, const char*, intptr_t, intptr_t) {
  return Status();
}
int32_t qvxmlwrapSet_Binary(QvXmlWriter*, const char*, const void*, int32_t) { return Status(); }
int32_t qvxmlwrapSet_OpenArray(QvXmlWriter*, const char*) { return Status(); }
int32_t qvxmlwrapSet_LongToArray(QvXmlWriter*, int32_t) { return Status(); }
int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter*, double) { return Status(); }
int32_t qvxmlwrapSet_StringToArray(QvXmlWriter*, const char*, intptr_t, intptr_t) {
  return Status();
}
int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter*, const void*, int32_t) { return Status(); }
int32_t qvxmlwrapSet_CloseArray(QvXmlWriter*) { return Status(); }
int32_t qvxmlwrapSet_CloseDict(QvXmlWriter*) { return Status(); }
int32_t qvxmlwrapSet_Destroy(QvXmlWriter*, intptr_t, intptr_t, intptr_t) { return Status(); }

QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length) {
  Require(data != nullptr && length >= 0);
  constexpr QvXmlReader kNew{0};
  return Verdict() ? static_cast<QvXmlReader*>(Allocate(&kNew, sizeof kNew)) : nullptr;
}

int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count) {
  Look(reader, key);
  const std::int32_t found = AnswerNumber(count);
  *count = std::min(*count, g_max_items);
  return found;
}

int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t) {
  Look(reader, key);
  ++reader->depth;
  return Verdict() ? kFound : 0;
}

int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value, intptr_t) {
  Look(reader, key);
  return AnswerNumber(value);
}

int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value, double) {
  Look(reader, key);
  return AnswerReal(value);
}

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void*,
                            const char* encoding, intptr_t) {
  Look(reader, key);
  return AnswerText(text, encoding);
}

int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data, int32_t* length) {
  Look(reader, key);
  return AnswerBytes(data, length);
}

int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count) {
  Look(reader, key);
  return AnswerNumber(count);
}

int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  Look(reader, key);
  ++reader->depth;
  return Verdict() ? kFound : 0;
}

int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t, int32_t* value, intptr_t) {
  Look(reader);
  return AnswerNumber(value);
}

int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, int32_t, double* value, double) {
  Look(reader);
  return AnswerReal(value);
}

int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t, char** text, void*,
                                     const char* encoding, intptr_t) {
  Look(reader);
  return AnswerText(text, encoding);
}

int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, int32_t, void** data, int32_t* length) {
  Look(reader);
  return AnswerBytes(data, length);
}

int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) { return Leave(reader); }
int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) { return Leave(reader); }

int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  Require(reader->depth == 0);
  std::free(reader);
  return Status();
}

}  // extern "C"
