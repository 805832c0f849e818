// The reference communication library with one fault. The name of the driver folder that it is
// loaded from, "<fault>/Bidi/libmqpd_util.so", selects the fault. The build gives the entry points
// of the reference library the prefix "good_".
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "info_analyze/communication_library.h"

extern "C" {
#define X(name) extern decltype(name) good_##name;
#include "tests/support/entry_points.inc"
#undef X
}

namespace {

void AnyAddress() {}

std::string FaultOfFolder() {
  Dl_info library = {};
  dladdr(reinterpret_cast<void*>(AnyAddress), &library);
  std::string path = library.dli_fname;
  for (int i = 0; i < 2; ++i) path.resize(path.rfind('/'));
  return path.substr(path.rfind('/') + 1);
}

// Never released, because it is used before other constructors and after other destructors.
bool Is(std::string_view name) {
  static const std::string& fault = *new std::string(FaultOfFolder());
  return fault == name;
}

const char* document = nullptr;  // of the last reader
QvXmlReader* last_reader = nullptr;
void* volatile leaked = nullptr;

QvXmlReader* Chosen(QvXmlReader* reader) {
  return Is("readers-share-place") ? last_reader : reader;
}

void Crash() {
  signal(SIGSEGV, SIG_DFL);
  raise(SIGSEGV);
}

char* Duplicate(const std::string& text) { return strdup(text.c_str()); }

// What a library does to its process.
void ChangeProcess() {
  if (Is("leaks-descriptors")) (void)!open("/dev/null", O_RDONLY);
  if (Is("prints")) std::puts("a document");
  if (Is("changes-locale")) setlocale(LC_ALL, "C.UTF-8");
  if (Is("changes-signals")) signal(SIGUSR2, SIG_IGN);
  if (Is("changes-folder")) (void)!chdir("/proc");
  if (Is("changes-mask")) umask(0111);
  if (Is("changes-environment")) setenv("IA_TEST_WRONG_LIBRARY", "1", 1);
}

__attribute__((constructor)) void Load() {
  if (!Is("loads-once")) return;
  if (getenv("IA_TEST_LOADED") != nullptr) Crash();
  setenv("IA_TEST_LOADED", "1", 1);
}

__attribute__((destructor)) void Unload() {
  if (Is("crashes-when-unloaded")) Crash();
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \n\t");
  return first == std::string::npos
             ? ""
             : text.substr(first, text.find_last_not_of(" \n\t") + 1 - first);
}

std::string InAscii(std::string text) {
  for (char& byte : text) byte = static_cast<unsigned char>(byte) < 0x80 ? byte : '?';
  return text;
}

// Changes a text that was read.
void ChangeText(char** text) {
  static char borrowed[64] = "";
  static char* shared = nullptr;
  std::string changed = *text;
  if (Is("trims-texts")) changed = Trimmed(changed);
  if (Is("texts-in-ascii")) changed = InAscii(changed);
  if (Is("leaks-texts")) leaked = std::malloc(64);
  std::free(*text);
  *text = Duplicate(changed);
  if (Is("borrowed-texts")) {
    std::free(*text);
    *text = std::strncpy(borrowed, changed.c_str(), sizeof borrowed - 1);
  }
  if (Is("shared-texts")) {
    std::free(*text);
    if (shared == nullptr) shared = Duplicate(changed);
    *text = shared;
  }
}

}  // namespace

int32_t qvsktwrapQueueListNew(const char* folder, intptr_t a, intptr_t b, intptr_t c, intptr_t d) {
  return good_qvsktwrapQueueListNew(folder, a, b, c, d);
}
int32_t qvsktwrapQueueListDestroy(intptr_t a, intptr_t b, intptr_t c, intptr_t d) {
  return good_qvsktwrapQueueListDestroy(a, b, c, d);
}
void* qvsktwrapNew(intptr_t a, intptr_t b, const char* folder, int32_t port) {
  return good_qvsktwrapNew(a, b, folder, port);
}
int32_t qvsktwrapControl(void* socket, intptr_t a, intptr_t b, intptr_t c, intptr_t d, intptr_t e) {
  if (Is("control-without-socket")) return 0;
  return good_qvsktwrapControl(socket, a, b, c, d, e);
}
int32_t qvsktwrapDestroy(void* socket) {
  if (Is("crashes-without-socket") && socket == nullptr) Crash();
  return good_qvsktwrapDestroy(socket);
}

void qvxmlwrapCleanup(void) {
  if (Is("exits-in-cleanup")) std::exit(0);
  if (Is("cleanup-ends-readers") && last_reader != nullptr) document = "x";
}

QvXmlWriter* qvxmlwrapSet_New(void) { return good_qvxmlwrapSet_New(); }
int32_t qvxmlwrapSet_OpenDict(QvXmlWriter* writer, const char* key, intptr_t word) {
  return good_qvxmlwrapSet_OpenDict(writer, key, word);
}
int32_t qvxmlwrapSet_Long(QvXmlWriter* writer, const char* key, int32_t value) {
  if (Is("writes-short-numbers")) value = static_cast<int16_t>(value);
  if (Is("writer-crashes-for-null") && writer == nullptr) Crash();
  return good_qvxmlwrapSet_Long(writer, key, value);
}
int32_t qvxmlwrapSet_Double(QvXmlWriter* writer, const char* key, double value) {
  return good_qvxmlwrapSet_Double(writer, key, value);
}
int32_t qvxmlwrapSet_String(QvXmlWriter* writer, const char* key, const char* text, intptr_t word1,
                            intptr_t word2) {
  if (Is("writes-null-texts") && text == nullptr) return 0;
  return good_qvxmlwrapSet_String(writer, key, text, word1, word2);
}
int32_t qvxmlwrapSet_Binary(QvXmlWriter* writer, const char* key, const void* data,
                            int32_t length) {
  return good_qvxmlwrapSet_Binary(writer, key, data, length);
}
int32_t qvxmlwrapSet_OpenArray(QvXmlWriter* writer, const char* key) {
  return good_qvxmlwrapSet_OpenArray(writer, key);
}
int32_t qvxmlwrapSet_LongToArray(QvXmlWriter* writer, int32_t value) {
  return good_qvxmlwrapSet_LongToArray(writer, value);
}
int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter* writer, double value) {
  return good_qvxmlwrapSet_DoubleToArray(writer, value);
}
int32_t qvxmlwrapSet_StringToArray(QvXmlWriter* writer, const char* text, intptr_t word1,
                                   intptr_t word2) {
  return good_qvxmlwrapSet_StringToArray(writer, text, word1, word2);
}
int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter* writer, const void* data, int32_t length) {
  return good_qvxmlwrapSet_BinaryToArray(writer, data, length);
}
int32_t qvxmlwrapSet_CloseArray(QvXmlWriter* writer) {
  return good_qvxmlwrapSet_CloseArray(writer);
}
int32_t qvxmlwrapSet_CloseDict(QvXmlWriter* writer) {
  const int32_t status = good_qvxmlwrapSet_CloseDict(writer);
  return Is("writer-closes-too-much") && writer != nullptr ? 0 : status;
}
int32_t qvxmlwrapSet_Destroy(QvXmlWriter* writer, intptr_t word1, intptr_t word2, intptr_t word3) {
  if (Is("leaks-writers") && word1 == 0) return 0;
  if (Is("hangs-without-words") && word1 == 0) pause();
  return good_qvxmlwrapSet_Destroy(writer, word1, word2, word3);
}

QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length) {
  ChangeProcess();
  const auto* const text = static_cast<const char*>(data);
  if (Is("refuses-documents")) return nullptr;
  if (Is("reads-beyond") && text != nullptr && std::strlen(text) > 1000000) return nullptr;
  if (Is("crashes-for-empty") && length == 0 && text != nullptr) Crash();
  if (Is("crashes-for-null") && text == nullptr) Crash();
  if (Is("crashes-for-truncated") && length > 1 && text[length - 1] == '/') Crash();
  QvXmlReader* reader = good_qvxmlwrapGet_New(data, length);
  if (Is("accepts-anything") && reader == nullptr && length > 0) {
    constexpr std::string_view kEmpty = "<document version=\"1\"/>";
    reader = good_qvxmlwrapGet_New(kEmpty.data(), static_cast<int32_t>(kEmpty.size()));
  }
  if (Is("leaks-refused") && reader == nullptr) leaked = std::malloc(64);
  document = text;
  last_reader = reader;
  return reader;
}

int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count) {
  const int32_t result = good_qvxmlwrapGet_DictCount(reader, key, count);
  if (Is("miscounts-lists") && result != 0) --*count;
  if (Is("counts-missing-lists") && result == 0 && count != nullptr) *count = -1;
  if (Is("crashes-without-count") && count == nullptr) Crash();
  return result;
}

int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t index) {
  if (Is("ignores-item-number")) index = 0;
  if (Is("crashes-for-negative-item") && index < 0) Crash();
  const int32_t result = good_qvxmlwrapGet_OpenDict(Chosen(reader), key, index);
  if (result != 0 || reader == nullptr) return result;
  if (Is("enters-first-for-beyond") && index > 0) {
    good_qvxmlwrapGet_CloseDict(reader);
    return good_qvxmlwrapGet_OpenDict(reader, key, 0);
  }
  if (Is("failed-open-stays")) good_qvxmlwrapGet_CloseDict(reader);
  return result;
}

int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value, intptr_t word) {
  if (Is("keeps-document") && reader != nullptr && *document == 'x') return 0;
  if (Is("cleanup-ends-readers") && reader != nullptr && *document == 'x') return 0;
  if (Is("crashes-for-null-reader") && reader == nullptr) Crash();
  if (Is("crashes-for-null-key") && key == nullptr) Crash();
  const int32_t result = good_qvxmlwrapGet_Long(Chosen(reader), key, value, word);
  if (value == nullptr) return result;
  if (Is("short-numbers") && result != 0) *value = static_cast<int16_t>(*value);
  if (Is("clears-missing-numbers") && result == 0) *value = 0;
  if (Is("finds-missing-numbers") && result == 0) return 1;
  if (Is("numbers-of-texts") && result == 0 && key != nullptr && strcmp(key, "text") == 0) {
    *value = 0;
    return 1;
  }
  if (Is("is-for-one-thread")) {
    static std::atomic<int32_t> slot;
    slot = *value;
    usleep(500);
    *value = slot;
  }
  return result;
}

int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value, double standard) {
  const int32_t result = good_qvxmlwrapGet_Double(reader, key, value, standard);
  if (Is("whole-doubles") && result != 0) *value = static_cast<int>(*value);
  return result;
}

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void* auxiliary,
                            const char* encoding, intptr_t word) {
  if (Is("ignores-encoding") && encoding != nullptr) encoding = "UTF-8";
  if (Is("crashes-for-null-encoding") && encoding == nullptr) Crash();
  const int32_t result = good_qvxmlwrapGet_String(reader, key, text, auxiliary, encoding, word);
  if (Is("clears-missing-texts") && result == 0 && text != nullptr) *text = nullptr;
  int32_t number = 0;
  if (Is("texts-of-numbers") && result == 0 && text != nullptr &&
      good_qvxmlwrapGet_Long(reader, key, &number, 0) != 0) {
    *text = Duplicate(std::to_string(number));
    return 1;
  }
  if (result == 0) return 0;
  if (Is("empty-texts-are-missing") && **text == '\0') {
    std::free(*text);
    return 0;
  }
  ChangeText(text);
  return result;
}

int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data, int32_t* length) {
  const int32_t result = good_qvxmlwrapGet_Binary(reader, key, data, length);
  if (Is("bytes-as-text") && result != 0)
    *length = static_cast<int32_t>(std::strlen(static_cast<char*>(*data)));
  return result;
}

int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count) {
  const int32_t result = good_qvxmlwrapGet_ArrayCount(reader, key, count);
  if (Is("hangs-for-missing-array") && result == 0 && reader != nullptr) pause();
  if (Is("miscounts-arrays") && result != 0) ++*count;
  if (Is("empty-arrays-are-missing") && result != 0 && *count == 0) return 0;
  return result;
}

int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  const int32_t result = good_qvxmlwrapGet_OpenArray(reader, key);
  if (Is("failed-array-stays") && result == 0) good_qvxmlwrapGet_CloseArray(reader);
  return result;
}

int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value,
                                   intptr_t word) {
  if (Is("elements-from-1")) --index;
  if (Is("last-element-for-beyond") && index > 2) index = 2;
  const int32_t result = good_qvxmlwrapGet_LongFromArray(reader, index, value, word);
  char* text = nullptr;
  if (Is("clears-wrong-elements") && result == 0 &&
      good_qvxmlwrapGet_StringFromArray(reader, index, &text, nullptr, "UTF-8", 0) != 0) {
    std::free(text);
    *value = 0;
  }
  return result;
}

int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, int32_t index, double* value,
                                     double standard) {
  return good_qvxmlwrapGet_DoubleFromArray(reader, index, value, standard);
}
int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text,
                                     void* auxiliary, const char* encoding, intptr_t word) {
  return good_qvxmlwrapGet_StringFromArray(reader, index, text, auxiliary, encoding, word);
}
int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, int32_t index, void** data,
                                     int32_t* length) {
  return good_qvxmlwrapGet_BinaryFromArray(reader, index, data, length);
}

int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) {
  if (Is("array-is-not-closed") && reader != nullptr) return 0;
  return good_qvxmlwrapGet_CloseArray(reader);
}
int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) {
  if (Is("dict-is-not-closed") && reader != nullptr) return 0;
  const int32_t status = good_qvxmlwrapGet_CloseDict(Chosen(reader));
  return Is("closes-too-much") && reader != nullptr ? 0 : status;
}
int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  if (Is("leaks-readers") && reader != nullptr) return 0;
  const int32_t status = good_qvxmlwrapGet_Destroy(reader);
  return Is("destroy-fails") ? -1 : status;
}
